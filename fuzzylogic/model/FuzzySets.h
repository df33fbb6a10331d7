#pragma once

#include "fuzzylogic/engine/FuzzySet.h"

namespace fzy {

/// The terms of a linguistic variable: the ordered list of its fuzzy sets, found by name. It owns
/// the sets and reports every addition, removal and change to the variable.
class TFuzzySets : public TFuzzySetCollection {
 public:
  /// A list owned by `variable`, or a free one, of sets of the given class.
  explicit TFuzzySets(TFuzzyVariable* variable = nullptr,
                      TFuzzySetClass setClass = TFuzzySet::Class()) noexcept
      : FVariable(variable), FSetClass(setClass) {}
  TString ClassName() const override { return "TFuzzySets"; }

  TPersistent* GetOwner() const override;
  TFuzzyVariable* GetVariable() const noexcept { return FVariable; }
  /// The class of the sets that are added here.
  TFuzzySetClass GetSetClass() const noexcept { return FSetClass; }
  TFuzzySurroundings* GetSurroundings() const override;
  TFuzzySets* AsFuzzySets() override { return this; }

  /// Appends a new set and makes it the variable's current one. Nothing is returned when a handler
  /// freed it at once.
  TFuzzySet* Add();
  /// The same with a name. The set is defined unless the name is empty or "__Empty".
  /// @throws EFzyException (`SInvalidFuzzySetName`) for a reserved word; nothing is added
  TFuzzySet* Add(const TString& name);
  /// Inserts a new set before `index`; the current one stays.
  /// @throws EFzyException for an index outside the list (the end included)
  TFuzzySet* Insert(int index);

  /// @throws EFzyException for an index outside the list
  TFuzzySet* GetItem(int index) const;
  TFuzzySet* operator[](int index) const { return GetItem(index); }
  /// Assigns the content of `value` to the set at `index`.
  void SetItem(int index, TFuzzySet* value);
  /// The first set of that name (case-sensitive).
  /// @throws EFzyException (`SUnknownFuzzySetName`) when there is none
  TFuzzySet* GetItemByName(const TString& name) const;
  /// Assigns the content of `value` to that set; raises likewise.
  void SetItemByName(const TString& name, TFuzzySet* value);
  /// Copies the sets of another list: inside one update block those here go, and a copy of each is
  /// added. Other sources are refused.
  void Assign(TPersistent* source) override;
  TListIterator<TFuzzySets> begin() const { return {*this, 0}; }
  TListIterator<TFuzzySets> end() const { return {*this, GetCount()}; }

 protected:
  TCollectionItem* AddItem() override;
  TCollectionItem* NewItem() override { return TFuzzySet::Create(nullptr, FSetClass); }
  void Notify(TCollectionItem* item, TCollectionNotification action) override;
  void Update(TCollectionItem* item) override;
  [[noreturn]] void FailIndex(int index) const override { RaiseFuzzyIndex(index); }

 private:
  friend class TFuzzyVariable;
  int RequireName(const TString& name) const;
  TFuzzySet* AddWithRoom(std::size_t room);
  using TRoom = std::vector<TOwned<TFuzzySet>>;
  TRoom RoomFor(TFuzzySets& source);
  void Replace(TFuzzySets& source, TRoom room);

  TFuzzyVariable* FVariable;
  TFuzzySetClass FSetClass;
};

}  // namespace fzy
