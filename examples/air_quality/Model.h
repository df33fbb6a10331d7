#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Days.h"
#include "Rules.h"
#include "fuzzylogic/engine/FuzzyPoint.h"

namespace air_quality {

/// How strongly a word fits a reading: straight lines from point to point.
struct Term {
  std::string Name;
  std::vector<fzy::TFuzzyPoint> Points;
};

struct Variable {
  std::string Name;
  std::string Units;
  double Minimum;
  double Maximum;
  std::vector<Term> Terms;  ///< in the order of the text
};

/// What the rules say about one day.
struct Inference {
  std::optional<double> Ozone;      ///< nothing when no rule fired
  const Rule* Strongest = nullptr;  ///< the rule that fired hardest, the first of equals
  double Strength = 0;              ///< its strength, 0 to 1
};

/// What happens to a conclusion, and how conclusions become one.
enum class Methods {
  Additive,  ///< scaled by the strength of its rule; added up
  MinMax,    ///< cut at the strength of its rule; the greatest counts
};

/// The variables and terms of a definition text, and the rules about them. The rest of the program
/// does not know in which of the library's two object models they are kept.
class Model {
 public:
  virtual ~Model() = default;

  /// Those that the rules are about: inputs first, ozone last.
  virtual std::vector<Variable> Variables() const = 0;
  /// Leaves the model as it was.
  virtual Inference Infer(const Day& day) const = 0;
  /// The definition text of the model, as it reads back.
  virtual std::string Text() = 0;
  /// The component with its model and the parser, as a stored form that can be read instead of a
  /// definition text.
  virtual std::string Form() = 0;
  /// Every set of these variables, by name and points: the terms, what their expressions were made
  /// from, and an intermediate set of an inference if one was left behind.
  virtual std::vector<std::string> Sets() const = 0;
};

/// Reads a definition text, or a stored form of that model, into the class model, where a component
/// owns its variables, a variable its sets, and sets made on the way are freed by hand.
/// @throws InputError when the text has a fault or lacks something that the rules name
std::unique_ptr<Model> ReadClassModel(const std::string& file, Methods methods);

/// Reads it into the interface model, where variables and sets are interfaces that live as long as
/// somebody refers to them. It always reasons by `Methods::MinMax`.
/// @throws likewise
std::unique_ptr<Model> ReadInterfaceModel(const std::string& file);

/// Refuses a reading that its variable does not cover: it would be taken for the nearest end.
/// @throws InputError with the line of the first
void CheckRanges(const std::vector<Variable>& variables, const std::vector<Day>& days,
                 const std::string& file);

}  // namespace air_quality
