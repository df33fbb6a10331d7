#include "fuzzylogic/framework/Properties.h"

#include "fuzzylogic/framework/Persistent.h"

namespace fzy {
namespace {

class TTextPropertySetter final : public TFiler {
 public:
  TTextPropertySetter(const TString& name, const TString& value) : FName(name), FValue(value) {}
  void DefineText(const TString& name, const TTextGetter& /*get*/,
                  const TTextSetter& set) override {
    if (Found || name != FName) return;
    Found = true;
    set(FValue);
  }

  bool Found = false;

 private:
  const TString& FName;
  const TString& FValue;
};

}  // namespace

bool SetTextProperty(TPersistent& object, const TString& name, const TString& value) {
  const TPin pinned(&object);
  TTextPropertySetter setter(name, value);
  object.DefineProperties(setter);
  return setter.Found;
}

}  // namespace fzy
