#include "fuzzylogic/framework/Persistent.h"

#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/framework/Messages.h"

namespace fzy {

void TPersistent::Assign(TPersistent* source) {
  if (!source) throw EConvertError(FormatText(SAssignError, {TString("nil"), ClassName()}));
  source->AssignTo(this);
}

void TPersistent::AssignTo(TPersistent* dest) {
  throw EConvertError(
      FormatText(SAssignError, {ClassName(), dest ? dest->ClassName() : TString("nil")}));
}

void TPersistent::DefineProperties(TFiler& /*filer*/) {}

void TPersistent::Free() {
  if (FFreed) return;
  const TPin self(this);
  FFreed = true;
  Leave();
}

void TPersistent::Unpin() noexcept {
  // The last pin of a freed object stays on: pins that come and go while the destructor runs do not
  // end the object again.
  if (FPins == 1 && FFreed)
    delete this;
  else
    --FPins;
}

}  // namespace fzy
