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
using test::TScene;

constexpr const char* Step = "EvalFuzzyExpression";

/// A variable with two terms that cross, and names that texts may refer to.
struct TTerms : TScene {
  TTerms() {
    Parser.Parse(
        "(deffuzzy t (range 0 10) (values (term cold ((0 1) (10 0))) "
        "(term hot ((0 0) (10 1)))))",
        nullptr);
    Variable = Fuzzy.GetItems()->GetItem(0);
    Fuzzy.GetVariables()->SetText(
        "rise=hot\nhalf=?RISE * 0.5\nten=20\nloop=not ?b\nb=?c or hot\nc=[?LOOP]\nbad=?rise "
        "and\nnot=hot");
    Parser.SetOnEvalExpression([this](TObject*, TFuzzyVariable*, const TString& text, TFuzzySet*&) {
      Log += '[' + text.Utf8() + ']';
    });
    Terms = Dump(Variable);
  }

  std::string Points(const std::string& text) {
    const std::string dump = Dump(Parser.EvalFuzzyExpression(Variable, text));
    return dump.substr(std::min(dump.find(" ("), dump.size()));
  }

  /// What an evaluation tells, the sets that it adds, and what it results in; then forgets them.
  std::string Run(const std::string& text) {
    TFuzzySets& sets = *Variable->GetItems();
    const int count = sets.GetCount();
    Log.clear();
    const TFuzzySet* result = Parser.EvalFuzzyExpression(Variable, text);
    std::string all = Log;
    for (int i = count; i < sets.GetCount(); ++i) {
      EXPECT_FALSE(sets[i]->GetDefined());
      all += (i > count ? ", " : " ") + sets[i]->GetName().Utf8();
    }
    all += " -> " + Dump(result);
    Forget();
    EXPECT_EQ(Dump(Variable), Terms) << text << " changed a term";
    return all;
  }

  /// Frees what evaluations left.
  void Forget() const {
    while (Variable->GetItems()->GetCount() > 2) Variable->GetItems()->Delete(2);
  }

  TFuzzyVariable* Variable = nullptr;
  std::string Log;
  std::string Terms;
};

TEST(Expression, EvaluatesOperandsAndOperators) {
  TTerms terms;
  CheckCases("expressions", [&](const std::string& text) { return terms.Run(text); });
}

TEST(Expression, ReportsWhatItCannotEvaluate) {
  TTerms terms;
  CheckCases("expression_faults", [&](const std::string& text) {
    const std::string failure =
        Failure([&] { terms.Parser.EvalFuzzyExpression(terms.Variable, text); });
    EXPECT_EQ(terms.Parser.GetStream(), nullptr);
    terms.Forget();
    EXPECT_EQ(Dump(terms.Variable), terms.Terms) << text;
    return failure;
  });
  TFuzzySet* set = nullptr;
  for (const char* text : {"hot", "", "5", "?rise"}) {
    EXPECT_EQ(Failure([&] { terms.Parser.EvalFuzzyExpression(nullptr, text, set); }),
              ParseFailure("fuzzy variable is not defined", Step, 1, " "));
  }
  EXPECT_EQ(Failure([&] { terms.Points("hot and-sum cold"); }),
            "Invalid fuzzy operation: \"foSum:");
  terms.Parser.SetFuzzyLogic(nullptr);
  EXPECT_EQ(Failure([&] { terms.Points("?rise"); }),
            ParseFailure("Fuzzy Logic component must be specified to parse", Step, 1, " "));
}

TEST(Expression, GivesNumbersByTheMethodOfTheComponent) {
  TTerms terms;
  const auto check = [&](const std::function<TFzyFloat(TFuzzySet*)>& expected) {
    TFuzzySet* set = nullptr;
    const TFzyFloat number =
        terms.Parser.EvalFuzzyExpression(terms.Variable, "((0 0) (2 1) (4 0.5))", set);
    EXPECT_EQ(number, expected(set));
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
    const TTree tree = RandomTree(random, terms.Variable, 5);
    for (const std::string& text : {tree.Full, tree.Sparse}) {
      const TFuzzySet* result = terms.Parser.EvalFuzzyExpression(terms.Variable, text);
      EXPECT_TRUE(
          std::ranges::equal(result->GetValues()->Points(), tree.Set->GetValues()->Points()))
          << text;
    }
    terms.Forget();
    EXPECT_EQ(Dump(terms.Variable), terms.Terms) << tree.Sparse;
  }
}

