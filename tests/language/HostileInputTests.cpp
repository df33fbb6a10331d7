#include <cstdio>

#include <gtest/gtest.h>
#include <pthread.h>

#include "tests/language/Definitions.h"

namespace fzy {
namespace {

using test::Dump;
using test::Failure;
using test::ParseFailure;
using test::TScene;
using test::Variables;

template <class Scene>
class HostileInput : public testing::Test {};
TYPED_TEST_SUITE(HostileInput, test::TBothModels);

// Instrumented code is slow, and what it looks for shows at a fifth of the size.
#ifdef __SANITIZE_ADDRESS__
constexpr int Million = 200'000;
#else
constexpr int Million = 1'000'000;
#endif

std::string Repeat(const std::string& part, int times = Million) {
  std::string text;
  while (times-- > 0) text += part;
  return text;
}

/// Runs an action on a thread whose stack is too small for anything that recurses with its input.
void OnSmallStack(const std::function<void()>& action) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
  const auto run = [](void* argument) -> void* {
    (*static_cast<const std::function<void()>*>(argument))();
    return nullptr;
  };
  pthread_t thread{};
  ASSERT_EQ(pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&action)),
            0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

TEST(HostileInput, NestsListsWithoutUsingTheStack) {
  OnSmallStack([] {
    Ref<TFuzzyStreamToken> outer = TFuzzyStreamToken::Create();
    for (int i = 0; i < Million; ++i) {
      const Ref<TFuzzyStreamTokenList> list = TFuzzyStreamTokenList::Create();
      list->Add(outer);
      list->Add(TFuzzyStreamToken::Create());
      outer = TFuzzyStreamToken::Create();
      outer->SetList(list);
    }
    EXPECT_EQ(outer->ToString().size(), std::size_t{Million});
  });
}

TEST(HostileInput, IsRefusedOnASmallStack) {
  const std::string define = "Expected \"( deffuzzy\"", variable = "ParseFuzzyVariable";
  const std::string call = "(deffuzzy a (values (term b (tri ", lines = Repeat(";(\n") + "\r";
  const std::string types =
      "Data Types of arguments for function, tri, incorrect.  Expected numeric in "
      "CalcFuzzyFunction at line 1: \"";
  const std::string huge(static_cast<std::size_t>(100 * Million), 'x');
  const std::pair<std::string, std::string> rows[] = {
      {Repeat("("), ParseFailure(define, variable, 1, " ( ( ")},
      {Repeat(")"), ParseFailure("Unexpected token: \")\"", "ParseFuzzyLogic", 1, ") ")},
      {call + Repeat("(") + Repeat(")") + "))))",
       "line 1: Parsing Error, " + types + " ( deffuzzy"},
      // Where the text ends within the call, its end is a construct of its own.
      {call + Repeat("("), "line 1: Parsing Error, " + types + " \""},
      {lines + "(deffuzzy a" + lines + ")" + lines, "nothing"},
      {lines + "5", ParseFailure("Unexpected token: \"5\"", "ParseFuzzyLogic", Million + 2, "5 ")},
      {"\n\"" + huge, "line 2: Unbalanced string: the closing quote is missing"},
      {"(" + huge,
       ParseFailure(define, variable, 1,
                    " ( " + huge.substr(0, 125) + "... \r\n" + huge.substr(0, 127) + ' ')}};
  for (const auto& [text, expected] : rows) {
    std::string failure;
    OnSmallStack([&, &t = text] {
      TScene scene;
      failure = Failure([&] { scene.Parser.Parse(t, nullptr); });
      scene.Fuzzy.GetItems()->Clear();
      scene.Parser.Parse("(deffuzzy a)", nullptr);
      EXPECT_EQ(Dump(scene.Fuzzy), "a 0..1 {}") << "fit for the next text";
    });
    EXPECT_TRUE(failure.starts_with(expected)) << failure;
  }
}

TYPED_TEST(HostileInput, IsEvaluatedOnASmallStack) {
  // What the models share shows in one of them.
  constexpr int size = TypeParam::Counted ? Million / 10 : Million;
  const std::string define = "(deffuzzy a (range 0 1) (values (term hot ((0 0) (1 1))) (term b ";
  const std::string unmatched = "Unmatched \"[\" in fuzzy expression";
  const std::string large =
      "The fuzzy expression is too large: its sets would take more than "
      "134217728 characters of names";
  const std::pair<std::string, std::string> rows[] = {
      {"hot", ""},
      {Repeat("hot ", size), ""},
      {Repeat("[", size) + "hot" + Repeat("]", size), ""},
      {Repeat("[", size) + "hot" + Repeat("]", size - 1), unmatched},
      {Repeat("very ", size), "Missing fuzzy operand to be modified by hedge: very"},
      {Repeat("?none ", size / 10), ""},
      {"[" + Repeat("(", size) + Repeat(")", size) + "]", "Invalid X/Y value pair: "},
      // Names of names: a short text would take more memory than there is.
      {Repeat("not ", 50'000) + "hot", large},
      {"hot" + Repeat(" or hot", 50'000), large},
      {"?x0", large},
      // Sets of one name, and as many look-ups of it, in one term and in many.
      {Repeat("5 ", size / 10 + 1) + ") " + Repeat("(term t \"\" very \"5\") ", size / 10) +
           "(term u hot",
       ""},
      {Repeat("5 ", size / 10) + Repeat("\"5\" ", size / 10), ""}};
  for (const auto& [body, message] : rows) {
    // A counted variable has one set of a name, and long chains of names cost both the same.
    if (TypeParam::Counted && (body.starts_with("5 ") || body == "?x0")) continue;
    std::string failure;
    OnSmallStack([&, &b = body] {
      TypeParam scene;
      for (int i = 0; i < 30; ++i) {  // each text twice the one it names
        const std::string next = "?x" + std::to_string(i + 1);
        scene.Fuzzy.GetVariables()->Add("x" + std::to_string(i) + "=" + next + " " + next);
      }
      failure = Failure([&] { scene.Parser.Parse(define + b + ")))", nullptr); });
      if (failure == "nothing") {
        scene.Fuzzy.UpdateStrings();
        const TString text = scene.Fuzzy.GetStrings()->GetText();
        EXPECT_GT(text.size(), define.size());
      }
    });
    const std::string expected =
        message.empty() ? "nothing" : "line 1: Parsing Error, " + message + " in Eval";
    EXPECT_TRUE(failure.starts_with(expected) || message.starts_with("Invalid X/Y"))
        << failure.substr(0, 300);
  }
  // Names that refer to each other, one deeper than they may.
  for (const int depth : {1000, 1001}) {
    OnSmallStack([&] {
      TypeParam scene;
      scene.Parser.Parse(define + "hot)))", nullptr);
      TString names = "n0=hot\n";
      for (int i = 1; i < depth; ++i)
        names = names + TString("n" + std::to_string(i) + "=?n" + std::to_string(i - 1) + "\n");
      scene.Fuzzy.GetVariables()->SetText(names);
      const std::string failure = Failure([&] {
        scene.Parser.EvalFuzzyExpression(Variables(scene.Fuzzy)[0],
                                         TString("?n" + std::to_string(depth - 1)));
      });
      const bool refused = failure.starts_with(
          "line 1: Parsing Error, Fuzzy variables refer to each other more than 1000 deep: ?n0");
      EXPECT_EQ(refused, depth > 1000) << failure;
    });
  }
}

}  // namespace
}  // namespace fzy
