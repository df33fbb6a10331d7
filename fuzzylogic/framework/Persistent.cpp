#include "fuzzylogic/framework/Persistent.h"

#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/framework/Messages.h"

namespace fzy {

void TPersistent::Assign(TPersistent* source) {
  if (!source) throw EConvertError(FormatText(SAssignError, {TString("nothing"), ClassName()}));
  source->AssignTo(this);
}

void TPersistent::AssignTo(TPersistent* dest) {
  throw EConvertError(
      FormatText(SAssignError, {ClassName(), dest ? dest->ClassName() : TString("nothing")}));
}

void TPersistent::DefineProperties(TFiler& /*filer*/) {}

void TPersistent::Free() {
  if (IsFreed()) return;
  const TPin self(this);
  FLife = TLife::Freed;
  Leave();
}

void TPersistent::FreeUnheld() noexcept {
  if (IsFreed()) return;
  if (FPins > 0) {
    FLife = TLife::Unheld;
    return;
  }
  try {
    Free();
  } catch (...) {  // NOLINT(bugprone-empty-catch): see the header
  }
}

void TPersistent::Unpin() noexcept {
  if (FPins > 1 || FLife == TLife::Alive) {
    --FPins;
    return;
  }
  if (FLife == TLife::Unheld) {
    FLife = TLife::Alive;
    --FPins;
    if (IsUnheld()) FreeUnheld();
    return;
  }
  // The last pin of a freed object stays on: pins that come and go while the destructor runs do not
  // end the object again.
  delete this;
}

}  // namespace fzy
