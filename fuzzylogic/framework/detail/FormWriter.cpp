#include "fuzzylogic/framework/detail/FormWriter.h"

#include "fuzzylogic/framework/Component.h"
#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/framework/Messages.h"
#include "fuzzylogic/framework/detail/FormLimits.h"
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
    FBuffer += object->ClassName().Utf8();
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

void TFormWriter::WriteBody(TPersistent& object, int depth) {
  if (depth > DeepestForm) throw EConvertError(FormatText(SFormNotStored, {object.ClassName()}));
  const TFiler description(object);
  for (const TProperty& property : description.GetProperties()) WriteProperty(property, depth);
  std::visit([&](const auto& entries) { WriteEntries(entries, depth); }, description.GetEntries());
}

void TFormWriter::WriteProperty(const TProperty& property, int depth) {
  if (property.Kind == TProperty::TKind::Ignored || property.IsInHeader) return;
  if (property.Refresh) property.Refresh();
  if (property.Kind == TProperty::TKind::Object) {
    BeginProperty(property, depth);
    FBuffer += "{\n";
    WriteBody(*property.Object, depth + 1);
    BeginLine(depth);
    FBuffer += '}';
    return EndLine();
  }
  const TPropertyValue value = property.Get();
  if (property.Default && EqualValues(*property.Default, value)) return;
  WriteValue(property, value, depth);
}

void TFormWriter::WriteValue(const TProperty& property, const TPropertyValue& value, int depth) {
  if (const auto* link = std::get_if<TComponent*>(&value)) return WriteLink(property, *link, depth);
  BeginProperty(property, depth);
  if (const auto* flag = std::get_if<bool>(&value))
    FBuffer += *flag ? "true" : "false";
  else if (const auto* whole = std::get_if<std::int64_t>(&value); whole && property.Names.empty())
    AppendNumber(FBuffer, *whole);
  else if (whole)
    FBuffer += property.Names[static_cast<std::size_t>(*whole)];
  else if (const auto* number = std::get_if<double>(&value))
    AppendNumber(FBuffer, *number);
  else
    AppendText(FBuffer, std::get<TString>(value), Indent * (static_cast<std::size_t>(depth) + 1));
  EndLine();
}

void TFormWriter::WriteLink(const TProperty& property, const TComponent* component, int depth) {
  if (component && !CanBeNamed(*component)) {
    // One outside is what the link finds where it is loaded.
    if (!FComponents.contains(component) && component->GetName().empty()) return;
    throw EConvertError(FormatText(SFormNameNeeded, {component->ClassName()}));
  }
  BeginProperty(property, depth);
  FBuffer += component ? "component " : "none";
  if (component)
    AppendText(FBuffer, component->GetName(), Indent * (static_cast<std::size_t>(depth) + 1));
  EndLine();
}

void TFormWriter::WriteEntries(const TItemEntries& entries, int depth) {
  const int count = entries.GetCount();
  for (int i = 0; i < count; ++i) {
    TPersistent& item = entries.GetItem(i);
    BeginLine(depth);
    FBuffer += item.ClassName().Utf8();
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

/// Whether its name leads to it from within the form.
bool TFormWriter::CanBeNamed(const TComponent& component) const {
  const auto named = FNames.find(component.GetName());
  if (named == FNames.end()) return !component.GetName().empty();
  return !component.GetName().empty() && named->second == 1 && FComponents.contains(&component);
}

void TFormWriter::BeginLine(int depth) {
  FBuffer.append(Indent * static_cast<std::size_t>(depth), ' ');
}

void TFormWriter::BeginProperty(const TProperty& property, int depth) {
  BeginLine(depth);
  FBuffer += property.Name;
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
