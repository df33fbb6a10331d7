#pragma once

#include "fuzzylogic/framework/Interface.h"
#include "fuzzylogic/framework/Persistent.h"

namespace fzy {

/// A counted object that can be copied, assigned and compared.
class ICloneable : public IInterface {
 public:
  using Base = IInterface;
  static constexpr TGuid Id{
      0x2d42ccdb, 0xd296, 0x11d3, {0xb9, 0xbb, 0x00, 0xc0, 0x4f, 0x8e, 0xda, 0x5f}};

  virtual void Assign(const Ref<IInterface>& value) = 0;
  virtual void Assign(TPersistent* source) = 0;
  virtual void AssignTo(TPersistent* dest) = 0;
  /// A new, independent copy.
  virtual Ref<IInterface> Clone() = 0;
  virtual bool Equals(const Ref<IInterface>& value) = 0;
  virtual std::intptr_t GetTag() = 0;
  virtual void SetTag(std::intptr_t value) = 0;

 protected:
  ~ICloneable() = default;
};

}  // namespace fzy
