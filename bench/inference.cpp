#include <array>

#include "bench/Support.h"

// A whole inference, from numbers to a number, through the objects, beside one written by hand on
// flat arrays: the least degree of a rule's premises, triangles of that height merged under max,
// the centroid. The plain one asks each premise for its degree as the objects do, the other one
// looks it up in a table that it fills first. And the counted objects beside the owned ones.

namespace fzy::bench {
namespace {

constexpr double Width = 100;  // every variable ranges from 0 to it
constexpr double Threshold = 0.01;
constexpr std::size_t OutputTerms = 7;

struct TTriangle {
  double Left;
  double Middle;
  double Right;
};

/// Term `i` of `count` that cover the range, the outermost cut off at its ends.
TTriangle InputTerm(std::size_t i, std::size_t count) {
  const double step = Width / static_cast<double>(count - 1);
  const double middle = step * static_cast<double>(i);
  return {std::max(0.0, middle - step), middle, std::min(Width, middle + step)};
}

/// Term `i` of the output; all lie inside its range. No foot stands on that of another: where the
/// line of one term's flank runs through the end of a curve that has ended already, the walk counts
/// that end as a crossing, and the evidence is no longer the exact maximum.
TTriangle OutputTerm(std::size_t i) {
  const double step = Width / (OutputTerms + 1);
  const double middle = step * static_cast<double>(i + 1);
  return {middle - 0.9 * step, middle, middle + 0.8 * step};
}

struct TRule {
  std::vector<std::size_t> Premises;  // a term of each input
  std::size_t Conclusion = 0;
};

struct TRuleBase {
  std::size_t Inputs;
  std::size_t Terms;  // of each input
  std::vector<TRule> Rules;
  double Low;  // the readings lie between
  double High;
};

/// The `count` combinations of terms that are closest to the middle one of all: a rule base around
/// a point of operation.
TRuleBase MakeRuleBase(std::size_t inputs, std::size_t terms, std::size_t count, double low,
                       double high) {
  TRuleBase base{inputs, terms, {}, low, high};
  std::size_t combinations = 1;
  for (std::size_t i = 0; i < inputs; ++i) combinations *= terms;
  for (std::size_t number = 0; number < combinations; ++number) {
    TRule rule;
    std::size_t sum = 0;
    for (std::size_t i = 0, rest = number; i < inputs; ++i, rest /= terms) {
      rule.Premises.push_back(rest % terms);
      sum += rest % terms;
    }
    rule.Conclusion = sum * OutputTerms / (inputs * (terms - 1) + 1);
    base.Rules.push_back(rule);
  }
  const auto distance = [terms](const TRule& rule) {
    std::size_t sum = 0;
    for (const std::size_t term : rule.Premises)
      sum += std::max(term, terms / 2) - std::min(term, terms / 2);
    return sum;
  };
  std::stable_sort(base.Rules.begin(), base.Rules.end(),
                   [&](const TRule& a, const TRule& b) { return distance(a) < distance(b); });
  base.Rules.resize(count);
  return base;
}

/// The rule base in objects.
class TObjects {
 public:
  explicit TObjects(const TRuleBase& base) : FOutput(FModel.AddVariable(0, Width)) {
    std::vector<std::vector<TFuzzySet*>> terms;
    for (std::size_t i = 0; i < base.Inputs; ++i) {
      TFuzzySets& sets = *FModel.AddVariable(0, Width).GetItems();
      terms.emplace_back();
      for (std::size_t k = 0; k < base.Terms; ++k)
        terms.back().push_back(AddTerm(sets, InputTerm(k, base.Terms)));
      FFacts.push_back(sets.Add("reading"));
    }
    for (std::size_t k = 0; k < OutputTerms; ++k) AddTerm(*FOutput.GetItems(), OutputTerm(k));
    for (const TRule& rule : base.Rules) {
      FPremises.emplace_back();
      for (std::size_t i = 0; i < base.Inputs; ++i)
        FPremises.back().push_back(terms[i][rule.Premises[i]]);
      FConclusions.push_back(FOutput.GetItems()->GetItem(static_cast<int>(rule.Conclusion)));
    }
    FModel.Fuzzy.SetThreshold(Threshold);
  }

  double Infer(const std::vector<double>& readings) {
    for (std::size_t i = 0; i < readings.size(); ++i) FFacts[i]->CreateCrispValue(readings[i]);
    TOwned<TFuzzySet> evidence;
    Fired = 0;
    for (std::size_t i = 0; i < FPremises.size(); ++i) {
      TFuzzySet* merged = FOutput.AssertRule(FPremises[i], FFacts, FConclusions[i], evidence.Get());
      if (!merged) continue;
      evidence = TOwned<TFuzzySet>(merged);
      ++Fired;
    }
    return evidence->Defuzzify();
  }

  int Fired = 0;

 private:
  static TFuzzySet* AddTerm(TFuzzySets& sets, const TTriangle& triangle) {
    TFuzzySet* set = sets.Add("term");
    set->CreateTriangleFunctionValues(triangle.Left, triangle.Middle, triangle.Right);
    return set;
  }

