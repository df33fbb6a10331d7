#pragma once

#include <algorithm>
#include <limits>
#include <memory>
#include <numeric>

#include "fuzzylogic/framework/Component.h"
#include "fuzzylogic/framework/Event.h"
#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/framework/Message.h"
#include "fuzzylogic/framework/Strings.h"

namespace fzy {

/// An operation that the state of a string list forbids.
class EStringListError : public EException {
 public:
  using EException::EException;
};

/// More memory was asked for than there can be.
class EOutOfMemory : public EException {
 public:
  using EException::EException;
};

/// "The list has this text already"
extern TMessage SDuplicateString;
/// "A sorted list keeps an order of its own"
extern TMessage SSortedListError;
/// "The list cannot have capacity %d"
extern TMessage SListCapacityError;
/// "There is not that much memory"
extern TMessage SOutOfMemory;

/// What a sorted list does with a text that it has already.
enum class TDuplicates : unsigned char { dupIgnore, dupAccept, dupError };
using enum TDuplicates;

/// A string list whose entries hold a counted interface each, beside text and object. It can keep
/// itself sorted, own its objects and tell of its changes.
///
/// Texts are compared by `CompareText`, in every look-up too. A sorted list finds texts in
/// logarithmic time, as long as the global locale is the one that it was sorted by; `Insert`,
/// `InsertObject`, `Exchange` and `SetString` raise EStringListError (`SSortedListError`) there.
///
/// `OnChanging` is told before a change and forbids it by an exception; `OnChange` is told after
/// it; an update block tells once each, as it opens and when it has closed. Handlers may change the
/// list (an index is checked again after `OnChanging`) and may `Free()` one on the heap, but not
/// delete it. Interfaces and owned objects go once the list no longer shows them, before
/// `OnChange`.
template <class I>
class TStringList : public TStrings {
 public:
  /// The order of two lines of the list: below, at or above 0. It should leave the list as it is.
  using TCompare = std::function<int(const TStringList& list, int left, int right)>;

  /// An empty list: unsorted, without regard to case, with duplicates ignored once it is sorted.
  /// @param ownsObjects whether the list frees the objects of its entries (by `delete`)
  explicit TStringList(bool ownsObjects = false) : FOwnsObjects(ownsObjects) {
    FCaseSensitive = false;
  }
  /// Lets all entries go and tells nobody.
  ~TStringList() override {
    FOnChanging = nullptr;
    FOnChange = nullptr;
    while (GetCount() > 0) TStrings::Clear();
  }
  using TPersistent::Free;
  TString ClassName() const override { return "TStringList"; }

  /// Adds an entry. A sorted list puts it where it belongs, before equal ones; of a text that it
  /// has already, `dupIgnore` adds nothing and gives the index of the old entry. An entry that is
  /// not added leaves the object to the caller.
  /// @throws EStringListError (`SDuplicateString`) by `dupError`
  int AddObject(TString text, TObject* object, Ref<I> data) {
    return AddLine({std::move(text), object, u"\n", std::move(data)});
  }
  using TStrings::AddObject;
  /// Nothing is published: objects and data of the entries cannot be stored, and a list without
  /// them would be another one.
  void DefineProperties(TFiler& /*filer*/) override {}
  void SetString(int index, TString text) override {
    Change(true, index, 0, [&] { TStrings::SetString(index, std::move(text)); });
  }
  void SetObject(int index, TObject* object) override {
    Change(false, index, 0, [&] { TStrings::SetObject(index, object); });
  }
  void Exchange(int left, int right) override {
    const int outer = std::min(left, right) < 0 ? std::min(left, right) : std::max(left, right);
    Change(true, outer, 0, [&] { TStrings::Exchange(left, right); });
  }
  void Delete(int index) override {
    Change(false, index, 0, [&] {
      const std::unique_ptr<TObject> object(FOwnsObjects ? GetObject(index) : nullptr);
      TStrings::Delete(index);
    });
  }
  void Clear() override {
    if (GetCount() > 0) Change(false, 0, 1, [this] { TStrings::Clear(); });
  }

