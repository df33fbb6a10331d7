#pragma once

#include <vector>

#include "fuzzylogic/framework/Interface.h"

namespace fzy {

/// An ordered list of counted objects. It may hold other lists.
class IInterfaceList : public IInterface {
 public:
  using Base = IInterface;
  static constexpr TGuid Id{
      0x5E9A0B84, 0x2C1F, 0x4D63, {0xA8, 0x17, 0x3B, 0xD4, 0x60, 0xF2, 0x9E, 0x71}};

  virtual int GetCount() const = 0;
  /// @throws EListError for an index outside the list
  virtual Ref<IInterface> Get(int index) const = 0;
  /// Appends; the result is the new index.
  virtual int Add(const Ref<IInterface>& item) = 0;

 protected:
  ~IInterfaceList() = default;
};

/// The list. Lists may nest a million deep: freeing them takes no stack.
class TInterfaceList final : public TInterfaced<IInterfaceList> {
 public:
  static Ref<TInterfaceList> Create() { return {new TInterfaceList}; }
  ~TInterfaceList() override;

  int GetCount() const override { return static_cast<int>(FItems.size()); }
  Ref<IInterface> Get(int index) const override;
  int Add(const Ref<IInterface>& item) override;

 private:
  TInterfaceList() = default;

  std::vector<Ref<IInterface>> FItems;
  Ref<TInterfaceList> FNext;  // of lists that go
};

}  // namespace fzy