  TModel FModel;
  TFuzzyVariable& FOutput;
  std::vector<TFuzzySet*> FFacts;
  std::vector<std::vector<TFuzzySet*>> FPremises;
  std::vector<TFuzzySet*> FConclusions;
};

/// The rule base in counted objects.
class TCounted {
 public:
  explicit TCounted(const TRuleBase& base) : FOutput(AddVariable()) {
    std::vector<std::vector<Ref<IFuzzySet>>> terms;
    for (std::size_t i = 0; i < base.Inputs; ++i) {
      const Ref<IFuzzyVariable> input = AddVariable();
      terms.emplace_back();
      for (std::size_t k = 0; k < base.Terms; ++k)
        terms.back().push_back(AddTerm(*input, k, InputTerm(k, base.Terms)));
      FFacts.push_back(input->Add("reading"));
    }
    std::vector<Ref<IFuzzySet>> conclusions;
    for (std::size_t k = 0; k < OutputTerms; ++k)
      conclusions.push_back(AddTerm(*FOutput, k, OutputTerm(k)));
    for (const TRule& rule : base.Rules) {
      FPremises.emplace_back();
      for (std::size_t i = 0; i < base.Inputs; ++i)
        FPremises.back().push_back(terms[i][rule.Premises[i]]);
      FConclusions.push_back(conclusions[rule.Conclusion]);
    }
    FFuzzy.SetThreshold(Threshold);
  }

  double Infer(const std::vector<double>& readings) {
    for (std::size_t i = 0; i < readings.size(); ++i) FFacts[i]->CreateCrispValue(readings[i]);
    Ref<IFuzzySet> evidence;
    for (std::size_t i = 0; i < FPremises.size(); ++i) {
      if (Ref<IFuzzySet> merged =
              FOutput->AssertRule(FPremises[i], FFacts, FConclusions[i], evidence))
        evidence = std::move(merged);
    }
    return evidence->Defuzzify();
  }

 private:
  Ref<IFuzzyVariable> AddVariable() {
    FFuzzy.SetAutoTerms(false);
    const std::string name = "variable" + std::to_string(FFuzzy.GetItems()->GetCount());
    Ref<IFuzzyVariable> variable = FFuzzy.NewVariable(name);
    variable->SetMaximum(Width);
    FFuzzy.GetItems()->Add(variable);
    return variable;
  }
  static Ref<IFuzzySet> AddTerm(IFuzzyVariable& variable, std::size_t k,
                                const TTriangle& triangle) {
    Ref<IFuzzySet> set = variable.Add("term" + std::to_string(k));
    set->CreateTriangleFunctionValues(triangle.Left, triangle.Middle, triangle.Right);
    return set;
  }

  TIFuzzyLogic FFuzzy;
  Ref<IFuzzyVariable> FOutput;
  std::vector<Ref<IFuzzySet>> FFacts;
  std::vector<std::vector<Ref<IFuzzySet>>> FPremises;
  std::vector<Ref<IFuzzySet>> FConclusions;
};

/// The rule base in arrays.
class TArrays {
 public:
  explicit TArrays(const TRuleBase& base) : FDegrees(base.Inputs * base.Terms) {
    for (std::size_t k = 0; k < base.Terms; ++k) FTerms.push_back(InputTerm(k, base.Terms));
    for (std::size_t k = 0; k < OutputTerms; ++k) FOutput[k] = OutputTerm(k);
    for (const TRule& rule : base.Rules) {
      for (std::size_t i = 0; i < base.Inputs; ++i)
        FPremises.push_back(i * base.Terms + rule.Premises[i]);
      FConclusions.push_back(rule.Conclusion);
    }
  }

  /// By a table, each term's degree is computed once; else once for each premise that names it.
  template <bool ByTable>
  double Infer(const std::vector<double>& readings) {
    if constexpr (ByTable) {
      double* degree = FDegrees.data();
      for (const double x : readings) {
        for (const TTriangle& term : FTerms) *degree++ = Degree(term, x);
      }
    }
    TFuzzyPoint* evidence = FEvidence[0].data();
    TFuzzyPoint* merged = FEvidence[1].data();
    std::size_t count = 0;
    const std::size_t* premise = FPremises.data();
    for (const std::size_t conclusion : FConclusions) {
      double strength = 1;
      for (const double x : readings) {
        if constexpr (ByTable)
          strength = std::min(strength, FDegrees[*premise++]);
        else
          strength = std::min(strength, Degree(FTerms[*premise++ % FTerms.size()], x));
      }
      if (strength < Threshold) continue;
      const TTriangle& t = FOutput[conclusion];
      const std::array<TFuzzyPoint, 3> points{{{t.Left, 0}, {t.Middle, strength}, {t.Right, 0}}};
      count = PlainMax(evidence, count, points.data(), points.size(), merged);
      std::swap(evidence, merged);
    }
    return Centroid(evidence, count);
  }

