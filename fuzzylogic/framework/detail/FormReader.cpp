#include "fuzzylogic/framework/detail/FormReader.h"

#include <algorithm>
#include <array>
#include <exception>
#include <optional>
#include <set>

#include "fuzzylogic/framework/Component.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/framework/Messages.h"
#include "fuzzylogic/framework/StoredForm.h"

namespace fzy::detail {
namespace {

constexpr std::size_t ShownText = 40;

using TKind = TProperty::TKind;

/// What a value of each kind looks like; a choice has names.
constexpr std::array<const char*, 8> Shapes{"true or false",
                                            "a whole number",
                                            "a number",
                                            "a text in quotes",
                                            "none or component \"...\"",
                                            "one of",
                                            "{ at the end of the line",
                                            "a value"};

TString ShapeOf(const TProperty& property) {
  TString shape(Shapes[static_cast<std::size_t>(property.Kind)]);
  for (const char* name : property.Names) {
    if (name != property.Names.front()) shape += u',';
    shape += u' ';
    shape += TString(name);
  }
  return shape;
}

/// The value that a single word stands for.
std::optional<TPropertyValue> ReadWord(const TProperty& property, std::string_view word) {
  const auto packed = [](auto value) {
    return value ? std::optional<TPropertyValue>(*value) : std::nullopt;
  };
  if (property.Kind == TKind::Whole) return packed(ReadWhole(word));
  if (property.Kind == TKind::Number) return packed(ReadNumber(word));
  if (property.Kind == TKind::Flag) {
    if (word != "true" && word != "false") return std::nullopt;
    return word == "true";
  }
  const auto found = std::find(property.Names.begin(), property.Names.end(), word);
  if (found == property.Names.end()) return std::nullopt;
  return std::int64_t{found - property.Names.begin()};
}

}  // namespace

struct TFormReader::TBody {
  struct TLate {
    const TProperty* Property;
    TPropertyValue Value;
    int Line;
  };

  TBody(TPersistent& object, bool isLive)
      : Object(object), Description(object), IsLive(isLive), Seen(Properties().size()) {}
  std::span<const TProperty> Properties() const { return Description.GetProperties(); }
  /// What gathers the entries.
  template <class Entries>
  auto& Stage(const Entries& entries) {
    using TStaged = typename decltype(entries.Stage())::element_type;
    if (!Staged) Staged = entries.Stage();
    return static_cast<TStaged&>(*Staged);
  }

