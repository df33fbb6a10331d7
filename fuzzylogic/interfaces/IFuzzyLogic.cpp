#include "fuzzylogic/interfaces/IFuzzyLogic.h"

#include <bit>
#include <numeric>

#include "fuzzylogic/framework/Properties.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy {

/// What the component puts into its variables.
struct TIFuzzyLogic::TSetHandler {
  std::shared_ptr<TIFuzzyLogic*> Link;
  void (TIFuzzyLogic::*Method)(const Ref<IFuzzyVariable>&, const Ref<IFuzzySet>&);

  void operator()(const Ref<IFuzzyVariable>& sender, const Ref<IFuzzySet>& fuzzySet) const {
    if (*Link) ((*Link)->*Method)(sender, fuzzySet);
  }
};

/// Where the variables stand aside while new ones are made from a text that is loaded.
class TIFuzzyLogic::TReplacedModel final : public TStagedEntries {
 public:
  explicit TReplacedModel(TIFuzzyLogic& fuzzy)
      : FPin(&fuzzy), FFuzzy(fuzzy), FItems(*fuzzy.GetItems()) {}
  ~TReplacedModel() override {
    try {
      for (const Ref<IFuzzyVariable>& variable : FVariables.GetValues()) Unwire(variable);
    } catch (...) {  // NOLINT(bugprone-empty-catch): of a foreign variable
    }
  }
  void Exchange() noexcept override {
    FItems.Exchange(FVariables);
    std::swap(FFuzzy.FFingerprint, FFingerprint);
    const bool needsUpdate = FFuzzy.NeedsUpdate();
    FFuzzy.SetNeedsUpdate(FNeedsUpdate);
    FNeedsUpdate = needsUpdate;
  }

 private:
  /// A handler may have entered the variable again.
  void Unwire(const Ref<IFuzzyVariable>& variable) const {
    if (!(FItems.ContainsVariable(variable->GetName()) == variable)) FFuzzy.Unwire(*variable);
  }

  TPin FPin;
  TIFuzzyLogic& FFuzzy;
  TFuzzyVariableTable& FItems;
  TFuzzyVariableTable FVariables;
  std::uint64_t FFingerprint = 0;
  bool FNeedsUpdate = false;
};

TComponentClass TIFuzzyLogic::Class() {
  static constexpr TComponentDescriptor descriptor{
      "TIFuzzyLogic", [](TComponent* owner) -> TComponent* { return new TIFuzzyLogic(owner); }};
  return &descriptor;
}

TIFuzzyLogic::~TIFuzzyLogic() {
  Destroying();
  Dismantle();
  *FLink = nullptr;
  if (!FItems) return;
  FItems->FFuzzyLogic = nullptr;
  FItems->Free();
}

void TIFuzzyLogic::Leave() {
  TCustomFuzzyLogic::Leave();
  Dismantle();
}

/// Detaches the handlers, then lets the variables go. The table itself stays until the destructor,
/// because operations that are still running may ask for it.
void TIFuzzyLogic::Dismantle() noexcept {
  SetOnChange(nullptr);
  FOnFuzzySetChange = FOnFuzzySetAdded = FOnFuzzySetDeleted = nullptr;
  FOnVariableChange = FOnVariableAdded = FOnVariableDeleted = nullptr;
  if (!FItems) return;
  FItems->BeginUpdate();  // never ended: nobody is told of the end of the table
  try {
    FItems->Clear();
  } catch (...) {  // NOLINT(bugprone-empty-catch): of a descendant; the model goes all the same
  }
}

TFuzzyVariableTable* TIFuzzyLogic::GetItems() {
  if (!FItems) FItems = CreateVariables();
  return FItems;
}

void TIFuzzyLogic::SetItems(TFuzzyVariableTable* value) {
  const TPin self(this);
  GetItems()->Assign(value);
}

void TIFuzzyLogic::ThresholdChanged() {
  TCustomFuzzyLogic::ThresholdChanged();
  const TPin self(this);
  TFirstException first;
  for (const Ref<IFuzzyVariable>& variable : GetItems()->GetValues())
    first.Run([&] { variable->SetThreshold(GetThreshold()); });
  first.Rethrow();
}

