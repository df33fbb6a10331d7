#pragma once

#include "fuzzylogic/framework/Interface.h"
#include "fuzzylogic/framework/Text.h"

namespace fzy {

/// Walks over texts, once, from a start to which it can go back.
class IStringIterator : public IInterface {
 public:
  using Base = IInterface;
  static constexpr TGuid Id{
      0xf83e4162, 0xa296, 0x11d3, {0xb9, 0x92, 0x00, 0xc0, 0x4f, 0x8e, 0xda, 0x5f}};

  /// The text reached; before the first step there is none.
  /// @throws EListError (`SListIndexError`) then
  virtual TString GetCurrent() = 0;
  /// How many texts there are.
  virtual int GetCount() = 0;
  virtual int GetSize() = 0;
  virtual bool HasMore() = 0;
  /// Goes on to the next text and returns it.
  /// @throws EListError (`SListIndexError`) when there is none
  virtual TString Next() = 0;
  /// Goes back to the start.
  virtual void Reset() = 0;

 protected:
  ~IStringIterator() = default;
};

}  // namespace fzy