 private:
  static double Degree(const TTriangle& t, double x) {
    if (x <= t.Left || x >= t.Right) return 0;
    return x < t.Middle ? (x - t.Left) / (t.Middle - t.Left) : (t.Right - x) / (t.Right - t.Middle);
  }

  /// Of a curve that begins and ends at 0.
  static double Centroid(const TFuzzyPoint* p, std::size_t count) {
    double area = 0;
    double moment = 0;
    for (std::size_t i = 1; i < count; ++i) {
      const double d = p[i].X - p[i - 1].X;
      area += d * (p[i - 1].Y + p[i].Y) / 2;
      moment +=
          d * (p[i - 1].X * (2 * p[i - 1].Y + p[i].Y) + p[i].X * (p[i - 1].Y + 2 * p[i].Y)) / 6;
    }
    return moment / area;
  }

  std::vector<TTriangle> FTerms;
  std::array<TTriangle, OutputTerms> FOutput{};
  std::vector<std::size_t> FPremises;
  std::vector<std::size_t> FConclusions;
  std::vector<double> FDegrees;
  std::array<std::array<TFuzzyPoint, 1024>, 2> FEvidence{};
};

std::vector<std::vector<double>> RandomReadings(const TRuleBase& base) {
  TRandom random;
  std::vector<std::vector<double>> readings(8192 / base.Rules.size());
  for (auto& reading : readings) {
    for (std::size_t i = 0; i < base.Inputs; ++i)
      reading.push_back(random.Between(base.Low, base.High));
  }
  return readings;
}

template <bool ByTable>
void CompareInference(benchmark::State& state, const TRuleBase& base) {
  const std::vector<std::vector<double>> readings = RandomReadings(base);
  TObjects objects(base);
  TArrays arrays(base);
  double fired = 0;
  for (const auto& reading : readings) {
    Require(Near(objects.Infer(reading), arrays.Infer<ByTable>(reading)), "inference");
    fired += objects.Fired;
  }
  const auto count = static_cast<double>(readings.size());
  Compare(
      state, count,
      [&] {
        for (const auto& reading : readings) benchmark::DoNotOptimize(objects.Infer(reading));
      },
      [&] {
        for (const auto& reading : readings)
          benchmark::DoNotOptimize(arrays.Infer<ByTable>(reading));
      });
  state.counters["fired"] = fired / count;
}

/// The counted objects beside the owned ones.
void CompareModels(benchmark::State& state, const TRuleBase& base) {
  const std::vector<std::vector<double>> readings = RandomReadings(base);
  TCounted counted(base);
  TObjects objects(base);
  for (const auto& reading : readings)
    Require(counted.Infer(reading) == objects.Infer(reading), "inference in counted objects");
  const auto run = [&](auto& model) {
    return [&] {
      for (const auto& reading : readings) benchmark::DoNotOptimize(model.Infer(reading));
    };
  };
  Compare(state, static_cast<double>(readings.size()), run(counted), run(objects));
}

template <bool ByTable>
void InferBy3Rules(benchmark::State& state) {
  CompareInference<ByTable>(state, MakeRuleBase(1, 3, 3, 0, Width));
}

template <bool ByTable>
void InferBy49Rules(benchmark::State& state) {
  CompareInference<ByTable>(state, MakeRuleBase(2, 7, 49, 0, Width));
}

/// Five inputs of five terms, each half the range wide: the closest 125 of 3125 combinations.
template <bool ByTable>
void InferBy125Rules(benchmark::State& state) {
  CompareInference<ByTable>(state, MakeRuleBase(5, 5, 125, 30, 70));
}

void CountedBy3Rules(benchmark::State& state) {
  CompareModels(state, MakeRuleBase(1, 3, 3, 0, Width));
}

void CountedBy49Rules(benchmark::State& state) {
  CompareModels(state, MakeRuleBase(2, 7, 49, 0, Width));
}

void CountedBy125Rules(benchmark::State& state) {
  CompareModels(state, MakeRuleBase(5, 5, 125, 30, 70));
}

BENCHMARK(CountedBy3Rules)->Name("CountedBy3Rules/beside_owned")->UseManualTime();
BENCHMARK(CountedBy49Rules)->Name("CountedBy49Rules/beside_owned")->UseManualTime();
BENCHMARK(CountedBy125Rules)->Name("CountedBy125Rules/beside_owned")->UseManualTime();
BENCHMARK(InferBy3Rules<false>)->Name("InferBy3Rules/beside_plain")->UseManualTime();
BENCHMARK(InferBy49Rules<false>)->Name("InferBy49Rules/beside_plain")->UseManualTime();
BENCHMARK(InferBy125Rules<false>)->Name("InferBy125Rules/beside_plain")->UseManualTime();
BENCHMARK(InferBy3Rules<true>)->Name("InferBy3Rules/beside_table")->UseManualTime();
BENCHMARK(InferBy49Rules<true>)->Name("InferBy49Rules/beside_table")->UseManualTime();
BENCHMARK(InferBy125Rules<true>)->Name("InferBy125Rules/beside_table")->UseManualTime();

}  // namespace
}  // namespace fzy::bench
