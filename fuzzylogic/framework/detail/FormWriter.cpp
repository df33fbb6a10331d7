#include "fuzzylogic/framework/detail/FormWriter.h"

#include "fuzzylogic/framework/Component.h"
#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/framework/Messages.h"
#include "fuzzylogic/framework/detail/FormText.h"

namespace fzy::detail {
namespace {

constexpr std::size_t Indent = 2;
constexpr std::size_t FlushSize = 65536;

}  // namespace

TFormWriter::TFormWriter(TStream& stream, std::span<TPersistent* const> form)
    : FStream(stream), FForm(form) {
  for (const TPersistent* object : form) {
    const auto* component = dynamic_cast<const TComponent*>(object);
    if (component && FComponents.insert(component).second) ++FNames[component->GetName()];
  }
}

void TFormWriter::Write() {
  for (TPersistent* object : FForm) {
    WriteName(*object, object->ClassName().Utf8());
    const auto* component = dynamic_cast<const TComponent*>(object);
    if (component && !component->GetName().empty()) {
      FBuffer += ' ';
      AppendText(FBuffer, component->GetName(), 2 * Indent);
    }
    FBuffer += " {\n";
    WriteBody(*object, 1);
    FBuffer += "}\n";
  }
  Flush();
}

/// Writes the name of a class or a property, which must be one that can be read.
void TFormWriter::WriteName(const TPersistent& object, std::string_view name) {
  std::string_view rest = name;
  if (name.empty() || TakeName(rest) != name) {
    const TString reason = FormatText(SFormBadName, {TString(name)});
    throw EConvertError(FormatText(SFormNotStored, {object.ClassName(), reason}));
  }
  FBuffer += name;
}

void TFormWriter::WriteBody(TPersistent& object, int depth) {
  if (depth > DeepestForm)
    throw EConvertError(FormatText(SFormNotStored, {object.ClassName(), SFormTooDeep}));
  const TFiler description(object);
  for (const TProperty& property : description.GetProperties())
    WriteProperty(object, property, depth);
  std::visit([&](const auto& entries) { WriteEntries(entries, depth); }, description.GetEntries());
}

void TFormWriter::WriteProperty(const TPersistent& object, const TProperty& property, int depth) {
  if (property.Kind == TProperty::TKind::Ignored || (property.IsInHeader && depth == 1)) return;
  if (property.Refresh) property.Refresh();
  if (property.Kind == TProperty::TKind::Object) {
    BeginProperty(object, property, depth);
    FBuffer += "{\n";
    WriteBody(*property.Object, depth + 1);
    BeginLine(depth);
    FBuffer += '}';
    return EndLine();
  }
  const TPropertyValue value = property.Get();
  if (property.Default && EqualValues(*property.Default, value)) return;
  const auto* link = std::get_if<TComponent*>(&value);
  if (link && !CanBeStored(*link)) return;
  BeginProperty(object, property, depth);
  WriteValue(property, value, depth);
  EndLine();
}

void TFormWriter::WriteValue(const TProperty& property, const TPropertyValue& value, int depth) {
  const std::size_t indent = Indent * (static_cast<std::size_t>(depth) + 1);
  if (const auto* flag = std::get_if<bool>(&value)) {
    FBuffer += *flag ? "true" : "false";
  } else if (const auto* whole = std::get_if<std::int64_t>(&value)) {
    if (property.Names.empty())
      AppendNumber(FBuffer, *whole);
    else
      FBuffer += property.Names[static_cast<std::size_t>(*whole)];
  } else if (const auto* number = std::get_if<double>(&value)) {
    AppendNumber(FBuffer, *number);
  } else if (const auto* text = std::get_if<TString>(&value)) {
    AppendText(FBuffer, *text, indent);
  } else {
    const TComponent* component = std::get<TComponent*>(value);
    FBuffer += component ? "component " : "none";
    if (component) AppendText(FBuffer, component->GetName(), indent);
  }
}

/// No for a component outside the form that has no name: the link keeps to what it finds where it
/// is loaded.
/// @throws EConvertError for one whose name does not lead to it
bool TFormWriter::CanBeStored(const TComponent* component) const {
  if (!component) return true;
  const bool isInForm = FComponents.contains(component);
  const auto named = FNames.find(component->GetName());
  if (component->GetName().empty() && !isInForm) return false;
  const bool isFound = named == FNames.end() || (isInForm && named->second == 1);
  if (component->GetName().empty() || !isFound)
    throw EConvertError(FormatText(SFormNameNeeded, {component->ClassName()}));
  return true;
}

void TFormWriter::WriteEntries(const TItemEntries& entries, int depth) {
  const int count = entries.GetCount();
  for (int i = 0; i < count; ++i) {
    TPersistent& item = entries.GetItem(i);
    BeginLine(depth);
    WriteName(item, item.ClassName().Utf8());
    FBuffer += " {\n";
    WriteBody(item, depth + 1);
    BeginLine(depth);
    FBuffer += '}';
    EndLine();
  }
}

void TFormWriter::WriteEntries(const TTextEntries& entries, int depth) {
  const int count = entries.GetCount();
  for (int i = 0; i < count; ++i) {
    const TTextEntry entry = entries.GetItem(i);
    BeginLine(depth);
    AppendText(FBuffer, entry.Text, Indent * (static_cast<std::size_t>(depth) + 1));
    if (entry.End != UsualLineEnd) {
      FBuffer += ' ';
      AppendText(FBuffer, entry.End, 0);
    }
    EndLine();
  }
}

void TFormWriter::WriteEntries(const TPairEntries& entries, int depth) {
  const int count = entries.GetCount();
  for (int i = 0; i < count; ++i) {
    const TNumberPair pair = entries.GetItem(i);
    BeginLine(depth);
    FBuffer += '(';
    AppendNumber(FBuffer, pair.first);
    FBuffer += ' ';
    AppendNumber(FBuffer, pair.second);
    FBuffer += ')';
    EndLine();
  }
}

void TFormWriter::BeginLine(int depth) {
  FBuffer.append(Indent * static_cast<std::size_t>(depth), ' ');
}

void TFormWriter::BeginProperty(const TPersistent& object, const TProperty& property, int depth) {
  BeginLine(depth);
  WriteName(object, property.Name);
  FBuffer += " = ";
}

void TFormWriter::EndLine() {
  FBuffer += '\n';
  if (FBuffer.size() >= FlushSize) Flush();
}

void TFormWriter::Flush() {
  FStream.Write(FBuffer);
  FBuffer.clear();
}

}  // namespace fzy::detail