void TIFuzzyLogic::DefineProperties(TFiler& filer) {
  TCustomFuzzyLogic::DefineProperties(filer);
  filer.DefineReplaced([this] { return std::make_unique<TReplacedModel>(*this); });
}

void TIFuzzyLogic::Loaded() {
  TCustomFuzzyLogic::Loaded();
  Parse();
}

void TIFuzzyLogic::UpdateStrings() {
  TCustomFuzzyLogic::UpdateStrings();
  if (Is(csLoading)) return;
  WriteText([](const Ref<IFuzzyVariable>& variable) { return variable->ToString(); });
}

template <class Print>
void TIFuzzyLogic::WriteText(Print print) {
  Regenerate([&](TStrings& lines) {
    for (const Ref<IFuzzyVariable>& variable : GetItems()->GetValues()) lines.Add(print(variable));
  });
  FFingerprint = Fingerprint();
}

/// The text is all that is stored. So it follows every change that it shows, also those that do not
/// have it made anew when it is read, and variables without a parser are written by the
/// component's.
void TIFuzzyLogic::RefreshText() {
  if (Is(csLoading) || (!NeedsUpdate() && Fingerprint() == FFingerprint)) return;
  TCustomFuzzyLogic::UpdateStrings();
  void* found = nullptr;
  GetParser()->QueryInterface(IFuzzyParser::Id, &found);
  const auto parser = Ref<IFuzzyParser>::Attach(static_cast<IFuzzyParser*>(found));
  WriteText([&](const Ref<IFuzzyVariable>& variable) {
    if (variable->GetParser()) return variable->ToString();
    if (!parser) throw EFzyException(SParserUnassigned);
    return parser->PrettyPrint(variable);
  });
}

/// What the text shows of the model, as a number.
std::uint64_t TIFuzzyLogic::Fingerprint() {
  std::uint64_t print = 0;
  const auto add = [&print](std::uint64_t word) { print = (print ^ word) * 0x9E3779B97F4A7C15U; };
  const auto addNumber = [&](TFzyFloat value) { add(std::bit_cast<std::uint64_t>(value)); };
  const auto addText = [&](const TString& text) { add(std::hash<TString>()(text)); };
  for (const Ref<IFuzzyVariable>& variable : GetItems()->GetValues()) {
    for (const TString& text : {variable->GetName(), variable->GetUnits(), variable->GetComment()})
      addText(text);
    addNumber(variable->GetMinimum());
    addNumber(variable->GetMaximum());
    for (int i = 0; i < variable->GetCount(); ++i) {
      const Ref<IFuzzySet> set = variable->GetFuzzySet(i);
      for (const TString& text : {set->GetName(), set->GetComment(), set->GetExpression()})
        addText(text);
      add(2 * Ordinal(set->GetSetType()) + (set->GetDefined() ? 1 : 0));
      for (int point = 0; point < set->GetCount(); ++point) {
        addNumber(set->GetXValues(point));
        addNumber(set->GetYValues(point));
      }
    }
  }
  return print;
}

void TIFuzzyLogic::Parse() {
  if (Is(csLoading)) return;
  RequireParser();
  Rebuild([this] { GetItems()->Clear(); });
  FFingerprint = Fingerprint();
}

void TIFuzzyLogic::AddAutoTerms(const Ref<IFuzzyVariable>& fuzzyVariable) {
  const Ref<IFuzzyVariable> variable = fuzzyVariable;
  using TShape = void (*)(IFuzzySet & set, TFzyFloat min, TFzyFloat max);
  TFirstException first;
  const auto add = [&](const TString& name, TShape shape) {
    if (variable->ContainsFuzzySet(name)) return;
    Ref<IFuzzySet> set;
    first.Run([&] { set = variable->Add(name); });
    if (!set) set = variable->ContainsFuzzySet(name);  // told to a handler that threw
    if (!set) return;
    const TFzyFloat min = variable->GetMinimum();
    const TFzyFloat max = variable->GetMaximum();
    first.Run([&] { shape(*set, min, max); });
    set->SetExpression(set->GetName());
  };
  first.Run([&] {
    add(SLowFuzzyTerm, [](IFuzzySet& set, TFzyFloat min, TFzyFloat max) {
      set.Add(min, 1.0);
      set.Add(max, 0.0);
    });
  });
  first.Run([&] {
    add(SMediumFuzzyTerm, [](IFuzzySet& set, TFzyFloat min, TFzyFloat max) {
      set.CreateTriangleFunctionValues(min, std::midpoint(min, max), max);
    });
  });
  first.Run([&] {
    add(SHighFuzzyTerm, [](IFuzzySet& set, TFzyFloat min, TFzyFloat max) {
      set.Add(min, 0.0);
      set.Add(max, 1.0);
    });
  });
  first.Rethrow();
}

