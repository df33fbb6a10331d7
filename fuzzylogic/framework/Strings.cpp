#include "fuzzylogic/framework/Strings.h"

#include <algorithm>
#include <array>
#include <new>

#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/framework/Messages.h"
#include "fuzzylogic/framework/Properties.h"
#include "fuzzylogic/framework/UpdateBlock.h"

namespace fzy {
namespace {

constexpr std::array<const char16_t*, 3> LineEnds{u"\n", u"\r\n", u"\r"};

/// The end that a line has among others.
const char16_t* ClosedEnd(const char16_t* end) { return *end ? end : u"\n"; }

}  // namespace

class TStrings::TStagedLines final : public TStagedTexts {
 public:
  explicit TStagedLines(TStrings& list) noexcept : FList(list) {}
  void Add(TTextEntry entry) override {
    const auto end = std::find(LineEnds.begin(), LineEnds.end(), entry.End.View());
    if (end == LineEnds.end())
      throw EConvertError(FormatText(SFormExpected, {TString(R"(\n, \r\n or \r)"), entry.End}));
    FLines.push_back({std::move(entry.Text), nullptr, *end});
  }
  void Exchange() noexcept override { FList.FLines.swap(FLines); }

 private:
  TStrings& FList;
  std::vector<TLine> FLines;
};

void TStrings::RequireIndex(int index, int end) {
  if (index < 0 || index >= end)
    throw EListError(FormatText(SListIndexError, {std::int64_t{index}}));
}

const TStrings::TLine& TStrings::Line(int index) const {
  RequireIndex(index, GetCount());
  return FLines[static_cast<std::size_t>(index)];
}

bool TStrings::Same(std::u16string_view left, std::u16string_view right) const {
  return FCaseSensitive ? left == right : SameText(left, right);
}

void TStrings::AddStrings(const TStrings& source) {
  TUpdateBlock block(*this);
  const bool data = TakesDataOf(source), objects = !GetOwnsObjects() || !source.GetOwnsObjects();
  const int count = source.GetCount();  // it may be this list, or change while it is copied
  std::vector<int> added;               // the index of each at the time
  added.reserve(static_cast<std::size_t>(count));
  try {
    Reserve(std::int64_t{GetCount()} + count);
    for (int i = 0; i < count && i < source.GetCount(); ++i) {
      TLine line = source.Line(i);
      if (!data) line.Data = nullptr;
      if (!objects) line.Object = nullptr;
      const int before = GetCount();
      const int index = AddLine(std::move(line));
      if (GetCount() > before) added.push_back(index);
    }
  } catch (const std::bad_alloc&) {
    for (; !added.empty(); added.pop_back()) FLines.erase(FLines.begin() + added.back());
    throw;
  }
  block.Close();
}

void TStrings::InsertLine(int index, TLine line) {
  RequireIndex(index, GetCount() + 1);
  Reserve(std::int64_t{GetCount()} + 1);
  FLines.insert(FLines.begin() + index, std::move(line));
}

void TStrings::Delete(int index) {
  const TLine taken = std::move(Line(index));  // its end may come back to the list
  FLines.erase(FLines.begin() + index);
}

void TStrings::Clear() {
  std::vector<TLine> taken = std::exchange(FLines, {});
  if (FReplaced) return FReplaced->swap(taken);
  if (!GetOwnsObjects()) return;
  for (const TLine& line : taken) delete line.Object;
}

/// The lines that a list had before it is filled anew. They stand aside until the new ones are
/// there, because those may not find the memory that they need.
class TStrings::TReplaced {
 public:
  explicit TReplaced(TStrings& list) noexcept : FList(list) {}
  TReplaced(const TReplaced&) = delete;
  TReplaced& operator=(const TReplaced&) = delete;
  ~TReplaced() {
    FList.FReplaced = nullptr;
    if (!FList.GetOwnsObjects()) return;
    for (const TLine& line : FLines) delete line.Object;
  }
  void Take() {
    FList.FReplaced = &FLines;
    FList.Clear();
    FList.FReplaced = nullptr;
  }
  void GiveBack() noexcept {
    FList.FLines.swap(FLines);
    FLines.clear();  // the objects of the new lines are not the list's
  }

 private:
  TStrings& FList;
  std::vector<TLine> FLines;
};

void TStrings::Refill(const std::function<void()>& fill) {
  TUpdateBlock block(*this);
  {
    TReplaced replaced(*this);
    replaced.Take();
    try {
      fill();
    } catch (const std::bad_alloc&) {
      replaced.GiveBack();
      throw;
    }
  }
  block.Close();
}

TString TStrings::GetText() const {
  std::size_t length = 0;
  for (const TLine& line : FLines) length += line.Text.size() + 2;
  TString text;
  text.Reserve(length);
  for (const TLine& line : FLines) {
    text += line.Text;
    text += ClosedEnd(line.End);
  }
  return text;
}

TString TStrings::GetGivenText() const {
  const TString text = GetText();
  return !FLines.empty() && !*FLines.back().End ? text.Slice(0, text.size() - 1) : text;
}

void TStrings::SetText(TString text) {
  Refill([&] {
    const std::u16string_view all = text;
    for (std::size_t start = 0; start < all.size();) {
      const std::size_t end = std::min(all.find_first_of(u"\r\n", start), all.size());
      const bool pair = all.substr(end, 2) == u"\r\n";
      const char16_t* sign = end == all.size()   ? u""
                             : pair              ? u"\r\n"
                             : all[end] == u'\r' ? u"\r"
                                                 : u"\n";
      AddLine({all.substr(start, end - start), nullptr, sign});
      start = end + (pair ? 2 : 1);
    }
  });
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
    SetString(index, std::move(line));
}

void TStrings::Assign(TPersistent* source) {
  const auto* list = dynamic_cast<const TStrings*>(source);
  if (!list) return TPersistent::Assign(source);
  if (list == this) return;
  const TPin pinned(list);
  Refill([&] { AddStrings(*list); });
}

void TStrings::DefineProperties(TFiler& filer) {
  TPersistent::DefineProperties(filer);
  filer.DefineEntries(TTextEntries{[this] { return GetCount(); },
                                   [this](int index) -> TTextEntry {
                                     const TLine& line = Line(index);
                                     return {line.Text, ClosedEnd(line.End)};
                                   },
                                   [this] { return std::make_unique<TStagedLines>(*this); }});
}

void TStrings::BeginUpdate() {
  const TPin self(this);
  if (FUpdateCount == 0) SetUpdating(true);
  ++FUpdateCount;
}

void TStrings::EndUpdate() {
  if (FUpdateCount > 0 && --FUpdateCount == 0) SetUpdating(false);
}

}  // namespace fzy
