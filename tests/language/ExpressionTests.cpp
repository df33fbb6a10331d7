#include <gtest/gtest.h>

#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "tests/language/Definitions.h"
#include "tests/support/Random.h"

namespace fzy {
namespace {

using test::CheckCases;
using test::Dump;
using test::Failure;
using test::ParseFailure;
using test::Sets;
using test::TCountedScene;
using test::TScene;
using test::Variables;

template <class Scene>
class Expression : public testing::Test {};
TYPED_TEST_SUITE(Expression, test::TBothModels);

constexpr const char* Step = "EvalFuzzyExpression";

/// A variable with two terms that cross, and names that texts may refer to.
template <class Scene>
struct TTermsOf : Scene {
  using Scene::Fuzzy;
  using Scene::Parser;

  TTermsOf() {
    Parser.Parse(
        "(deffuzzy t (range 0 10) (values (term cold ((0 1) (10 0))) "
        "(term hot ((0 0) (10 1)))))",
        nullptr);
    Variable = Variables(Fuzzy)[0];
    Fuzzy.GetVariables()->SetText(
        "rise=hot\nhalf=?RISE * 0.5\nten=20\nloop=not ?b\nb=?c or hot\nc=[?LOOP]\nbad=?rise "
        "and\nnot=hot");
    Scene::OnEval(Parser, [this](auto&&... told) {
      Log += '[' + std::get<sizeof...(told) - 2>(std::tie(told...)).Utf8() + ']';
    });
    Terms = Dump(Variable);
  }

  std::string Points(const std::string& text) {
    const std::string dump = Dump(Parser.EvalFuzzyExpression(Variable, text));
    return dump.substr(std::min(dump.find(" ("), dump.size()));
  }

  /// What an evaluation tells, the sets that it adds, and what it results in; then forgets them.
  std::string Run(const std::string& text) {
    const std::size_t count = Sets(Variable).size();
    Log.clear();
    const typename Scene::TSet result = Parser.EvalFuzzyExpression(Variable, text);
    std::string all = Log;
    const auto sets = Sets(Variable);
    for (std::size_t i = count; i < sets.size(); ++i) {
      EXPECT_FALSE(sets[i]->GetDefined());
      if (!Scene::Counted)
        all += (i > count ? ", " : " {") + sets[i]->GetName().Utf8() +
               (sets[i] == sets.back() ? "}" : "");
    }
    all += " -> " + Dump(result);
    Forget();
    EXPECT_EQ(Dump(Variable), Terms) << text << " changed a term";
    return all;
  }

  /// Frees what evaluations left.
  void Forget() const {
    const auto sets = Sets(Variable);
    for (std::size_t i = 2; i < sets.size(); ++i) Scene::Drop(sets[i]);
  }

