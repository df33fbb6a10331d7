#include <cmath>

#include <gtest/gtest.h>

#include "tests/language/Definitions.h"
#include "tests/support/Forms.h"

// Definition texts with numbers up to the largest, read, evaluated, written and read back.

namespace fzy {
namespace {

using test::Dump;
using test::Sets;
using test::Variables;

template <class Scene>
class WideRange : public testing::Test {};
TYPED_TEST_SUITE(WideRange, test::TBothModels);

TYPED_TEST(WideRange, IsReadEvaluatedAndWritten) {
  struct TCase {
    double Scale;  // the range is this to either side of 0
    const char* Term;
    const char* Expression;
    double Crisp;   // in parts of the scale
    double Mean;    // of the maxima, likewise
    double Degree;  // at 0
  };
  const TCase cases[] = {
      {1e160, "(tri -1e160 -1e160 1e160)", "a", -1 / 3.0, -1, 0.5},
      {1e308, "((-1e308 1) (1e308 0))", "a", -1 / 3.0, -1, 0.5},
      {1e308, "((-1e308 0.5) (1e308 0.5))", "a", 0, 0, 0.5},
      {1e308, "((-1e308 0) (0 1) (1e308 1))", "not a", -2 / 3.0, -1, 0},
      {1e308, "(tri -1e308 0 1e308)", "a and [not a]", 0, 0, 0},
      {1e308, "(s -1e308 1e308)", "a", 0.407, 1, 0.5},
      {1e308, "(pi 1e308 0)", "a", 0, 0, 1},
      {1e308, "(beta 6e307 3e307 2e307)", "a", 0.1966, 0.3, 0.35},
      {1e308, "((-1e308 1) (1e308 0))", "a + 1e300", -0.0, -1, 1e300},
      {1.7e308, "(s 1e308 1.7e308)", "a", 1.49259 / 1.7, 1, 0},
      {1.7e308, "1e308", "about a", 0.5917, 29 / 49.0, 0},
      {1.7e308, "1.7e308", "a -X 1.7e308", 0, 0, 1},
  };
  for (const TCase& c : cases) {
    TypeParam scene, back;
    for (TypeParam* each : {&scene, &back}) each->Parser.SetFullPrecision(true);
    const TString range = FormatShortest(c.Scale);
    scene.Fuzzy.SetStrings("(deffuzzy v (range -" + range + " " + range + ") (values (term a " +
                           c.Term + ")))");
    const auto variable = Variables(scene.Fuzzy)[0];
    back.Fuzzy.SetStrings(scene.Parser.PrettyPrint(variable));
    EXPECT_EQ(Dump(back.Fuzzy), Dump(scene.Fuzzy));

    typename TypeParam::TSet set{};
    const double crisp = scene.Parser.EvalFuzzyExpression(variable, c.Expression, set);
    EXPECT_NEAR(crisp / c.Scale, c.Crisp, 0.001) << c.Term << ' ' << c.Expression;
    EXPECT_NEAR(set->MeanOfMaxima() / c.Scale, c.Mean, 0.001) << c.Term << ' ' << c.Expression;
    EXPECT_NEAR(set->DegreeOfMembership(0) / std::max(1.0, c.Degree), std::min(1.0, c.Degree), 1e-3)
        << c.Term << ' ' << c.Expression;
  }
}

TYPED_TEST(WideRange, HasItsAutomaticTerms) {
  TypeParam scene;
  const auto add = [&](TypeParam& s) {
    s.Fuzzy.SetStrings("(deffuzzy v (range 1e308 1.7e308) (values (term a (s 1e308 1.7e308))))");
    s.Fuzzy.SetAutoTerms(true);
    return s.Add(s.Fuzzy, "w");
  };
  const auto variable = add(scene);
  const auto wide = Variables(scene.Fuzzy)[0];
  for (const TFuzzyPoint& point : test::Engine(Sets(wide)[0]).GetValues()->Points())
    EXPECT_TRUE(point.X >= 1e308 && point.X <= 1.7e308 && point.Y >= 0 && point.Y <= 1);
  EXPECT_EQ(Sets(variable).size(), 3U);
}

TYPED_TEST(WideRange, OfPointsIsHeldBackWhenItIsLoaded) {
  TypeParam scene;
  std::string form = test::Stored({&scene.Fuzzy});
  form.insert(form.find('\n') + 1, "NumFunctionValues = 2000000000\n");
  test::Load(form, {&scene.Fuzzy});
  EXPECT_EQ(scene.Fuzzy.GetNumFunctionValues(), TCustomFuzzyLogic::MostFunctionValues);
}

}  // namespace
}  // namespace fzy
