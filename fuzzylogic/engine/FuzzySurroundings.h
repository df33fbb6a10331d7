#pragma once

#include <optional>

#include "fuzzylogic/common/NamedCollection.h"
#include "fuzzylogic/vocabulary/FuzzyTypes.h"

namespace fzy {

class TFuzzySet;
class TFuzzySets;
class TFuzzyVariable;

/// What a fuzzy set asks of its surroundings, so that the engine knows nothing of the model. The
/// linguistic variable answers; for a set without one the defaults stand beside each question.
class TFuzzySurroundings {
 public:
  /// The range of X; -2147483647 to 2147483647.
  virtual TFzyFloat GetMinimum() const = 0;
  virtual TFzyFloat GetMaximum() const = 0;
  /// The strength from which two sets count as equal; 0.
  virtual TFzyFloat GetThreshold() const = 0;
  /// The settings of the component; the first value of each.
  virtual TFuzzyCorrelationMethod GetCorrelationMethod() const = 0;
  virtual TFuzzyInferenceMethod GetInferenceMethod() const = 0;
  virtual TDefuzzificationMethod GetDefuzzificationMethod() const = 0;
  /// How many points generated shapes get; 7.
  virtual int GetNumFunctionValues() const = 0;
  /// Whether the component stands in a form designer; no.
  virtual bool IsDesigning() const = 0;
  /// The set as the component's parser shows it; nothing.
  virtual std::optional<TString> Show(const TFuzzySet& fuzzySet) const = 0;
  /// The variable itself; none.
  virtual TFuzzyVariable* AsVariable() = 0;

 protected:
  TFuzzySurroundings() = default;
  ~TFuzzySurroundings() = default;
};

/// A collection that fuzzy sets may join. Its one descendant is the variable's `TFuzzySets`.
class TFuzzySetCollection : public TGCollection {
 public:
  virtual TFuzzySurroundings* GetSurroundings() const = 0;
  virtual TFuzzySets* AsFuzzySets() = 0;

 protected:
  TFuzzySetCollection() = default;
};

}  // namespace fzy
