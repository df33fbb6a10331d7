#pragma once

#include "fuzzylogic/common/StringIterator.h"
#include "fuzzylogic/framework/Properties.h"
#include "fuzzylogic/framework/Strings.h"
#include "fuzzylogic/interfaces/KelHashTable.h"

namespace fzy {

/// A name near `name` that is not `taken`: the name itself, then with `append` behind a blank, then
/// with numbers: "Temp", "Temp copy", "Temp  copy (1)", "Temp   copy (2)" (a blank more each time).
/// Time and length grow with the names that are taken.
TString UniqueName(const TString& name, const TString& append,
                   const std::function<bool(const TString&)>& taken);

/// A keyed table whose keys are texts, compared by code unit and so case-sensitively; its values
/// are interfaces of the kind `I`, each counted once for its entry.
template <class I>
class TKelStringHashTable : public TKelHashTable<TString, Ref<I>> {
 public:
  using TTable = TKelHashTable<TString, Ref<I>>;
  using TTable::Add;
  using TTable::TTable;
  TString ClassName() const override { return "TKelStringHashTable"; }

  /// From a string list: its texts as keys, with no values, inside one update block. A text that
  /// repeats raises the error of `Add`; then the texts before it are here, as they are when memory
  /// fails. From a table as its base.
  void Assign(TPersistent* source) override {
    const auto* list = dynamic_cast<const TStrings*>(source);
    if (!list) return TTable::Assign(source);
    const TPin pinned(list);
    TUpdateBlock block(*this);
    this->Clear();
    for (int i = 0; i < list->GetCount(); ++i) Add(list->GetString(i), nullptr);
    block.Close();
  }
  /// To a string list: one line a key, in the table's order. To any other object with a published
  /// text property "Text": the same lines as its text.
  void AssignTo(TPersistent* dest) override {
    const TPin self(this);
    if (auto* list = dynamic_cast<TStrings*>(dest)) {
      return list->Refill([&] {
        for (const TString& key : TTable::GetKeys()) list->Add(key);
      });
    }
    TStrings keys;
    AssignTo(&keys);
    if (!dest || !SetTextProperty(*dest, "Text", keys.GetText())) TTable::AssignTo(dest);
  }

  /// See `UniqueName`.
  TString GetUniqueName(const TString& name, const TString& append) const {
    return UniqueName(name, append,
                      [this](const TString& key) { return TTable::ContainsKey(key); });
  }

  /// Walks over the keys. The table must outlive the iterator, which does not follow its changes.
  Ref<IStringIterator> Indices() const { return {new TStringIterator(*this)}; }

 private:
  class TStringIterator final : public TInterfaced<IStringIterator> {
   public:
    explicit TStringIterator(const TKelStringHashTable& table) noexcept : FTable(table) {}
    TString GetCurrent() override {
      if (FSlot < 0 || FSlot >= FTable.GetCapacity()) Fail();
      return FTable.KeyAt(FSlot);
    }
    int GetCount() override { return FTable.GetCount(); }
    int GetSize() override { return FTable.GetCount(); }
    bool HasMore() override { return FVisited < FTable.GetCount(); }
    TString Next() override {
      const int slot = HasMore() ? FTable.DoNext(FSlot) : -1;
      if (slot < 0) Fail();
      FSlot = slot;
      ++FVisited;
      return FTable.KeyAt(FSlot);
    }
    void Reset() override {
      FSlot = -1;
      FVisited = 0;
    }

   private:
    [[noreturn]] void Fail() const {
      throw EListError(FormatText(SListIndexError, {std::int64_t{FVisited}}));
    }

    const TKelStringHashTable& FTable;
    int FSlot = -1;
    int FVisited = 0;
  };
};

}  // namespace fzy