void TIFuzzyLogic::FuzzySetAdded(const Ref<IFuzzyVariable>& sender,
                                 const Ref<IFuzzySet>& fuzzySet) {
  const TPin self(this);
  FireEvent(FOnFuzzySetAdded, sender, fuzzySet);
}

void TIFuzzyLogic::FuzzySetDeleted(const Ref<IFuzzyVariable>& sender,
                                   const Ref<IFuzzySet>& fuzzySet) {
  const TPin self(this);
  FireEvent(FOnFuzzySetDeleted, sender, fuzzySet);
}

void TIFuzzyLogic::VariableAdded(const Ref<IFuzzyVariable>& fuzzyVariable) {
  const TPin self(this);
  TFirstException first;
  first.Run([&] { fuzzyVariable->SetThreshold(GetThreshold()); });
  if (GetAutoTerms()) first.Run([&] { AddAutoTerms(fuzzyVariable); });
  fuzzyVariable->SetOnFuzzySetAdded(TSetHandler{FLink, &TIFuzzyLogic::FuzzySetAdded});
  fuzzyVariable->SetOnFuzzySetDeleted(TSetHandler{FLink, &TIFuzzyLogic::FuzzySetDeleted});
  fuzzyVariable->SetOnFuzzySetChange(TSetHandler{FLink, &TIFuzzyLogic::UpdateFuzzySet});
  first.Run([&] { FireEvent(FOnVariableAdded, fuzzyVariable); });
  first.Rethrow();
}

void TIFuzzyLogic::VariableDeleted(const Ref<IFuzzyVariable>& fuzzyVariable) {
  const TPin self(this);
  fuzzyVariable->SetOnFuzzySetAdded(nullptr);
  fuzzyVariable->SetOnFuzzySetDeleted(nullptr);
  fuzzyVariable->SetOnFuzzySetChange(nullptr);
  FireEvent(FOnVariableDeleted, fuzzyVariable);
}

/// Takes this component's handlers out of a variable, not those of another one that it has entered
/// since.
void TIFuzzyLogic::Unwire(IFuzzyVariable& variable) const {
  const auto isOurs = [this](const TIFuzzySetEvent& event) {
    const auto* handler = event.target<TSetHandler>();
    return handler && handler->Link == FLink;
  };
  if (auto* own = dynamic_cast<TIFuzzyVariable*>(&variable)) {  // without copies: that takes memory
    for (auto* event : {&own->FOnFuzzySetAdded, &own->FOnFuzzySetDeleted, &own->FOnFuzzySetChange})
      if (isOurs(*event)) *event = nullptr;
    return;
  }
  if (isOurs(variable.GetOnFuzzySetAdded())) variable.SetOnFuzzySetAdded(nullptr);
  if (isOurs(variable.GetOnFuzzySetDeleted())) variable.SetOnFuzzySetDeleted(nullptr);
  if (isOurs(variable.GetOnFuzzySetChange())) variable.SetOnFuzzySetChange(nullptr);
}

void TIFuzzyLogic::UpdateVariable(const Ref<IFuzzyVariable>& fuzzyVariable) {
  const TPin self(this);
  SetNeedsUpdate(true);
  if (fuzzyVariable)
    FireEvent(FOnVariableChange, fuzzyVariable);
  else
    FireChange();
}

void TIFuzzyLogic::UpdateFuzzySet(const Ref<IFuzzyVariable>& sender,
                                  const Ref<IFuzzySet>& fuzzySet) {
  const TPin self(this);
  SetNeedsUpdate(true);
  FireEvent(FOnFuzzySetChange, sender, fuzzySet);
}

}  // namespace fzy
