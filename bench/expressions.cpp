#include <string>

#include "bench/Memory.h"
#include "fuzzylogic/common/PostFix.h"
#include "fuzzylogic/common/StringStream.h"
#include "fuzzylogic/framework/InterfaceList.h"
#include "fuzzylogic/language/detail/ExpressionItems.h"

// Fuzzy expressions: put in postfix order, beside a plain shunting-yard over the kinds of the items
// alone; evaluated, beside the same operations called directly on the sets; and definition text
// written, beside reading it.

namespace fzy::bench {
namespace {

std::string MixedText(int tokens) {
  std::string text = "cold";
  for (int i = 10; i < tokens; i += 10) text += " or [very warm and not hot ^ 2]";
  return text;
}

/// A quarter of the tokens open brackets before the first operand.
std::string NestedText(int tokens) {
  std::string text(static_cast<std::size_t>(tokens / 4), '[');
  text += "cold";
  for (int i = 0; i < tokens / 4; ++i) text += " or warm]";
  return text;
}

/// The positions of items in postfix order, into an array that is large enough; how many.
std::size_t PlainPostfix(const std::vector<detail::TExpressionItem>& items, unsigned* output,
                         unsigned* stack) {
  using enum detail::TExpressionItem;
  // How tightly an item binds in the stack and on arrival, in the order of the kinds.
  static constexpr int binding[6][2] = {{1, 1}, {4, 0}, {1, 1}, {3, 3}, {3, 3}, {2, 1}};
  const auto bind = [&](unsigned i) { return binding[static_cast<std::size_t>(items[i])]; };
  unsigned* out = output;
  unsigned* top = stack;
  for (unsigned i = 0; i < items.size(); ++i) {
    if (items[i] == Operand) {
      *out++ = i;
    } else if (items[i] == CloseParen) {
      while (items[*--top] != OpenParen) *out++ = *top;
    } else {
      while (top != stack && bind(top[-1])[0] <= bind(i)[1]) *out++ = *--top;
      *top++ = i;
    }
  }
  while (top != stack) *out++ = *--top;
  return static_cast<std::size_t>(out - output);
}

/// From tokens to tokens, as the evaluator does it.
template <std::string (*MakeText)(int)>
void ToPostfix(benchmark::State& state) {
  auto text = std::make_unique<TKelStringStream>(MakeText(static_cast<int>(state.range(0))));
  TFuzzyLogicTokenStream stream(std::move(text), nullptr);
  std::vector<Ref<IFuzzyStreamToken>> tokens;
  std::vector<detail::TExpressionItem> items;
  while (!stream.IsEof()) {
    tokens.push_back(stream.NextToken());
    items.push_back(detail::ClassifyExpressionItem(*tokens.back()));
  }
  const TKelFuzzyLogicParser parser;
  Ref<IFuzzyStreamTokenList> list;
  const auto convert = [&] {
    const std::vector<detail::TExpressionToken> infix(tokens.begin(), tokens.end());
    const Ref<IInterfaceList> postfix = TInterfaceList::Create();
    for (const auto& item : PostFix(infix, detail::TExpressionRules())) postfix->Add(item.Token);
    list = TFuzzyStreamTokenList::Create();
    parser.FillExpression(postfix, list);
  };
  std::vector<unsigned> output(items.size());
  std::vector<unsigned> stack(items.size());
  const auto plain = [&] { return PlainPostfix(items, output.data(), stack.data()); };
  convert();
  Require(list->GetValueCount() == static_cast<int>(plain()), "postfix");
  for (int i = 0; i < list->GetValueCount(); ++i)
    Require(list->Get(i) == tokens[output[static_cast<std::size_t>(i)]], "postfix");
  Compare(state, static_cast<double>(tokens.size()), convert,
          [&] { benchmark::DoNotOptimize(plain()); });
}

void Lengths(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("tokens")->RangeMultiplier(10)->Range(1'000, 1'000'000)->UseManualTime();
}
BENCHMARK(ToPostfix<MixedText>)->Name("ToPostfix/mixed")->Apply(Lengths);
BENCHMARK(ToPostfix<NestedText>)->Name("ToPostfix/nested")->Apply(Lengths);

// Evaluation

std::string TermName(int i) { return "term" + std::to_string(1'000'000 + i); }

/// A variable of many terms with ten different curves, and an expression of many of its terms.
struct TScene {
  TScene(int terms, int operands) : Variable(Model.AddVariable(0, 100)) {
    Parser.SetFuzzyLogic(&Model.Fuzzy);
    for (int i = 0; i < terms; ++i) {
      TFuzzySet* term = Variable.GetItems()->Add(TermName(i));
      term->CreateTriangleFunctionValues(8 * (i % 10), 8 * (i % 10) + 9.1, 8 * (i % 10) + 17.4);
    }
    TRandom random;
    for (int i = 0; i < operands; ++i)
      Operands.push_back(static_cast<int>(random.Between(0, terms)));
  }

  std::string Name(std::size_t i) const { return TermName(Operands[i]); }
  TFuzzySet* Term(std::size_t i) { return Variable.GetItems()->GetItem(Operands[i]); }
  /// Frees the sets made on the way.
  void Tidy() {
    TFuzzySets& sets = *Variable.GetItems();
    while (!sets[sets.GetCount() - 1]->GetDefined()) sets.Delete(sets.GetCount() - 1);
  }

  TModel Model;
  TKelFuzzyLogicParser Parser;
  TFuzzyVariable& Variable;
  std::vector<int> Operands;
};

/// What an expression is made of: its text, and the same called directly.
struct TJoined {
  static TString Text(TScene& scene) {
    std::string text = scene.Name(0);
    for (std::size_t i = 1; i < scene.Operands.size(); ++i) text += " or " + scene.Name(i);
    return text;
  }
  static TFuzzySet* Call(TScene& scene) {
    TFuzzySet* sum = scene.Term(0);
    for (std::size_t i = 1; i < scene.Operands.size(); ++i) sum = sum->Union(scene.Term(i));
    return sum;
  }
};

/// Hedges, brackets and keywords: the text is what the called operations say of their result.
struct TMixed {
  static TString Text(TScene& scene) { return Call(scene)->GetExpression(); }
  static TFuzzySet* Call(TScene& scene) {
    TFuzzySet* sum = scene.Term(0);
    for (std::size_t i = 3; i < scene.Operands.size(); i += 3) {
      TFuzzySet* left = scene.Term(i - 2)->Clone()->Hedge(fhVery);
      TFuzzySet* right = scene.Term(i - 1)->Union(scene.Term(i))->Hedge(fhNot);
      sum = sum->Union(left->Intersection(right, foProduct));
    }
    return sum;
  }
};

/// The same as joined, but each operand joins what the ?name before stands for.
struct TChained : TJoined {
  static TString Text(TScene& scene) {
    std::string text = scene.Name(0);
    for (std::size_t i = 1; i < scene.Operands.size(); ++i) {
      const std::string name = "name" + std::to_string(i);
      scene.Model.Fuzzy.GetVariables()->Add(name + "=" + text + " or " + scene.Name(i));
      text = "?" + name;
    }
    return text;
  }
};

template <class Expression>
void Evaluate(benchmark::State& state) {
  TScene scene(static_cast<int>(state.range(1)), static_cast<int>(state.range(0)));
  const TString text = Expression::Text(scene);
  const auto evaluate = [&] { return scene.Parser.EvalFuzzyExpression(&scene.Variable, text); };
  const std::size_t before = Peak = InUse;
  const TFuzzySet* result = evaluate();
  state.counters["left_MB"] = static_cast<double>(InUse - before) * 1e-6;
  state.counters["peak_MB"] = static_cast<double>(Peak - before) * 1e-6;
  const TFuzzySet* called = Expression::Call(scene);
  Require(result->GetExpression() == called->GetExpression() &&
              std::ranges::equal(result->GetValues()->Points(), called->GetValues()->Points()),
          "evaluation");
  state.counters["points"] = result->GetValues()->GetCount();
  Compare(
      state, static_cast<double>(state.range(0)), [&] { benchmark::DoNotOptimize(evaluate()); },
      [&] { benchmark::DoNotOptimize(Expression::Call(scene)); }, [&] { scene.Tidy(); });
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"operands", "terms"})->UseManualTime();
  for (const int operands : {10, 100, 1'000}) benchmark->Args({operands, 10});
  for (const int terms : {1'000, 100'000}) benchmark->Args({1'000, terms});
}
BENCHMARK(Evaluate<TJoined>)->Name("Evaluate/joined")->Apply(Sizes);
BENCHMARK(Evaluate<TMixed>)->Name("Evaluate/mixed")->Apply(Sizes);
BENCHMARK(Evaluate<TChained>)->Name("Evaluate/chained")->Apply(Sizes);

// Writing

std::string Points(int /*i*/) { return "((0 1) (20.5 1) (40.25 0))"; }
std::string Shape(int i) {
  static constexpr const char* calls[] = {"(tri 2 5 8)", "(pi 3 5)", "(s 2 4)", "(beta 3 5 1)"};
  return calls[i % 4];
}

std::string Expression(int i) {
  if (i < 4) return Shape(i);
  return "very [" + TermName(i % 4) + " or " + TermName(i / 2) + "] and not " + TermName(3);
}

/// A variable of many terms, written by the form that the body of its terms has.
template <std::string (*Body)(int)>
void Write(benchmark::State& state) {
  TScene scene(0, 0);
  std::string given = "(deffuzzy x (range 0 100) (values ";
  for (int i = 0; i < state.range(0); ++i) given += "(term " + TermName(i) + ' ' + Body(i) + ')';
  const TFuzzyVariable* variable = scene.Parser.ParseFuzzyVariable(given + "))", nullptr);
  const TString text = scene.Parser.PrettyPrint(variable);
  Require(scene.Parser.PrettyPrint(scene.Parser.ParseFuzzyVariable(text, nullptr)) == text,
          "write");
  CompareText(
      state, static_cast<double>(text.Utf8().size()),
      [&](TTextTimer& timer) { timer([&] { scene.Parser.PrettyPrint(variable); }); },
      [&](TTextTimer& timer) {
        TScene fresh(0, 0);
        timer([&] { fresh.Parser.ParseFuzzyVariable(text, nullptr); });
      });
}

void Counts(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("terms")->RangeMultiplier(10)->Range(100, 10'000)->UseManualTime();
}
BENCHMARK(Write<Points>)->Name("Write/points")->Apply(Counts);
BENCHMARK(Write<Shape>)->Name("Write/shapes")->Apply(Counts);
BENCHMARK(Write<Expression>)->Name("Write/expressions")->Apply(Counts);

}  // namespace
}  // namespace fzy::bench