  TPersistent& Object;
  TFiler Description;
  bool IsLive;         // it was there before it was loaded
  bool IsTop = false;  // it is an object of the form itself
  // Of a component: what a fault is blamed on that shows at the end of loading.
  int Line = 0;
  TString Path;
  std::vector<bool> Seen;
  std::size_t Next = 0;  // where the next property is looked for first
  int Items = 0;
  std::unique_ptr<TStagedEntries> Staged;
  std::vector<TLate> Late;
};

// Objects

void TFormReader::Read(const TFormTarget& target) {
  while (FLines.Next()) ReadObject(target);
  ResolveLinks();
}

void TFormReader::ReadObject(const TFormTarget& target) {
  std::string_view rest = FLines.GetLine();
  const std::string line(rest.substr(0, ShownText));
  const TString className(TakeName(rest));
  TString name;
  if (rest.starts_with('"')) name = ReadText(rest);
  if (className.empty() || rest != "{") FailExpected("class \"name\" {", line);
  TPersistent* object = target(className, name);
  if (!object) Fail(FormatText(SFormUnknownTarget, {className, name}));
  FRoot = className.Utf8();
  FPath = {{FRoot.c_str()}};
  ReadBody(*object, true, &name);
  FPath.clear();
}

void TFormReader::ReadBody(TPersistent& object, bool isLive, const TString* name) {
  if (++FDepth > DeepestForm) Fail(SFormTooDeep);
  TBody body(object, isLive);
  body.IsTop = name != nullptr;
  auto* component = isLive ? dynamic_cast<TComponent*>(&object) : nullptr;
  if (component) {
    body.Line = FLines.GetNumber();
    body.Path = GetPath();
  }
  if (name || component) FTransaction.Begin(object, !name);
  if (isLive) FTransaction.Remember(body.Description);
  for (const TProperty& property : body.Properties()) {
    if (name && property.IsInHeader) property.Set(*name);
  }
  for (;;) {
    if (!FLines.Next()) Fail(SFormEnds);
    std::string_view rest = FLines.GetLine();
    if (rest == "}") break;
    if (rest.front() == '"' || rest.front() == '(') {
      ReadEntry(body, rest);
      continue;
    }
    const std::string word(TakeName(rest));
    if (rest == "{")
      ReadItem(body, word);
    else
      ReadProperty(body, word, rest);
  }
  Complete(body);
  if (component) {
    FRead.push_back({component, body.Line, body.Path});
    FNamed.insert({component->GetName(), component});
  }
  --FDepth;
}

void TFormReader::Complete(TBody& body) {
  CompleteEntries(body);
  for (std::size_t i = 0; i < body.Seen.size(); ++i) {
    const TProperty& property = body.Properties()[i];
    if (body.Seen[i] || IsElsewhere(body, property) || property.Kind == TKind::Ignored) continue;
    FPath.push_back({property.Name});
    if (property.Default)
      Guard(FLines.GetNumber(), nullptr, [&] { property.Set(*property.Default); });
    else if (property.Kind != TKind::Link)
      Fail(SFormMissing);
    FPath.pop_back();
  }
  for (TBody::TLate& late : body.Late) {
    FPath.push_back({late.Property->Name});
    Guard(late.Line, nullptr, [&] { late.Property->Set(std::move(late.Value)); });
    FPath.pop_back();
  }
}

/// A list without entries in the form loses those that it had.
void TFormReader::CompleteEntries(TBody& body) {
  std::visit(
      [&](const auto& entries) {
        if constexpr (!std::is_same_v<std::remove_cvref_t<decltype(entries)>, std::monostate>)
          body.Stage(entries);
      },
      body.Description.GetEntries());
  if (!body.Staged) return;
  if (body.IsLive)
    FTransaction.Exchange(std::move(body.Staged));
  else
    body.Staged->Exchange();
}

void TFormReader::EndLoading() {
  for (const TRead& read : FRead) {
    if (!read.Component->IsFreed()) Guard(read.Line, &read.Path, [&] { read.Component->Loaded(); });
  }
}

// Entries

void TFormReader::ReadEntry(TBody& body, std::string_view rest) {
  const TEntries& entries = body.Description.GetEntries();
  const char sign = rest.front();
  if (const auto* texts = std::get_if<TTextEntries>(&entries); texts && sign == '"') {
    TTextEntry entry{ReadText(rest), UsualLineEnd};
    if (rest.starts_with('"')) entry.End = ReadText(rest);
    RequireEnd(rest);
    Guard(FLines.GetNumber(), nullptr, [&] { body.Stage(*texts).Add(std::move(entry)); });
    return;
  }
  const auto* pairs = std::get_if<TPairEntries>(&entries);
  if (!pairs || sign != '(') Fail(FormatText(SFormUnknownEntry, {body.Object.ClassName()}));
  const TNumberPair pair = ReadPair(rest);
  RequireEnd(rest);
  Guard(FLines.GetNumber(), nullptr, [&] { body.Stage(*pairs).Add(pair); });
}

void TFormReader::ReadItem(TBody& body, const std::string& className) {
  const auto* items = std::get_if<TItemEntries>(&body.Description.GetEntries());
  if (!items) Fail(FormatText(SFormUnknownEntry, {body.Object.ClassName()}));
  FPath.push_back({nullptr, body.Items++});
  TStagedItems& staged = body.Stage(*items);
  TPersistent* item = nullptr;
  Guard(FLines.GetNumber(), nullptr, [&] { item = &staged.Begin(); });
  if (item->ClassName() != TString(className))
    FailExpected(item->ClassName() + " {", FLines.GetLine());
  ReadBody(*item, false);
  Guard(FLines.GetNumber(), nullptr, [&] { staged.Complete(); });
  FPath.pop_back();
}

TNumberPair TFormReader::ReadPair(std::string_view& rest) {
  const std::string_view line = rest;
  Take(rest, "(");
  const auto number = [&](std::string_view end) {
    const std::string_view word = rest.substr(0, rest.find_first_of(end));
    Take(rest, word);
    return ReadNumber(word);
  };
  const std::optional<double> first = number(" \t");
  const std::optional<double> second = number(" \t)");
  if (!first || !second || !Take(rest, ")")) FailExpected("(number number)", line);
  return {*first, *second};
}

// Properties

/// The name of an object of the form itself stands behind its class.
bool TFormReader::IsElsewhere(const TBody& body, const TProperty& property) {
  return body.IsTop && property.IsInHeader;
}

void TFormReader::ReadProperty(TBody& body, const std::string& name, std::string_view rest) {
  if (name.empty() || !Take(rest, "=")) FailExpected("a property, an entry or }", FLines.GetLine());
  const auto properties = body.Properties();
  // As a form is written, each property is the next of the description or one of those soon after.
  for (std::size_t i = 0; i < properties.size(); ++i) {
    const std::size_t index = (body.Next + i) % properties.size();
    const TProperty& property = properties[index];
    if (name != property.Name) continue;
    body.Next = index + 1;
    FPath.push_back({property.Name});
    if (IsElsewhere(body, property)) Fail(SFormNameBehindClass);
    if (body.Seen[index]) Fail(SFormTwice);
    body.Seen[index] = true;
    ReadProperty(body, property, rest);
    FPath.pop_back();
    return;
  }
  FPath.push_back({name.c_str()});
  Fail(FormatText(SFormUnknownProperty, {body.Object.ClassName()}));
}

void TFormReader::ReadProperty(TBody& body, const TProperty& property, std::string_view rest) {
  const int line = FLines.GetNumber();
  if (property.IsSource) {
    body.Line = line;
    body.Path = GetPath();
  }
  if (property.Kind == TKind::Object) {
    if (rest != "{") FailExpected(ShapeOf(property), rest);
    return ReadBody(*property.Object, body.IsLive);
  }
  if (property.Kind == TKind::Link) return ReadLink(property, rest);
  if (property.Kind == TKind::Ignored) return PassOver(property, rest);
  TPropertyValue value = ReadValue(property, rest);
  RequireEnd(rest);
  if (property.IsLate)
    body.Late.push_back({&property, std::move(value), line});
  else
    Guard(line, nullptr, [&] { property.Set(std::move(value)); });
}

/// Any value in a line, or a text.
void TFormReader::PassOver(const TProperty& property, std::string_view rest) {
  if (rest.starts_with('"')) {
    ReadText(rest);
    return RequireEnd(rest);
  }
  if (rest.empty() || rest == "{") FailExpected(ShapeOf(property), rest);
}

TPropertyValue TFormReader::ReadValue(const TProperty& property, std::string_view& rest) {
  if (property.Kind == TKind::Text) return ReadText(rest);
  const std::optional<TPropertyValue> value = ReadWord(property, rest);
  if (!value) FailExpected(ShapeOf(property), rest);
  rest = {};
  return *value;
}

TString TFormReader::ReadText(std::string_view& rest) {
  std::u16string text;
  for (;;) {
    if (!rest.starts_with('"')) FailExpected("a text in quotes", rest);
    if (const TMessage* fault = ReadPiece(rest, text)) Fail(*fault);
    if (!Take(rest, "+")) return text;
    if (!rest.empty()) continue;
    if (!FLines.Next()) Fail(SFormEnds);
    rest = FLines.GetLine();
  }
}

// Links

void TFormReader::ReadLink(const TProperty& property, std::string_view rest) {
  const int line = FLines.GetNumber();
  if (rest == "none") {
    const TPropertyValue none = static_cast<TComponent*>(nullptr);
    return Guard(line, nullptr, [&] { property.Set(none); });
  }
  if (!Take(rest, "component")) FailExpected(ShapeOf(property), rest);
  const TString name = ReadText(rest);
  RequireEnd(rest);
  FLinks.push_back({property, name, line, GetPath()});
}

void TFormReader::ResolveLinks() {
  if (!FLinks.empty()) LookBeside();
  for (const TLink& link : FLinks) {
    Guard(link.Line, &link.Path, [&] {
      TComponent* component = FindComponent(link);
      if (!component) throw EConvertError(FormatText(SFormUnknownComponent, {link.Name}));
      link.Property.Set(component);
    });
  }
}

void TFormReader::LookBeside() {
  std::set<const TComponent*> owners;
  for (const TRead& read : FRead) {
    const TComponent* owner = read.Component->GetOwner();
    if (!owner || !owners.insert(owner).second) continue;
    for (int i = 0; i < owner->GetComponentCount(); ++i)
      FBeside.insert({owner->GetComponent(i)->GetName(), owner->GetComponent(i)});
  }
}

/// In the form first; outside it where the link leads already, or beside the components of the
/// form.
TComponent* TFormReader::FindComponent(const TLink& link) const {
  if (const auto found = FNamed.find(link.Name); found != FNamed.end()) return found->second;
  auto* before = std::get<TComponent*>(link.Property.Get());
  if (before && before->GetName() == link.Name) return before;
  const auto beside = FBeside.find(link.Name);
  return beside == FBeside.end() ? nullptr : beside->second;
}

// Faults

void TFormReader::RequireEnd(std::string_view rest) const {
  if (!rest.empty()) FailExpected("the end of the line", rest);
}

/// Gives what `action()` raises its place in the form, by default where the reader is; the
/// exception itself goes along, nested.
template <class Action>
void TFormReader::Guard(int line, const TString* path, Action action) const {
  try {
    action();
  } catch (const EStoredFormError&) {
    throw;
  } catch (const EException& error) {
    std::throw_with_nested(EStoredFormError(error.GetMessage(), line, path ? *path : GetPath()));
  }
}

TString TFormReader::GetPath() const {
  std::string path;
  for (const TStep& step : FPath) {
    if (step.Name)
      path.append(path.empty() ? "" : ".").append(step.Name);
    else
      path.append("[").append(std::to_string(step.Entry)).append("]");
  }
  return path;
}

void TFormReader::Fail(int line, const TString& reason) const {
  throw EStoredFormError(reason, line, GetPath());
}

void TFormReader::FailExpected(const TString& expected, std::string_view found) const {
  Fail(FormatText(SFormExpected, {expected, TString(found.substr(0, ShownText))}));
}

}  // namespace fzy::detail
