#include <cstdio>

#include <gtest/gtest.h>
#include <pthread.h>

#include "tests/language/Definitions.h"
#include "tests/support/Random.h"

namespace fzy {
namespace {

using test::Dump;
using test::Failure;
using test::Number;
using test::ParseFailure;
using test::TRandom;
using test::TScene;

/// Writes random definition texts and, beside each piece, what a model read from it must hold.
class TWriter {
 public:
  explicit TWriter(TRandom& random) : FRandom(random) {}

  std::string Text;

  std::string Variable() {
    Word("(");
    Word("deffuzzy");
    const std::string name = Name(), head = name + Comment();
    int low = 0, high = 1;
    std::string units, terms;
    for (int clauses = FRandom.Below(5); clauses > 0; --clauses) {
      const int kind = FRandom.Below(3);
      Word("(");
      Word(kind == 0 ? "range" : kind == 1 ? "units" : "values");
      if (kind == 0) {
        Write(low = FRandom.Below(2000) - 1000);
        Write(high = low + 1 + FRandom.Below(1000));
      } else if (kind == 1) {
        units = ' ' + Name();
      }
      for (int count = kind == 2 ? FRandom.Below(4) : 0; count > 0; --count)
        terms += (terms.empty() ? "" : "; ") + Term(low, high);
      Word(")");
    }
    Word(")");
    return head + ' ' + Number(low) + ".." + Number(high) + units + " {" + terms + '}';
  }

 private:
  std::string Term(int low, int high) {
    Word("(");
    Word("term");
    const std::string name = Name(), comment = Comment();
    const bool call = FRandom.OneIn(3);
    const int steps = call ? 3 : 1 + FRandom.Below(8);
    std::string points;
    Word("(");
    if (call) Word("tri");
    for (int i = 0; i < steps; ++i) {
      // Ascending positions within the range, exact in binary.
      const double x = low + (high - low) * (i / 8.0);
      const double y = call ? i % 2 : FRandom.Unit();
      if (!call) Word("(");
      Write(x);
      if (!call) Write(y);
      if (!call) Word(")");
      points += '(' + Number(x) + ' ' + Number(y) + ')';
    }
    Word(")");
    Word(")");
    return name + comment + (call ? " tri" : "") + " *=" + name + ' ' + points;
  }

  /// A token, behind what may stand between any two and must between two words.
  void Word(const std::string& word) {
    static const char* const blanks[] = {" ", "\n", "\t", "\r\n", "\r", ";\n", "; (x \"\r\n", "  "};
    const bool apart = Text.empty() || Text.back() == '(' || Text.back() == ')' || word == "(" ||
                       word == ")" || word[0] == '"';
    for (bool enough = apart; !enough || FRandom.OneIn(3); enough = true)
      Text += blanks[FRandom.Below(8)];
    Text += word;
  }

  void Write(double number) {
    char digits[40];
    std::snprintf(digits, sizeof digits, FRandom.OneIn(2) ? "%.17g" : "%+.20E", number);
    Word(digits);
  }

  std::string Name() {
    static const char* const parts[] = {"a", "9", "-", "?", "=", "+", "\u00E9", "\U0001F600"};
    std::string name = "n", word = "n";
    for (int count = FRandom.Below(6); count > 0; --count) {
      const bool escaped = FRandom.OneIn(3);
      const std::string part =
          escaped ? std::string(1, "()[]&|~;<\"\\ "[FRandom.Below(12)]) : parts[FRandom.Below(8)];
      word += (escaped ? "\\" : "") + part;
      name += part;
    }
    Word(word + ' ');
    return name;
  }

  std::string Comment() {
    static const char* const parts[] = {"a", " ", ";", "(", "\r\n", "\u20AC", "\\\"", "\\\\"};
    std::string comment, word;
    for (int count = FRandom.Below(6); count > 0; --count) {
      const std::string part = parts[FRandom.Below(8)];
      word += part;
      comment += part[0] == '\\' ? part.substr(1) : part;
    }
    if (comment.empty()) return "";
    Word('"' + word + '"');
    return " '" + comment + '\'';
  }

  TRandom& FRandom;
};

TEST(ReaderProperty, ReadsWhatAWriterOfItsOwnWrote) {
  TRandom random;
  SCOPED_TRACE(random.Trace());
  const TEncoding* const encodings[] = {nullptr, TEncoding::UTF16LittleEndian()};
  TScene scene;
  for (int i = 0; i < 2000; ++i) {
    TWriter writer(random);
    std::string model = writer.Variable();
    while (random.OneIn(2)) model += ' ' + writer.Variable();
    scene.Fuzzy.GetItems()->Clear();
    ASSERT_EQ(Failure([&] { scene.Parser.ParseFuzzyLogic(writer.Text, encodings[i % 2]); }),
              "nothing")
        << writer.Text;
    ASSERT_EQ(Dump(scene.Fuzzy), model) << writer.Text;
  }
}

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

}  // namespace
}  // namespace fzy
