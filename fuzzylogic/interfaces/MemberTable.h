#pragma once

#include "fuzzylogic/interfaces/KelStringHashTable.h"

namespace fzy {

/// A keyed table of the members of an owner, each stored under the name that it had when it was
/// entered. Every entry, replacement and removal is reported to the descendant after the table has
/// told of it itself; that a member was replaced is not, nor is `Clear`. String lists are refused
/// as a source, because names alone are no members.
template <class I>
class TMemberTable : public TKelStringHashTable<I> {
 public:
  using TTable = TKelStringHashTable<I>;
  using TTable::Remove;
  TMemberTable() = default;

  /// Removes the member when it is the one stored under its name; else nothing happens.
  void Remove(const Ref<I>& member) {
    if (!member) return;
    const Ref<I> held = member;
    const TString name = held->GetName();
    if (Find(name) == held) TTable::Remove(name);
  }
  void Assign(TPersistent* source) override {
    if (dynamic_cast<TStrings*>(source))
      throw EConvertError(FormatText(SAssignError, {source->ClassName(), this->ClassName()}));
    TTable::Assign(source);
  }

 protected:
  virtual void MemberEntered(const Ref<I>& member) = 0;
  virtual void MemberLeft(const Ref<I>& member) = 0;
  /// The member of that name, or none.
  Ref<I> Find(const TString& name) const {
    Ref<I> member;
    TTable::TryGetValue(name, member);
    return member;
  }

  void DoAdd(std::int32_t hashCode, int index, const TString& key, const Ref<I>& value) override {
    Enter(value, [&](const Ref<I>& member) { TTable::DoAdd(hashCode, index, key, member); });
  }
  void DoSetValue(int index, const Ref<I>& value) override {
    Enter(value, [&](const Ref<I>& member) { TTable::DoSetValue(index, member); });
  }
  Ref<I> DoRemove(const TString& key, std::int32_t hashCode,
                  TKeyedNotification notification) override {
    const TPin self(this);
    Ref<I> removed = Find(key);
    TFirstException first;
    first.Run([&] { TTable::DoRemove(key, hashCode, notification); });
    if (removed) first.Run([&] { MemberLeft(removed); });
    first.Rethrow();
    return removed;
  }

 private:
  template <class Store>
  void Enter(const Ref<I>& value, Store store) {
    this->RequireValue(value);
    const TPin self(this);
    const Ref<I> member = value;
    TFirstException first;
    first.Run([&] { store(member); });
    first.Run([&] { MemberEntered(member); });
    first.Rethrow();
  }
};

}  // namespace fzy
