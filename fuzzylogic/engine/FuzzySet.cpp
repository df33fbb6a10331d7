#include "fuzzylogic/engine/FuzzySet.h"

#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/framework/Properties.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"
#include "fuzzylogic/vocabulary/FuzzyTypeNames.h"

// Life, properties, notification, membership and text of a set. Its shapes, combinations, hedges,
// cuts and inference stand in files of their own.

namespace fzy {
namespace {

constexpr TFzyFloat WidestX = 2147483647.0;

TFuzzyPoint PointOf(const TFuzzySetValue* value, const char* operation) {
  if (!value) throw EFzyException(SFzySetMissing, {TString(operation)});
  return value->GetPoint();
}

}  // namespace

TFuzzySetClass TFuzzySet::Class() {
  static constexpr TFuzzySetDescriptor descriptor{"TFuzzySet", [] { return new TFuzzySet; }};
  return &descriptor;
}

TFuzzySet* TFuzzySet::Create(TFuzzySetCollection* collection, TFuzzySetClass setClass) {
  return Create(collection, setClass, 0);
}

/// @param room  characters that the name will take, so that naming the set takes no memory
TFuzzySet* TFuzzySet::Create(TFuzzySetCollection* collection, TFuzzySetClass setClass,
                             std::size_t room) {
  TFuzzySet* set = setClass->New();
  const TPin pinned(set);
  try {
    set->FName.Reserve(room);
    set->Build(collection);
  } catch (...) {
    // One that has joined stays: it was a handler that threw.
    if (!set->Siblings()) set->Free();
    throw;
  }
  return set->Returned();
}

void TFuzzySet::Build(TFuzzySetCollection* collection) {
  FValues = CreateValues();
  TFirstException first;
  first.Run([&] { SetCollection(collection); });
  if (FSurroundings && FSurroundings->IsDesigning()) SetDefined(true);
  first.Rethrow();
}

TFuzzySetValues* TFuzzySet::CreateValues() { return new TFuzzySetValues(this); }

TFuzzySet::~TFuzzySet() {
  if (!FValues) return;
  FValues->FFuzzySet = nullptr;  // an operation of the list may still be running
  FValues->Free();
}

TOwned<TFuzzySet> TFuzzySet::NewInstance() const {
  TOwned<TFuzzySet> set(GetClass()->New());
  set->Build(Siblings());
  return set;
}

TFuzzySetCollection* TFuzzySet::Siblings() const noexcept {
  return static_cast<TFuzzySetCollection*>(TCollectionItem::GetCollection());
}

void TFuzzySet::CollectionChanged() {
  FSurroundings = Siblings() ? Siblings()->GetSurroundings() : nullptr;
}

TFuzzySets* TFuzzySet::GetCollection() const {
  return Siblings() ? Siblings()->AsFuzzySets() : nullptr;
}

TFuzzyVariable* TFuzzySet::GetVariable() const {
  return FSurroundings ? FSurroundings->AsVariable() : nullptr;
}

TString TFuzzySet::GetDisplayName() const {
  return FName.empty() ? TGCollectionItem::GetDisplayName() : FName;
}

void TFuzzySet::SetName(const TString& value) {
  if (value == FName) return;
  if (IsReservedFuzzyWord(value)) throw EFzyException(SInvalidFuzzySetName, {value});
  ChangeKey([&] { FName = value; });
  Changed(false);
}

void TFuzzySet::StoreName(TString value) {
  if (IsReservedFuzzyWord(value)) throw EFzyException(SInvalidFuzzySetName, {value});
  StoreKey(FName, std::move(value));
}

void TFuzzySet::SetComment(const TString& value) {
  if (value == FComment) return;
  FComment = value;
  Changed(false);
}

void TFuzzySet::SetValues(TFuzzySetValues* value) {
  const TPin self(this);
  FValues->Assign(value);
}

TFzyFloat TFuzzySet::GetXRange(int index) const {
  if (index != 0 && index != 1) throw EFzyException(SInvalidXRangeIndex, {std::int64_t{index}});
  if (!FSurroundings) return index == 0 ? WidestX : -WidestX;
  return index == 0 ? FSurroundings->GetMaximum() : FSurroundings->GetMinimum();
}

void TFuzzySet::Assign(TPersistent* source) {
  auto* set = dynamic_cast<TFuzzySet*>(source);
  if (!set) return TGCollectionItem::Assign(source);
  if (set == this) return;
  const TPin self(this);
  const TPin pinned(set);
  DoAssign(set);
}

/// Takes the memory for the content of another set, so that assigning it needs none.
/// @throws EFzyException when the list of points refuses one
void TFuzzySet::PrepareFor(const TFuzzySet& source) {
  FName.Reserve(source.FName.size());
  FExpression.Reserve(source.FExpression.size());
  FDefinition.Reserve(source.FDefinition.Get().size());
  FValues->PrepareFor(source.FValues->Points());
}

void TFuzzySet::DoAssign(TFuzzySet* source) {
  PrepareFor(*source);
  ChangeKey([&] { FName = source->FName; });
  TFirstException first;
  first.Run([&] { SetValues(source->FValues); });
  FSetType = source->FSetType;
  FInflectionPoint = source->FInflectionPoint;
  FExpression = source->FExpression;
  FDefinition.Assign(source->FDefinition.Get());
  first.Run([this] { Changed(false); });
  first.Rethrow();
}

void TFuzzySet::DefineProperties(TFiler& filer) {
  TGCollectionItem::DefineProperties(filer);
  filer.Define(
      "Defined", [this] { return FDefined; }, [this](bool value) { SetDefined(value); });
  filer.DefineObject("Values", *FValues);
  filer.Define(
      "Name", [this] { return FName; }, [this](TString value) { StoreName(std::move(value)); });
  filer.DefineField("Comment", FComment);
  filer.DefineField("SetType", FSetType);
  filer.DefineField("Tag", FTag);
  filer.Define(
      "InflectionPoint", [this] { return FInflectionPoint; },
      [this](TFzyFloat value) {
        RequireNumber(value, "SetInflectionPoint");
        FInflectionPoint = value;
      },
      0.0);
  filer.DefineField("Expression", FExpression, TString());
  filer.Define(
      "Definition", [this] { return FDefinition.Get(); },
      [this](TString value) { FDefinition.Set(std::move(value)); }, TString());
}

TFuzzySet* TFuzzySet::DoClone() {
  const TPin self(this);
  TOwned<TFuzzySet> copy = NewInstance();
  copy->Assign(this);
  return copy.Release();
}

void TFuzzySet::UpdateFuzzySetValue(TFuzzySetValue* /*value*/) { PointsChanged(); }

void TFuzzySet::UpdateFuzzySetValues() { PointsChanged(); }

void TFuzzySet::PointsChanged() {
  const TPin self(this);
  TFirstException first;
  first.Run([this] { Changed(false); });
  FSetType = fstUserDefined;
  FExpression = TString();
  FDefinition.Clear();
  first.Rethrow();
}

void TFuzzySet::AppendPoints(TString& text) const {
  for (const TFuzzyPoint& point : FValues->Points()) {
    text += u'(';
    text += FormatFixed(point.X, 4);
    text += u' ';
    text += FormatFixed(point.Y, 4);
    text += u") ";
  }
  text += u')';
}

TString TFuzzySet::GetValuesToString() const {
  TString text(u"(");
  AppendPoints(text);
  return text;
}

TString TFuzzySet::ToString() const {
  if (std::optional<TString> shown = FSurroundings ? FSurroundings->Show(*this) : std::nullopt)
    return *std::move(shown);
  TString text(u"(");
  text += FName;
  text += u' ';
  AppendPoints(text);
  return text;
}

TFzyFloat TFuzzySet::DegreeOfMembership(TFzyFloat value) const {
  RequireNumber(value, "DegreeOfMembership");
  return Membership(FValues->Points(), FValues->IsAscending(), value);
}

TFzyFloat TFuzzySet::InterpolateX(TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2,
                                  TFzyFloat yValue) const {
  const TFzyFloat x = fzy::InterpolateX(x1, y1, x2, y2, yValue);
  RequireFinite(x, "InterpolateX");
  return x;
}

TFzyFloat TFuzzySet::InterpolateY(TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2,
                                  TFzyFloat xValue) const {
  const TFzyFloat y = fzy::InterpolateY(x1, y1, x2, y2, xValue);
  RequireFinite(y, "InterpolateY");
  return y;
}

TFzyFloat TFuzzySet::GetSlope(const TFuzzySetValue* value1, const TFuzzySetValue* value2) const {
  const TFzyFloat slope = Slope(PointOf(value1, "GetSlope"), PointOf(value2, "GetSlope"));
  RequireFinite(slope, "GetSlope");
  return slope;
}

void TFuzzySet::RequireRun(TFuzzyCurve points, int index, int dir, const char* operation) {
  if (index < 0 || index >= static_cast<int>(points.size())) RaiseFuzzyIndex(index);
  if (dir == 0) throw EFzyException(SFzyInvalidArgument, {TString(operation), std::int64_t{dir}});
}

int TFuzzySet::GetMaxYValueOfX(int index, int dir) const {
  RequireRun(FValues->Points(), index, dir, "GetMaxYValueOfX");
  return MaxYOfX(FValues->Points(), index, dir);
}

int TFuzzySet::GetMinYValueOfX(int index, int dir) const {
  RequireRun(FValues->Points(), index, dir, "GetMinYValueOfX");
  return MinYOfX(FValues->Points(), index, dir);
}

}  // namespace fzy
