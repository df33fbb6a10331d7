#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "fuzzylogic/framework/UpdateBlock.h"
#include "tests/language/Definitions.h"
#include "tests/support/Random.h"

namespace fzy {
namespace {

using test::Engine;
using test::Failure;
using test::Sets;
using test::TScene;
using test::Variables;

template <class Scene>
class Writer : public testing::Test {};
TYPED_TEST_SUITE(Writer, test::TBothModels);

template <class Scene>
std::string Written(Scene& scene) {
  std::string text;
  for (const auto& variable : Variables(scene.Fuzzy)) text += variable->ToString().Utf8() + "\r\n";
  return text;
}

std::string Unix(std::string text) {
  std::erase(text, '\r');
  return text;
}

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

/// A golden file: behind "=i>" stands the line of the counted model in place of the one before.
std::string Expected(const std::filesystem::path& path, bool counted) {
  std::ifstream file(path);
  std::string text, last;
  for (std::string line; std::getline(file, line);) {
    const bool other = line.starts_with("=i>");
    if (other && !counted) continue;
    if (!other) text += std::exchange(last, "");
    last = line.substr(other ? 3 : 0) + '\n';
  }
  return text + last;
}

/// Each golden text beside what is written of it (with plain line ends), which reads back and is
/// written again to the letter.
TYPED_TEST(Writer, WritesTheGoldenTexts) {
  int count = 0;
  const std::filesystem::path folder = std::filesystem::path(__FILE__).parent_path() / "golden";
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::filesystem::path path = entry.path();
    if (path.extension() != ".fzy") continue;
    ++count;
    TypeParam scene;
    scene.Parser.Parse(ReadFile(path), nullptr);
    const std::string written = Written(scene);
    path.replace_extension(".written");
    EXPECT_EQ(Unix(written), Expected(path, TypeParam::Counted)) << path;
    TypeParam again;
    again.Parser.Parse(written, nullptr);
    EXPECT_EQ(Written(again), written);
  }
  EXPECT_EQ(count, 5);
}

TEST(Writer, LaysTextOut) {
  TScene scene;
  SetDecimalSeparator(u',');  // definition text has a point in every locale
  scene.Parser.Parse(
      "(deffuzzy speed \"c\" (units \"km h\") (range 0 100) (values (term slow "
      "\"d\" (tri 0 25 50)) (term none ((1 0.5)))))(deffuzzy empty)",
      nullptr);
  EXPECT_EQ(Written(scene),
            "(deffuzzy speed \r\n  \"c\"\r\n  (range 0.0000 100.0000)\r\n  (units \"km h\")\r\n  "
            "(values \r\n    (term slow \"d\" (tri 0.0000 25.0000 50.0000))\r\n    (term none "
            "((1.0000 0.5000) ))\r\n  )\r\n)\r\n(deffuzzy empty \r\n  (range 0.0000 1.0000)\r\n  "
            "(values \r\n  )\r\n)\r\n");
  scene.Parser.SetFullPrecision(true);
  EXPECT_EQ(scene.Parser.PrettyPrint((*scene.Fuzzy.GetItems())[0]->GetItems()->GetItem(0), true),
            "(term slow \"d\" (tri 0 25 50))");
  SetDecimalSeparator(u'.');
}

/// A reader of the owned model loses the foot of such a step unless the list is raised.
TEST(Writer, KeepsStepsUpFrom0ToTheBit) {
  const std::pair<std::vector<TFuzzyPoint>, const char*> rows[] = {
      {{{0, 0}, {9, 0}, {9, 1}}, "[((0 1) (9 1) (9 2))] - 1"},
      {{{0, 0}, {9, 0}, {9, 0.1}}, "[((0 0.125) (9 0.125) (9 0.225))] - 0.125"},
      {{{9, 0}, {9, 1}, {12, 0x1.5p-99}},
       "[((9 0.0001220703125) (9 2.787593149816328e+42) (12 5772436045824))] - "
       "0.0001220703125 / 2.787593149816328e+42"},
      {{{9, 0}, {9, 1}, {12, 1e-300}},  // which no raise gives back
       "[((9 0.0001220703125) (9 1.0001220703125) (12 0.0001220703125))] - 0.0001220703125"}};
  for (const auto& [points, text] : rows) {
    TScene scene;
    scene.Parser.SetFullPrecision(true);
    TFuzzyVariable* variable = scene.Fuzzy.GetItems()->Add("v");
    variable->SetMaximum(20);
    TFuzzySet* set = variable->GetItems()->Add("a");
    TUpdateBlock block(*set->GetValues());
    for (const TFuzzyPoint& point : points) set->GetValues()->Add(point.X, point.Y);
    block.Close();
    set->SetDefined(true);
    EXPECT_EQ(scene.Parser.PrettyPrint(set, true), TString("(term a ") + text + ")");
  }
}

TEST(Writer, QuotesUnitsOnlyWhereTheyWouldNotReadBack) {
  for (const char* units :
       {"=", "&", "|", "~", "(", ")", "[", "]", "<", "\\", "km/h", "5", "0.5"}) {
    TScene scene;
    const TString clause = TString("(units ") + units + ")";
    scene.Parser.Parse("(deffuzzy v " + clause + ")", nullptr);
    EXPECT_EQ(Variables(scene.Fuzzy)[0]->GetUnits(), units);
    EXPECT_NE(Written(scene).find(clause.Utf8()), std::string::npos) << units;
  }
}

/// A set that is no term of a variable is written as it is; one that is, so that it reads back.
TYPED_TEST(Writer, WritesSingleSets) {
  using TSet = typename TypeParam::TSet;
  using TMake = void (*)(TFuzzySet&);
  const std::tuple<TMake, const char*, const char*> rows[] = {
      {[](TFuzzySet& set) { set.GetValues()->Add(2, 0.5); }, "((2.0000 0.5000) )",
       "((2.0000 0.5000) )"},
      {[](TFuzzySet& set) { set.SetExpression("very warm"); }, "very warm", ""},
      {[](TFuzzySet& set) { set.CreateCrispValue(5); }, "5.0000", "(tri 5.0000 5.0000 5.0000)"},
      {[](TFuzzySet& set) { set.CreatePIFunctionValues(7, 20, 50); }, "(pi 20.0000 50.0000)",
       nullptr},
      {[](TFuzzySet& set) { set.CreatePIFunctionValues(8, 0, 100, 30); },
       "(pi 0.0000 100.0000 35.0000)",  // the mean of the maxima, which lie beside the center
       "((0.0000 0.0000) (7.5000 0.1250) (15.0000 0.5000) (22.5000 0.8750) (47.5000 0.8750) "
       "(65.0000 0.5000) (82.5000 0.1250) (100.0000 0.0000) )"},
      {[](TFuzzySet& set) { set.CreateBetaCurveFunctionValues(7, 40, 50, 10, 2); },
       "(beta 40.0000 50.0000 10.0000 2.0000)", nullptr},
      {[](TFuzzySet& set) { set.CreateCurveValues(7, 10, 20, 15, true); }, "(s 10.0000 20.0000)",
       nullptr},
      {[](TFuzzySet& set) { set.CreateCurveValues(3, 10, 20, 15, false); }, "(z 10.0000 20.0000)",
       "((10.0000 1.0000) (15.0000 0.5000) (20.0000 0.0000) )"}};
  for (const auto& [make, bare, term] : rows) {
    TypeParam scene;
    const typename TypeParam::TVariable variable = scene.Add(scene.Fuzzy, "v");
    variable->SetMaximum(100);
    const auto owner = TypeParam::NewSet();
    const TSet free = owner.Get();
    make(Engine(free));
    EXPECT_EQ(scene.Parser.PrettyPrint(free, true), bare);
    EXPECT_EQ(scene.Parser.PrettyPrint(free, false), scene.Counted ? "" : free->GetExpression());
    free->SetName("a b");
    EXPECT_EQ(scene.Parser.PrettyPrint(free, true), TString("(term a\\ b ") + bare + ")");
    EXPECT_EQ(scene.Parser.PrettyPrint(free, false), "a b");
    const TSet set = scene.AddSet(variable, "x");
    make(Engine(set));
    set->SetComment("c");
    EXPECT_EQ(scene.Parser.PrettyPrint(set, true),
              TString("(term x \"c\" ") + (term ? term : bare) + ")");
    EXPECT_EQ(set->ToString(), "x");
    EXPECT_EQ(Sets(variable).size(), 1U) << "writing adds nothing";
  }
}

TYPED_TEST(Writer, KeepsAnExpressionWhileItHolds) {
  const std::string text =
      "(deffuzzy v (range 0 10) (values (term a ((0 1) (10 0))) (term b not a)))";
  const std::string points = "((0.0000 0.0000) (10.0000 1.0000) )";
  using TSet = typename TypeParam::TSet;
  using TSets = const std::vector<TSet>&;
  using TChange = std::function<TSet(TypeParam&, TSets)>;  // the set that is written then
  const auto changing = [](auto change) -> TChange {
    return [=](TypeParam&, TSets sets) {
      change(sets);
      return sets[1];
    };
  };
  const auto deriving = [](auto derive) -> TChange {
    return [=](TypeParam&, TSets sets) {
      const auto variable = sets[0]->GetVariable();
      const TSet set = derive(sets);
      set->SetName("c");
      TypeParam::MakeTerm(set, variable);
      return set;
    };
  };
  const std::pair<TChange, std::string> rows[] = {
      {changing([](TSets) {}), "not a"},
      {changing([](TSets sets) { sets[1]->SetName("c"); }), "not a"},
      {changing([](TSets sets) { sets[0]->SetName("c"); }), points},
      {changing([](TSets sets) { sets[0]->Hedge(fhAbove); }), points},
      {changing([](TSets sets) { sets[1]->SetIndex(0); }), points},
      {changing([](TSets sets) { sets[0]->SetDefined(false); }), points},
      {changing([](TSets sets) { Engine(sets[1]).GetValues()->Add(5, 0); }),
       "((0.0000 0.0000) (5.0000 0.0000) (10.0000 1.0000) )"},
      // A set made by calls has an expression of its own.
      {deriving([](TSets sets) { return sets[0]->Union(sets[1]); }),
       TypeParam::Counted ? "a or [not a]" : "a or b"},
      {deriving([](TSets sets) { return TypeParam::Copy(sets[0])->Hedge(fhNot); }), "[not a]"},
      {deriving([](TSets sets) { return sets[0]->Cutoff(0.5, true); }),
       "((0.0000 1.0000) (5.0000 0.5000) )"},
      {deriving([](TSets sets) { return sets[0]->AlphaCutoff(0.5, false); }),
       "((0.0000 1.0000) (5.0000 0.5000) (5.0000 0.0000) )"},
      {deriving([](TSets sets) { return sets[1]->AlphaCutoff(0.5, false); }),
       TypeParam::Counted ? "((0.0000 0.0000) (5.0000 0.0000) (5.0000 0.5000) (10.0000 1.0000) )"
                          : "[((0 1) (5 1) (5 1.5) (10 2))] - 1"},
      // Nobody is told of what is read on the way.
      {[](TypeParam& scene, TSets sets) {
         TypeParam::OnEval(scene.Parser, [](auto&&...) { throw EFzyException("told"); });
         TypeParam::OnSet(scene.Parser, [](auto&&...) { throw EFzyException("told"); });
         scene.Fuzzy.SetOnFuzzySetAdded([](auto&&...) { throw EFzyException("told"); });
         return sets[1];
       },
       "not a"}};
  for (const auto& [change, expected] : rows) {
    TypeParam scene;
    scene.Parser.Parse(text, nullptr);
    const TSet set = change(scene, Sets(Variables(scene.Fuzzy)[0]));
    EXPECT_EQ(scene.Parser.PrettyPrint(set, true),
              "(term " + set->GetName() + " " + expected + ")");
  }
}

TEST(Writer, RefusesNamesThatAreNoWords) {
  for (const char* name : {"", " a", "\t", "(a", ")", "[a", "]", "&", "=a", "|", "~", "\"a", ";",
                           "?a", "5", "-1e5", ".5", "+5"}) {
    TScene scene;
    const std::string message =
        "The name \"" + std::string(name) + "\" cannot be written in a definition text";
    TFuzzyVariable* variable = scene.Fuzzy.GetItems()->Add(name);
    EXPECT_EQ(Failure([&] { variable->ToString(); }), message);
    variable->SetName("v");
    TFuzzySet* set = variable->GetItems()->Add(name);
    EXPECT_EQ(Failure([&] { scene.Parser.PrettyPrint(set, true); }), *name ? message : "nothing");
    set->SetDefined(true);
    EXPECT_EQ(Failure([&] { variable->ToString(); }), message);
  }
}

// Random models

TString RandomText(test::TRandom& random) {
  static const std::u16string characters =
      u"ab z\u00E4\u00DF \u6771\u4EAC()[]&;<>|~\"\\?=+-.5eE\t\r\n\u0001\uFEFF";
  TString text;
  for (int i = random.Below(8); i >= 0; --i) {
    const auto at = static_cast<std::size_t>(random.Below(static_cast<int>(characters.size()) + 1));
    text += at < characters.size() ? std::u16string_view(characters).substr(at, 1) : u"\U0001F600";
  }
  return text;
}

/// A name that can be written, unlike any other.
TString RandomName(test::TRandom& random, int number) {
  const TString prefix = random.OneIn(2) ? "t" : random.OneIn(2) ? "\\" : "é";
  return prefix + TString(std::to_string(number)) + RandomText(random);
}

void RandomShape(test::TRandom& random, TFuzzySet& set, int usual, double minimum, double width) {
  const auto x = [&] { return minimum + width * (random.Unit() * 1.4 - 0.2); };
  const int num = random.OneIn(3) ? random.Below(9) : usual;
  double a = x(), b = x();
  if (a > b) std::swap(a, b);
  switch (random.Below(6)) {
    case 0:
      return set.CreateTriangleFunctionValues(a, x(), b);
    case 1:
      return set.CreateCurveValues(num, a, b, x(), random.OneIn(2));
    case 2:
      return set.CreatePIFunctionValues(num, a, b, x());
    case 3:
      return set.CreatePIFunctionValues(num, width * random.Unit(), x());
    case 4:
      return set.CreateBetaCurveFunctionValues(num, width * random.Unit(), x(),
                                               width * (0.01 + random.Unit()), random.Unit() * 3);
    default:
      for (int i = random.Below(9); i > 0; --i) {
        const double at = x();
        TUpdateBlock block(*set.GetValues());  // as operations make steps
        for (int j = random.OneIn(3) ? random.Below(5) : 0; j >= 0; --j)
          set.GetValues()->Add(at, random.OneIn(3) ? 0 : random.Unit());
        block.Close();
      }
  }
}

/// A term: a shape, or a hedged or combined copy of others, by calls or by a text.
template <class Scene, class Variable>
void RandomTerm(test::TRandom& random, Scene& scene, const Variable& variable, int number) {
  const auto sets = Sets(variable);
  const TString name = RandomName(random, number);
  const auto other = [&] {
    return sets[static_cast<std::size_t>(random.Below(static_cast<int>(sets.size())))];
  };
  typename Scene::TSet set{};
  if (sets.empty() || random.OneIn(2)) {
    set = scene.AddSet(variable, "new");
    RandomShape(random, Engine(set), scene.Fuzzy.GetNumFunctionValues(), variable->GetMinimum(),
                variable->GetMaximum() - variable->GetMinimum());
  } else if (random.OneIn(3)) {
    set = Scene::Copy(other());
    Failure([&] { set->Hedge(static_cast<TFuzzyHedge>(random.Below(20))); });  // if it can be
  } else if (random.OneIn(2)) {
    set = other()->Union(other(), static_cast<TFuzzyOperation>(random.Below(7)));
  } else {
    const char* texts[] = {"not a", "a or 5", "very [a and (tri 3 4.5 7)] + 0.25", "[\"\"] or a",
                           "a"};
    const auto a = scene.AddSet(variable, "a");
    a->Assign(other());
    a->SetName("a");
    set = scene.Parser.ParseFuzzySet(variable, TString("(term b ") + texts[random.Below(5)] + ")",
                                     nullptr);
  }
  set->SetName(name);
  set->SetComment(random.OneIn(2) ? RandomText(random) : TString());
  if (random.OneIn(8))
    set->SetDefined(false);
  else
    Scene::MakeTerm(set, variable);
}

template <class Scene>
void RandomModel(test::TRandom& random, Scene& scene) {
  scene.Fuzzy.SetNumFunctionValues(2 + random.Below(10));
  for (int i = random.Below(3); i >= 0; --i) {
    const auto variable = scene.Add(scene.Fuzzy, RandomName(random, i));
    variable->SetMinimum(random.Below(2000) / 8.0 - 100 + random.Unit() * random.Below(2));
    if (random.OneIn(9)) variable->SetMinimum(random.OneIn(2) ? -0.0 : -0.00001);
    variable->SetMaximum(variable->GetMinimum() + 1 + random.Below(100) + random.Unit());
    variable->SetUnits(random.OneIn(3) ? TString() : RandomText(random));
    variable->SetComment(random.OneIn(2) ? RandomText(random) : TString());
    for (int j = random.Below(7); j > 0; --j) RandomTerm(random, scene, variable, j);
  }
}

std::vector<TFuzzySet*> Terms(const auto& variable) {
  std::vector<TFuzzySet*> terms;
  for (const auto& set : Sets(variable))
    if (set->GetDefined()) terms.push_back(&Engine(set));
  return terms;
}

/// Whether the set has, within `reach` of every breakpoint of the other, the other's degree there.
bool Follows(const TFuzzySet& set, const TFuzzySet& other, double reach) {
  for (const TFuzzyPoint& point : other.GetValues()->Points()) {
    const double degree = other.DegreeOfMembership(point.X);
    double low = set.DegreeOfMembership(point.X), high = low;
    const auto include = [&](double y) {
      low = std::min(low, y);
      high = std::max(high, y);
    };
    include(set.DegreeOfMembership(point.X - reach));
    include(set.DegreeOfMembership(point.X + reach));
    for (const TFuzzyPoint& own : set.GetValues()->Points())
      if (std::abs(own.X - point.X) <= reach) include(own.Y);
    if (degree < low - reach || degree > high + reach) return false;
  }
  return true;
}

/// The least distance of neighbours in X that do not share it.
double Resolution(const TFuzzySet& set) {
  const TFuzzyCurve points = set.GetValues()->Points();
  double least = 1;
  for (std::size_t i = 1; i < points.size(); ++i) {
    const double gap = points[i].X - points[i - 1].X;
    if (gap > 0) least = std::min(least, gap);
  }
  return least;
}

/// Whether a text can hold each point: at most three share an X, and neighbours there differ.
bool IsWritable(const TFuzzySet& set) {
  const TFuzzyCurve points = set.GetValues()->Points();
  for (std::size_t i = 1; i < points.size(); ++i) {
    if (points[i].X != points[i - 1].X) continue;
    if (std::abs(points[i].Y - points[i - 1].Y) <= 0.0001) return false;
    if (i > 2 && points[i].X == points[i - 3].X) return false;
  }
  return true;
}

TYPED_TEST(Writer, WritesWhatReadsBack) {
  test::TRandom random;
  SCOPED_TRACE(random.Trace());
  for (int round = 0; round < 400; ++round) {
    TypeParam scene, back, again;
    RandomModel(random, scene);
    const bool full = random.OneIn(2);
    for (TypeParam* each : {&scene, &back, &again}) {
      each->Parser.SetFullPrecision(full);
      each->Fuzzy.SetNumFunctionValues(scene.Fuzzy.GetNumFunctionValues());
    }
    const double reach = 1.1e-4;
    const std::string text = Written(scene);
    scene.Fuzzy.UpdateStrings();  // a counted variable that joins does not mark the text
    back.Fuzzy.SetStrings(scene.Fuzzy.GetStrings()->GetText());
    ASSERT_EQ(Written(back), text) << "round " << round;
    const auto variables = Variables(scene.Fuzzy), read = Variables(back.Fuzzy);
    ASSERT_EQ(read.size(), variables.size());
    for (std::size_t i = 0; i < read.size(); ++i) {
      const auto& a = variables[i];
      const auto& b = read[i];
      EXPECT_EQ(a->GetName(), b->GetName());
      EXPECT_EQ(a->GetComment(), b->GetComment());
      EXPECT_EQ(a->GetUnits(), b->GetUnits());
      EXPECT_NEAR(a->GetMinimum(), b->GetMinimum(), full ? 0 : 0.00005001);
      EXPECT_NEAR(a->GetMaximum(), b->GetMaximum(), full ? 0 : 0.00005001);
      const std::vector<TFuzzySet*> before = Terms(a), after = Terms(b);
      ASSERT_EQ(before.size(), after.size()) << text;
      for (std::size_t j = 0; j < before.size(); ++j) {
        EXPECT_EQ(before[j]->GetName(), after[j]->GetName());
        EXPECT_EQ(before[j]->GetComment(), after[j]->GetComment());
        // Curves finer than what is written, and than the tolerance of a reader, come back coarser.
        if (Resolution(*before[j]) < 0.0004) continue;
        EXPECT_TRUE(Follows(*after[j], *before[j], reach) && Follows(*before[j], *after[j], reach))
            << before[j]->GetName() << '\n'
            << text << '\n'
            << before[j]->GetValuesToString() << '\n'
            << after[j]->GetValuesToString();
        if (full && IsWritable(*before[j])) {
          EXPECT_TRUE(
              std::ranges::equal(before[j]->GetValues()->Points(), after[j]->GetValues()->Points()))
              << before[j]->GetName() << '\n'
              << text;
        }
      }
    }
    if (this->HasFailure()) return;
  }
}

}  // namespace
}  // namespace fzy