  typename Scene::TVariable Variable{};
  std::string Log;
  std::string Terms;
};
using TTerms = TTermsOf<TScene>;

TYPED_TEST(Expression, EvaluatesOperandsAndOperators) {
  TTermsOf<TypeParam> terms;
  CheckCases<TypeParam>("expressions", [&](const std::string& text) { return terms.Run(text); });
}

TYPED_TEST(Expression, ReportsWhatItCannotEvaluate) {
  TTermsOf<TypeParam> terms;
  CheckCases<TypeParam>("expression_faults", [&](const std::string& text) {
    const std::string failure =
        Failure([&] { terms.Parser.EvalFuzzyExpression(terms.Variable, text); });
    EXPECT_EQ(terms.Parser.GetStream(), nullptr);
    terms.Forget();
    EXPECT_EQ(Dump(terms.Variable), terms.Terms) << text;
    return failure;
  });
  const typename TypeParam::TVariable none{};
  typename TypeParam::TSet set{};
  for (const char* text : {"hot", "", "5", "?rise"}) {
    EXPECT_EQ(Failure([&] { terms.Parser.EvalFuzzyExpression(none, text, set); }),
              ParseFailure("fuzzy variable is not defined", Step, 1, " "));
  }
  EXPECT_EQ(Failure([&] { terms.Points("hot and-sum cold"); }),
            "Invalid fuzzy operation: \"foSum:");
  terms.Parser.SetFuzzyLogic(nullptr);
  EXPECT_EQ(Failure([&] { terms.Points("?rise"); }),
            ParseFailure("Fuzzy Logic component must be specified to parse", Step, 1, " "));
}

TYPED_TEST(Expression, GivesNumbersByTheMethodOfTheComponent) {
  TTermsOf<TypeParam> terms;
  const auto check = [&](const std::function<TFzyFloat(TFuzzySet*)>& expected) {
    typename TypeParam::TSet set{};
    const TFzyFloat number =
        terms.Parser.EvalFuzzyExpression(terms.Variable, "((0 0) (2 1) (4 0.5))", set);
    EXPECT_EQ(number, expected(&test::Engine(set)));
  };
  check(&TFuzzySet::CenterOfGravity);
  terms.Fuzzy.SetDefuzzificationMethod(dmMeanOfMaxima);
  check(&TFuzzySet::MeanOfMaxima);
  terms.Parser.SetFuzzyLogic(nullptr);
  check(&TFuzzySet::CenterOfGravity);
}

/// A random expression, written with all its brackets and with as few as it needs, and its points
/// by direct calls.
struct TTree {
  std::string Full;
  std::string Sparse;
  TOwned<TFuzzySet> Set;
  bool Binary;
};

TTree RandomTree(test::TRandom& random, TFuzzyVariable* variable, int depth) {
  TFuzzySets& sets = *variable->GetItems();
  if (depth == 0) {
    TFuzzySet* term = sets[random.Below(2)];
    const std::string name = term->GetName().Utf8();
    return {name, name, TOwned<TFuzzySet>(term->Clone()), false};
  }
  TTree left = RandomTree(random, variable, random.Below(depth));
  if (random.OneIn(3)) {
    const auto hedge = static_cast<TFuzzyHedge>(random.Below(20));
    const std::string word = TString(HedgeNames[Ordinal(hedge)]).Utf8() + ' ';
    left.Set->Hedge(hedge);
    return {word + '[' + left.Full + ']',
            word + (left.Binary ? '[' + left.Sparse + ']' : left.Sparse), std::move(left.Set),
            false};
  }
  TTree right = RandomTree(random, variable, random.Below(depth));
  const auto operation = static_cast<TFuzzyOperation>(random.Below(6));
  const bool isUnion = random.OneIn(2);
  const TFuzzyOperationKeywords& words = isUnion ? FuzzyUnionKeywords : FuzzyIntersectionKeywords;
  const std::string word = ' ' + TString(words[Ordinal(operation)]).Utf8() + ' ';
  TOwned<TFuzzySet> set(isUnion ? left.Set->Union(right.Set.Get(), operation)
                                : left.Set->Intersection(right.Set.Get(), operation));
  return {'[' + left.Full + ']' + word + '[' + right.Full + ']',
          left.Sparse + word + (right.Binary ? '[' + right.Sparse + ']' : right.Sparse),
          std::move(set), true};
}

TEST(Expression, EqualsTheCallsThatItStandsFor) {
  test::TRandom random;
  SCOPED_TRACE(random.Trace());
  for (int round = 0; round < 300; ++round) {
    TTerms terms;
    TTermsOf<TCountedScene> counted;
    const TTree tree = RandomTree(random, terms.Variable, 5);
    const auto check = [&](auto& model, const std::string& text) {
      const auto result = model.Parser.EvalFuzzyExpression(model.Variable, text);
      EXPECT_TRUE(std::ranges::equal(test::Engine(result).GetValues()->Points(),
                                     tree.Set->GetValues()->Points()))
          << text;
      model.Forget();
      EXPECT_EQ(Dump(model.Variable), model.Terms) << text;
    };
    for (const std::string& text : {tree.Full, tree.Sparse}) {
      check(terms, text);
      check(counted, text);
    }
  }
}

TYPED_TEST(Expression, MakesTermsOfItsOwn) {
  TypeParam scene;
  const auto kept = [](const std::string& text) { return TypeParam::Counted ? '=' + text : ""; };
  scene.Parser.Parse(
      "(deffuzzy t (range 0 10) (values (term hot ((0 0) (10 1))) (term hot2 hot) "
      "(term none ) (term none2 ) (term five 5) (term not-hot not hot) (term far "
      "?v)))",
      nullptr);
  EXPECT_EQ(Dump(scene.Fuzzy),
            "t 0..10 {hot * (0 0)(10 1); hot2 * (0 0)(10 1); none * ; none2 * ; "
            "five tri * (5 0)(5 1)(5 0); not-hot *" +
                kept("[not hot]") + " (0 1)(10 0); far * }");
  // A set that an evaluation left under the name of a term does not stand in for it.
  scene.Fuzzy.GetVariables()->Add("w=not hot");
  scene.Parser.Parse(
      "(deffuzzy u (range 0 10) (values (term hot ((0 0) (10 1))) (term a ?w or hot) "
      "(term w ((0 0.5))) (term b not w) (term c not w)))",
      nullptr);
  EXPECT_TRUE(Dump(scene.Fuzzy)
                  .ends_with("w * (0 0.5); b *" + kept("[not w]") + " (0 0.5); c *" +
                             kept("[not w]") + " (0 0.5)}"))
      << Dump(scene.Fuzzy);
}

TYPED_TEST(Expression, TakesTokensAndItems) {
  TTermsOf<TypeParam> terms;
  TKelFuzzyLogicParser& parser = terms.Parser;
  const auto token = [](TFuzzyStreamTokenType kind, const TString& text) {
    const Ref<TFuzzyStreamToken> made = TFuzzyStreamToken::Create();
    made->SetDataType(KindOf(kind));
    made->SetText(text);
    return made;
  };
  const Ref<TFuzzyStreamToken> held = TFuzzyStreamToken::Create();
  const auto hot = Sets(terms.Variable)[1];
  if constexpr (TypeParam::Counted)
    held->SetFuzzySetIntf(hot);
  else
    held->SetFuzzySet(hot);
  const Ref<TFuzzyStreamTokenList> list = TFuzzyStreamTokenList::Create();
  for (const Ref<TFuzzyStreamToken>& item :
       {held, token(fstAtom, "or"), token(fstAtom, "not"), token(fstString, "cold")})
    list->Add(item);
  EXPECT_EQ(Dump(parser.EvalFuzzyExpression(terms.Variable, list)),
            "hot or [not cold]  (0 0)(10 1)");
  EXPECT_EQ(list->ToString(), "hot cold not or") << "the caller's list is in postfix order";
  EXPECT_EQ(parser.EvalFuzzyExpression(terms.Variable, Ref<IFuzzyStreamToken>(held)), hot);
  held->SetObjValue(&parser);
  EXPECT_EQ(
      Failure([&] { parser.EvalFuzzyExpression(terms.Variable, Ref<IFuzzyStreamToken>(held)); }),
      ParseFailure("Invalid item in fuzzy expression: <object>", Step, 0, ""));

  // Operand, open, close, priority in the stack and on arrival.
  const std::pair<Ref<IInterface>, std::string> items[] = {
      {token(fstAtom, "["), "010 4 0"},      {token(fstAtom, "]"), "001 1 1"},
      {token(fstAtom, "or"), "000 3 3"},     {token(fstAtom, "<=X"), "000 3 3"},
      {token(fstAtom, "not"), "000 2 1"},    {token(fstString, "hot"), "100 1 1"},
      {token(fstVariable, "or"), "100 3 3"}, {list, "000 1 1"}};
  for (const auto& [item, expected] : items) {
    std::string found;
    for (const bool is :
         {parser.IsOperand(item), parser.IsOpenParen(item), parser.IsCloseParen(item)})
      found += is ? '1' : '0';
    EXPECT_EQ(found + ' ' + std::to_string(parser.InStackPriority(item)) + ' ' +
                  std::to_string(parser.IncomingPriority(item)),
              expected);
  }
  const Ref<TInterfaceList> inner = TInterfaceList::Create(), outer = TInterfaceList::Create();
  inner->Add(token(fstAtom, "b"));
  outer->Add(token(fstAtom, "a"));
  outer->Add(inner);
  outer->Add(token(fstAtom, "c"));
  list->Clear();
  parser.FillExpression(outer, list);
  EXPECT_EQ(list->ToString(), "a b c");
  inner->Add(list);
  EXPECT_THROW(parser.FillExpression(outer, list), EConvertError);
}

TYPED_TEST(Expression, OutlivesItsHandlers) {
  using TModel = TTermsOf<TypeParam>;
  using TSet = typename TypeParam::TSet;
  const char* texts[] = {"very hot and ?half or 5", "not ?rise ^ 2",
                         "(tri 1 2 3) or slightly cold"};
  for (const char* text : texts) {
    for (int doomed = 0, added = 1; doomed < added; ++doomed) {
      TModel terms;
      added = 0;
      terms.Fuzzy.SetOnFuzzySetAdded([&](const auto&, const auto& set) {
        if (added++ == doomed) TModel::Drop(set);
      });
      terms.Parser.EvalFuzzyExpression(terms.Variable, text);
      terms.Forget();
      EXPECT_EQ(Dump(terms.Variable), terms.Terms) << text << " without set " << doomed;
    }
  }
  TModel terms;
  const TSet hot = Sets(terms.Variable)[1];
  const std::function<void(TSet&)> deeds[] = {
      [&](TSet& result) { result = hot; },  // a term: a copy is taken
      [&](TSet& result) { TModel::Drop(result); }, [&](TSet& result) { result = nullptr; },
      [&](TSet& result) { result = terms.Parser.EvalFuzzyExpression(terms.Variable, "hot"); },
      [&](TSet&) { throw EFzyException("no"); }};
  const char* results[] = {"copy", TypeParam::Counted ? "copy" : "none", "none", "copy", "no"};
  for (std::size_t i = 0; i < std::size(deeds); ++i) {
    TModel::OnEval(terms.Parser, [&](auto&&... told) {
      TModel::OnEval(terms.Parser, nullptr);
      deeds[i](std::get<sizeof...(told) - 1>(std::tie(told...)));
    });
    std::string result = Failure([&] {
      const TSet set = terms.Parser.EvalFuzzyExpression(terms.Variable, "not cold");
      throw EFzyException(!set ? "none" : set == hot ? "the term" : "copy");
    });
    EXPECT_EQ(result, results[i]);
    terms.Forget();
    EXPECT_EQ(Dump(terms.Variable), terms.Terms);
  }
}

TEST(Expression, EndsWithTheVariableOrTheParser) {
  for (const char* text : {"5 7 or 8", "?rise 5", "hot or (tri 1 2 3) 4"}) {
    for (int moment = 0; moment < 4; ++moment) {
      TTerms terms;
      int told = 0;
      const auto free = [&](auto&&...) {
        if (told++ == moment) std::exchange(terms.Variable, nullptr)->Free();
      };
      terms.Parser.SetOnEvalExpression(free);
      terms.Fuzzy.SetOnFuzzySetAdded(free);
      TFuzzySet* result = nullptr;
      terms.Parser.EvalFuzzyExpression(terms.Variable, text, result);
      EXPECT_EQ(result == nullptr, terms.Variable == nullptr) << text << ' ' << moment;
      if (!terms.Variable) continue;
      result =
          terms.Parser.ParseFuzzySet(terms.Variable, TString("(term k ") + text + ")", nullptr);
      EXPECT_EQ(result == nullptr, terms.Variable == nullptr) << text << ' ' << moment;
    }
  }
  TTerms terms;
  auto* parser = new TKelFuzzyLogicParser(&terms.Fuzzy);
  parser->SetFuzzyLogic(&terms.Fuzzy);
  parser->SetOnEvalExpression([&](auto&&...) { parser->Free(); });
  TFuzzySet* result = nullptr;
  EXPECT_EQ(parser->EvalFuzzyExpression(terms.Variable, "4", result), 5) << "the middle";
}

TEST(Expression, NeverShowsASetOfItsOwnAsATerm) {
  // In a form designer, operations that combine sets define their results for a moment.
  const std::pair<bool, const char*> rows[] = {{false, "(term k hot + 5 or (tri 1 2 3) and ?rise)"},
                                               {true, "(term k not [(tri 1 2 3)] + 5 ?rise)"}};
  for (const auto& [designing, text] : rows) {
    TTerms terms;
    terms.Fuzzy.SetDesigning(designing);
    terms.Fuzzy.SetOnFuzzySetChange([&](TObject*, TFuzzySet* set) {
      if (!set->GetName().empty() && set->GetDefined()) terms.Log += set->GetName().Utf8();
    });
    terms.Parser.SetOnEvalExpression(nullptr);
    terms.Parser.ParseFuzzySet(terms.Variable, text, nullptr);
    EXPECT_EQ(terms.Log, "");
  }
}

}  // namespace
}  // namespace fzy