  /// The interface of an entry, or none.
  Ref<I> GetData(int index) const { return DoGetData(index); }
  void PutData(int index, Ref<I> value) { DoPutData(index, std::move(value)); }

  /// Whether the text is in the list, and where: in a sorted list with `dupAccept` the first of
  /// equal entries, in another sorted list any of them, in an unsorted one the first. When it is
  /// not there, `index` is where `Add` would put it.
  bool Find(const TString& text, int& index) const {
    bool found = false;
    int high = GetCount() - 1;
    for (index = 0; FSorted && index <= high;) {
      const int middle = index + (high - index) / 2;
      const int order = CompareText(GetString(middle), text, FCaseSensitive);
      found = found || order == 0;
      if (order >= 0) high = middle - 1;
      if (order < 0) index = middle + 1;
      if (order == 0 && FDuplicates != dupAccept) index = middle;
    }
    if (FSorted) return found;
    const int first = TStrings::IndexOf(text);
    index = first < 0 ? GetCount() : first;
    return first >= 0;
  }
  int IndexOf(const TString& text) const override {
    int index = 0;
    return Find(text, index) ? index : -1;
  }

  /// Sorts by text or by an order of the caller's; equal entries stay as they are to each other. On
  /// a sorted list nothing happens.
  void Sort() { Sort(ByText(FCaseSensitive)); }
  void Sort(const TCompare& compare) {
    const auto sort = [&] {
      if (!FSorted) SortLines(compare);  // a handler may have set it
    };
    if (!FSorted) Arrange(sort);
  }
  bool GetSorted() const noexcept { return FSorted; }
  /// Setting sorts the list and keeps equal texts; clearing leaves the entries where they are.
  void SetSorted(bool value) { SetFlag(FSorted, value); }
  /// A sorted list is sorted anew when this changes.
  void SetCaseSensitive(bool value) override { SetFlag(FCaseSensitive, value); }
  TDuplicates GetDuplicates() const noexcept { return FDuplicates; }
  /// Counts for what is added from now on.
  void SetDuplicates(TDuplicates value) noexcept { FDuplicates = value; }
  bool GetOwnsObjects() const noexcept override { return FOwnsObjects; }
  void SetOwnsObjects(bool value) noexcept { FOwnsObjects = value; }

  /// The entries that there is room for; it doubles when they need more. `Clear` gives it back.
  int GetCapacity() const noexcept { return static_cast<int>(FLines.capacity()); }
  /// @throws EListError (`SListCapacityError`) below the count, or above 268,435,456 entries
  void SetCapacity(int value) {
    if (value < GetCount() || value > MostCapacity)
      throw EListError(FormatText(SListCapacityError, {std::int64_t{value}}));
    Reallocate(value);
  }

  const TNotifyEvent& GetOnChanging() const noexcept { return FOnChanging; }
  void SetOnChanging(TNotifyEvent value) { FOnChanging = std::move(value); }
  const TNotifyEvent& GetOnChange() const noexcept { return FOnChange; }
  void SetOnChange(TNotifyEvent value) { FOnChange = std::move(value); }

 protected:
  virtual Ref<I> DoGetData(int index) const { return static_cast<I*>(Line(index).Data.Get()); }
  virtual void DoPutData(int index, Ref<I> value) {
    Change(false, index, 0,
           [&] { const auto old = std::exchange(Line(index).Data, std::move(value)); });
  }

