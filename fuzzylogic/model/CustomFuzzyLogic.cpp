#include "fuzzylogic/model/CustomFuzzyLogic.h"

#include <algorithm>

#include "fuzzylogic/framework/Properties.h"
#include "fuzzylogic/vocabulary/FuzzyExceptions.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"
#include "fuzzylogic/vocabulary/FuzzyTypeNames.h"

namespace fzy {

TCustomFuzzyLogic::TCustomFuzzyLogic(TComponent* owner) : TComponent(owner) {
  FVariables.SetCaseSensitive(false);
}

TCustomFuzzyLogic::~TCustomFuzzyLogic() {
  Destroying();
  TCustomFuzzyLogic::SetParser(nullptr);
}

/// An operation that is still running keeps the memory, but nobody tells of the parser's end any
/// more.
void TCustomFuzzyLogic::Leave() {
  TComponent::Leave();
  TCustomFuzzyLogic::SetParser(nullptr);
}

void TCustomFuzzyLogic::SetNumFunctionValues(int value) noexcept {
  FNumFunctionValues = std::clamp(value, 2, MostFunctionValues);
}

void TCustomFuzzyLogic::SetThreshold(TFzyFloat value) {
  if (value == FThreshold) return;
  StoreThreshold(value);
  ThresholdChanged();
}

void TCustomFuzzyLogic::StoreThreshold(TFzyFloat value) {
  RequireNumber(value, "SetThreshold");
  FThreshold = std::clamp(value, 0.0, 1.0);
}

void TCustomFuzzyLogic::SetParser(TFuzzyTextParser* value) {
  if (Is(csDestroying)) value = nullptr;  // nobody would tell of the parser's end any more
  if (value == FParser) return;
  if (value) value->FreeNotification(this);  // first, as it may find no memory
  if (FParser) FParser->RemoveFreeNotification(this);
  FParser = value;
}

void TCustomFuzzyLogic::Notification(TComponent* component, TOperation operation) {
  TComponent::Notification(component, operation);
  if (operation == opRemove && FParser && component == FParser) SetParser(nullptr);
}

void TCustomFuzzyLogic::DefineProperties(TFiler& filer) {
  TComponent::DefineProperties(filer);
  filer.DefineField("AutoTerms", FAutoTerms, true);
  filer.DefineField("CorrelationMethod", FCorrelationMethod, fcmMinimum);
  filer.DefineField("InferenceMethod", FInferenceMethod, fimMinMax);
  filer.DefineField("DefuzzificationMethod", FDefuzzificationMethod, dmCenterOfGravity);
  filer.Define(
      "NumFunctionValues", [this] { return FNumFunctionValues; },
      [this](int value) { SetNumFunctionValues(value); }, 7);
  filer.Define(
      "Threshold", [this] { return FThreshold; },
      [this](TFzyFloat value) { StoreThreshold(value); });
  filer.DefineLink(
      "Parser", [this] { return FParser; }, [this](TFuzzyTextParser* value) { SetParser(value); });
  TProperty& strings = filer.DefineObject("Strings", FStrings);
  strings.Refresh = [this] { RefreshText(); };
  strings.IsSource = true;
  filer.DefineObject("Variables", FVariables);
}

TStrings* TCustomFuzzyLogic::GetStrings() {
  if (FNeedsUpdate) UpdateStrings();
  return &FStrings;
}

void TCustomFuzzyLogic::SetStrings(TStrings* value) {
  FStrings.Assign(value);
  Parse();
}

void TCustomFuzzyLogic::SetStrings(const TString& text) {
  FStrings.SetText(text);
  Parse();
}

void TCustomFuzzyLogic::RequireParser() const {
  if (!FParser) throw EFzyException(SParserUnassigned);
}

void TCustomFuzzyLogic::UpdateStrings() {
  if (!Is(csLoading)) RequireParser();
  FNeedsUpdate = false;
}

void TCustomFuzzyLogic::Parse() {
  if (Is(csLoading)) return;
  RequireParser();
  ParseText(GetStrings()->GetGivenText());
}

void TCustomFuzzyLogic::ParseText(const TString& text) {
  const TPin self(this);
  const TPin parser(FParser);
  RequireParser();
  FParser->Parse(text, nullptr);
  FNeedsUpdate = false;
}

void TCustomFuzzyLogic::FireChange() {
  const TPin self(this);
  FireEvent(FOnChange, this);
}

}  // namespace fzy