TEST(Expression, MakesTermsOfItsOwn) {
  TScene scene;
  scene.Parser.Parse(
      "(deffuzzy t (range 0 10) (values (term hot ((0 0) (10 1))) (term hot2 hot) "
      "(term none ) (term none2 ) (term five 5) (term not-hot not hot) (term far "
      "?v)))",
      nullptr);
  EXPECT_EQ(
      Dump(scene.Fuzzy),
      "t 0..10 {hot *=hot (0 0)(10 1); hot2 *=hot2 (0 0)(10 1); none *=none ; none2 *=none2 ; "
      "five tri *=five (5 0)(5 1)(5 0); not-hot *=not-hot (0 1)(10 0); far *=far }");
  // A set that an evaluation left under the name of a term does not stand in for it.
  scene.Fuzzy.GetVariables()->Add("w=not hot");
  scene.Parser.Parse(
      "(deffuzzy u (range 0 10) (values (term hot ((0 0) (10 1))) (term a ?w or hot) "
      "(term w ((0 0.5))) (term b not w) (term c not w)))",
      nullptr);
  EXPECT_TRUE(Dump(scene.Fuzzy).ends_with("w *=w (0 0.5); b *=b (0 0.5); c *=c (0 0.5)}"))
      << Dump(scene.Fuzzy);
}

TEST(Expression, TakesTokensAndItems) {
  TTerms terms;
  TKelFuzzyLogicParser& parser = terms.Parser;
  const auto token = [](TFuzzyStreamTokenType kind, const TString& text) {
    const Ref<TFuzzyStreamToken> made = TFuzzyStreamToken::Create();
    made->SetDataType(KindOf(kind));
    made->SetText(text);
    return made;
  };
  const Ref<TFuzzyStreamToken> held = TFuzzyStreamToken::Create();
  held->SetFuzzySet(terms.Variable->GetItems()->GetItem(1));
  const Ref<TFuzzyStreamTokenList> list = TFuzzyStreamTokenList::Create();
  for (const Ref<TFuzzyStreamToken>& item :
       {held, token(fstAtom, "or"), token(fstAtom, "not"), token(fstString, "cold")})
    list->Add(item);
  EXPECT_EQ(Dump(parser.EvalFuzzyExpression(terms.Variable, list)),
            "hot or [not cold] =hot or [not cold] (0 0)(10 1)");
  EXPECT_EQ(list->ToString(), "hot cold not or") << "the caller's list is in postfix order";
  EXPECT_EQ(parser.EvalFuzzyExpression(terms.Variable, Ref<IFuzzyStreamToken>(held)),
            held->GetFuzzySet());
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

TEST(Expression, OutlivesItsHandlers) {
  const char* texts[] = {"very hot and ?half or 5", "not ?rise ^ 2",
                         "(tri 1 2 3) or slightly cold"};
  for (const char* text : texts) {
    for (int doomed = 0, added = 1; doomed < added; ++doomed) {
      TTerms terms;
      added = 0;
      terms.Fuzzy.SetOnFuzzySetAdded([&](TObject*, TFuzzySet* set) {
        if (added++ == doomed) set->Free();
      });
      terms.Parser.EvalFuzzyExpression(terms.Variable, text);
      terms.Forget();
      EXPECT_EQ(Dump(terms.Variable), terms.Terms) << text << " without set " << doomed;
    }
  }
  TTerms terms;
  TFuzzySet* hot = terms.Variable->GetItems()->GetItem(1);
  const std::function<void(TFuzzySet*&)> deeds[] = {
      [&](TFuzzySet*& result) { result = hot; },  // a term: a copy is taken
      [&](TFuzzySet*& result) { result->Free(); }, [&](TFuzzySet*& result) { result = nullptr; },
      [&](TFuzzySet*& result) { result = terms.Parser.EvalFuzzyExpression(terms.Variable, "hot"); },
      [&](TFuzzySet*&) { throw EFzyException("no"); }};
  const char* results[] = {"copy", "none", "none", "copy", "no"};
  for (std::size_t i = 0; i < std::size(deeds); ++i) {
    terms.Parser.SetOnEvalExpression(
        [&](TObject*, TFuzzyVariable*, const TString&, TFuzzySet*& set) {
          terms.Parser.SetOnEvalExpression(nullptr);
          deeds[i](set);
        });
    std::string result = Failure([&] {
      const TFuzzySet* set = terms.Parser.EvalFuzzyExpression(terms.Variable, "not cold");
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
