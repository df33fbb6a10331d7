#include "fuzzylogic/framework/Strings.h"

#include <algorithm>

#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/framework/Messages.h"

namespace fzy {

const TStrings::TLine& TStrings::Line(int index) const {
  if (index < 0 || index >= GetCount())
    throw EListError(FormatText(SListIndexError, {std::int64_t{index}}));
  return FLines[static_cast<std::size_t>(index)];
}

bool TStrings::Same(std::u16string_view left, std::u16string_view right) const noexcept {
  return FCaseSensitive ? left == right : SameText(left, right);
}

void TStrings::AddObject(TString text, TObject* object) {
  FLines.push_back({std::move(text), object, u"\n"});
}

void TStrings::Delete(int index) {
  Line(index);
  FLines.erase(FLines.begin() + index);
}

void TStrings::Clear() { FLines.clear(); }

TString TStrings::GetText() const {
  std::size_t length = 0;
  for (const TLine& line : FLines) length += line.Text.size() + 2;
  TString text;
  text.Reserve(length);
  for (const TLine& line : FLines) {
    text += line.Text;
    text += line.End;
  }
  return text;
}

void TStrings::SetText(const TString& text) {
  FLines.clear();
  const std::u16string_view all = text;
  for (std::size_t start = 0; start < all.size();) {
    const std::size_t end = std::min(all.find_first_of(u"\r\n", start), all.size());
    Add(all.substr(start, end - start));
    const bool pair = all.substr(end, 2) == u"\r\n";
    if (pair) FLines.back().End = u"\r\n";
    if (!pair && all.substr(end, 1) == u"\r") FLines.back().End = u"\r";
    start = end + (pair ? 2 : 1);
  }
}

int TStrings::IndexOf(const TString& text) const {
  const auto found = std::find_if(FLines.begin(), FLines.end(),
                                  [&](const TLine& line) { return Same(line.Text, text); });
  return found == FLines.end() ? -1 : static_cast<int>(found - FLines.begin());
}

int TStrings::IndexOfName(const TString& name) const {
  for (int i = 0; i < GetCount(); ++i) {
    const std::u16string_view line = GetString(i);
    const std::size_t sign = line.find(u'=');
    if (sign != TString::npos && Same(line.substr(0, sign), name)) return i;
  }
  return -1;
}

TString TStrings::GetValue(const TString& name) const {
  const int index = IndexOfName(name);
  if (index < 0) return {};
  const TString& line = GetString(index);
  return line.Slice(line.Find(u"=") + 1);
}

void TStrings::SetValue(const TString& name, const TString& value) {
  const int index = IndexOfName(name);
  TString line = name + "=" + value;
  if (index < 0)
    Add(std::move(line));
  else
    FLines[static_cast<std::size_t>(index)].Text = std::move(line);
}

void TStrings::Assign(TPersistent* source) {
  const auto* list = dynamic_cast<const TStrings*>(source);
  if (!list) return TPersistent::Assign(source);
  FLines = list->FLines;
}

}  // namespace fzy
