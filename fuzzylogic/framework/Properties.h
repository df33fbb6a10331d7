#pragma once

#include <functional>

#include "fuzzylogic/framework/Text.h"

namespace fzy {

class TPersistent;

/// Goes through the published properties of an object, as `TPersistent::DefineProperties` names
/// them one after another.
class TFiler {
 public:
  using TTextGetter = std::function<TString()>;
  using TTextSetter = std::function<void(const TString&)>;

  virtual void DefineText(const TString& name, const TTextGetter& get, const TTextSetter& set) = 0;

 protected:
  ~TFiler() = default;
};

/// Sets the published text property of that name; false when the object has none. What the setter
/// raises goes on.
bool SetTextProperty(TPersistent& object, const TString& name, const TString& value);

}  // namespace fzy