  int AddLine(TLine line) override {
    const TPin self(this);
    int index = 0;
    bool add = FindPlace(line.Text, index);
    if (add && Fire(FOnChanging)) add = FindPlace(line.Text, index);
    if (!add) return index;
    TStrings::InsertLine(index, std::move(line));
    Fire(FOnChange);
    return index;
  }
  void InsertLine(int index, TLine line) override {
    Change(true, index, 1, [&] { TStrings::InsertLine(index, std::move(line)); });
  }
  void Reserve(std::int64_t count) override {
    std::int64_t capacity = GetCapacity() > 0 ? GetCapacity() : count;
    while (capacity < count) capacity *= 2;
    if (capacity > std::numeric_limits<int>::max()) throw EOutOfMemory(SOutOfMemory);
    if (capacity > GetCapacity()) Reallocate(static_cast<int>(capacity));
  }
  bool TakesDataOf(const TStrings& source) const override {
    return dynamic_cast<const TStringList*>(&source) != nullptr;
  }
  void SetUpdating(bool value) override { Fire(value ? FOnChanging : FOnChange); }
  bool Same(std::u16string_view left, std::u16string_view right) const override {
    return CompareText(left, right, FCaseSensitive) == 0;
  }

 private:
  static constexpr int MostCapacity = 1 << 28;

  void Reallocate(int capacity) {
    std::vector<TLine> lines;
    lines.reserve(static_cast<std::size_t>(capacity));
    for (TLine& line : FLines) lines.push_back(std::move(line));
    FLines.swap(lines);
  }
  /// Whether there was somebody to tell.
  bool Fire(const TEvent<TNotifyEvent>& event) {
    if (!event || IsUpdating() || IsFreed()) return false;
    const TPin self(this);
    event.Fire(this);
    return true;
  }

  /// Makes a change and tells. Refused are an index from `beyond` behind the end on, and what moves
  /// entries in a sorted list.
  template <class Act>
  void Change(bool moves, int index, int beyond, Act&& act) {
    const TPin self(this);
    const auto check = [&] {
      if (moves && FSorted) throw EStringListError(SSortedListError);
      RequireIndex(index, GetCount() + beyond);
    };
    check();
    if (Fire(FOnChanging)) check();
    act();
    Fire(FOnChange);
  }
  /// Changes the order, of which a list of one line or none has nothing to tell.
  template <class Act>
  void Arrange(Act&& act) {
    GetCount() < 2 ? act() : Change(false, 0, 1, act);
  }
  /// Sets one of the two flags that the order depends on.
  void SetFlag(bool& flag, bool value) {
    if (value == flag) return;
    const auto next = [&](const bool& other) { return &other == &flag ? value : other; };
    const auto set = [&] {
      if (next(FSorted)) SortLines(ByText(next(FCaseSensitive)));
      flag = value;
    };
    next(FSorted) ? Arrange(set) : set();
  }

  /// Whether a text may be added, and where; if not, `index` is the entry that is there.
  bool FindPlace(const TString& text, int& index) const {
    index = GetCount();
    if (!FSorted || !Find(text, index) || FDuplicates == dupAccept) return true;
    if (FDuplicates == dupError) throw EStringListError(SDuplicateString);
    return false;
  }
  static TCompare ByText(bool caseSensitive) {
    return [caseSensitive](const TStringList& list, int left, int right) {
      return CompareText(list[left], list[right], caseSensitive);
    };
  }
  void SortLines(const TCompare& compare) {
    const bool sorted = FSorted;
    std::vector<int> order(FLines.size());
    std::iota(order.begin(), order.end(), 0);
    MergeSort(order.data(), order.data() + order.size(),
              [&](int left, int right) { return compare(*this, left, right) < 0; });
    if (order.size() != FLines.size() || sorted != FSorted) return;  // the comparison changed it
    std::vector<TLine> lines;
    lines.reserve(FLines.capacity());
    for (const int index : order) lines.push_back(std::move(Line(index)));
    FLines.swap(lines);
  }
  /// Stays within its range whatever the answers are; std::sort relies on an order and may not.
  template <class Before>
  static void MergeSort(int* first, int* last, const Before& before) {
    if (last - first < 2) return;
    int* const middle = first + (last - first) / 2;
    MergeSort(first, middle, before);
    MergeSort(middle, last, before);
    std::inplace_merge(first, middle, last, before);
  }

  bool FSorted = false;
  TDuplicates FDuplicates = dupIgnore;
  TEvent<TNotifyEvent> FOnChange;
  TEvent<TNotifyEvent> FOnChanging;
  bool FOwnsObjects;
};

}  // namespace fzy
