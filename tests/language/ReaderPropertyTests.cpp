#include <cstdio>
#include <string>

#include <gtest/gtest.h>

#include "tests/language/Definitions.h"
#include "tests/support/Random.h"

namespace fzy {
namespace {

using test::Dump;
using test::Failure;
using test::Number;
using test::TRandom;
using test::TScene;

/// Writes random definition texts and, beside each piece, what a model read from it must hold.
class TWriter {
 public:
  explicit TWriter(TRandom& random) : FRandom(random) {}

  std::string Text;
  std::string Model;

  void Definition() {
    for (int count = FRandom.Below(4); count > 0; --count) {
      if (!Model.empty()) Model += ' ';
      Variable();
    }
    Blanks();
    if (FRandom.OneIn(4)) Text += "; the end";
  }

 private:
  void Variable() {
    Open("deffuzzy");
    std::string head = Name();
    head += Comment();
    int low = 0;
    int high = 1;
    std::string units;
    std::string terms;
    for (int clauses = FRandom.Below(5); clauses > 0; --clauses) {
      const int kind = FRandom.Below(3);
      if (kind == 0) {
        low = FRandom.Below(2000) - 1000;
        high = low + 1 + FRandom.Below(1000);
        Open("range");
        Write(low);
        Write(high);
      } else if (kind == 1) {
        Open("units");
        units = Units();
      } else {
        Open("values");
        for (int count = FRandom.Below(4); count > 0; --count)
          terms += (terms.empty() ? "" : "; ") + Term(low, high);
      }
      Close();
    }
    Close();
    Model += head + ' ' + Number(low) + ".." + Number(high) + (units.empty() ? "" : ' ' + units) +
             " {" + terms + '}';
  }

  std::string Term(int low, int high) {
    Open("term");
    const std::string name = Name();
    const std::string head = name + Comment();
    // Ascending positions within the range, exact in binary.
    const auto at = [&](int step, int steps) {
      return low + (high - low) * (static_cast<double>(step) / steps);
    };
    std::string type;
    std::string points;
    if (FRandom.OneIn(3)) {
      Open("tri");
      for (int i = 0; i < 3; ++i) {
        Write(at(i, 2));
        points += '(' + Number(at(i, 2)) + (i == 1 ? " 1)" : " 0)");
      }
      type = " tri";
    } else {
      Open("");
      // A call is told from points by its first token, so there is one point at least.
      const int steps = 1 + FRandom.Below(8);
      for (int i = 0; i < steps; ++i) {
        const double x = at(i, 8);
        const double y = FRandom.OneIn(3) ? FRandom.Below(2) : FRandom.Unit();
        Open("");
        Write(x);
        Write(y);
        Close();
        points += '(' + Number(x) + ' ' + Number(y) + ')';
      }
    }
    Close();
    Close();
    return head + type + " *=" + name + ' ' + points;
  }

  void Open(const std::string& keyword) {
    Blanks();
    Text += '(';
    if (!keyword.empty()) {
      Blanks();
      Text += keyword;
      FWord = true;
    }
  }

  void Close() {
    Blanks();
    Text += ')';
  }

  /// What may stand between any two tokens, and must between two words.
  void Blanks(bool word = false) {
    static const char* const blanks[] = {" ", "\n", "\t", "\r\n", "\r", ";\n", "; (x \"\r\n", "  "};
    bool apart = !(word && FWord);
    FWord = false;
    while (!apart || FRandom.OneIn(3)) {
      Text += blanks[FRandom.Below(8)];
      apart = true;
    }
  }

  void Write(double number) {
    Blanks(true);
    FWord = true;
    if (number >= 0 && FRandom.OneIn(8)) Text += '+';
    if (number > 0 && FRandom.OneIn(8)) Text += "00";
    char digits[40];
    if (FRandom.OneIn(2))
      std::snprintf(digits, sizeof digits, "%.17g", number);
    else
      std::snprintf(digits, sizeof digits, "%.20E", number);
    Text += digits;
  }

  std::string Name() {
    static const char* const parts[] = {"a", "Z", "9", "-",      ".",
                                        "?", "=", "+", "\u00E9", "\U0001F600"};
    static const char escaped[] = "()[]&|~;<\"\\ ";
    Blanks(true);
    FWord = true;
    std::string name = "n";
    Text += name;
    for (int count = FRandom.Below(6); count > 0; --count) {
      if (FRandom.OneIn(3)) {
        const char ch = escaped[FRandom.Below(12)];
        Text += '\\';
        Text += ch;
        name += ch;
      } else {
        const char* part = parts[FRandom.Below(10)];
        Text += part;
        name += part;
      }
    }
    return name;
  }

  std::string Comment() {
    const std::string comment = FRandom.OneIn(2) ? Quoted() : "";
    return comment.empty() ? "" : " '" + comment + '\'';
  }

  std::string Quoted() {
    static const char* const parts[] = {"a",    " ",      ";",  "(",  "\n",
                                        "\r\n", "\u20AC", "\"", "\\", "?"};
    Blanks();
    std::string text;
    Text += '"';
    for (int count = FRandom.Below(6); count > 0; --count) {
      const std::string part = parts[FRandom.Below(10)];
      if (part == "\"" || part == "\\" || FRandom.OneIn(6)) Text += '\\';
      Text += part;
      text += part;
    }
    Text += '"';
    return text;
  }

  std::string Units() {
    switch (FRandom.Below(4)) {
      case 0:
        return Name();
      case 1:
        return Quoted();
      case 2:
        Write(0.25);
        return "0.25";
      default:
        Blanks(true);
        Text += "?x";
        FWord = true;
        return "x";
    }
  }

  TRandom& FRandom;
  bool FWord = false;  // what stands last in the text is a word that the next one would join
};

TEST(ReaderProperty, ReadsWhatAWriterOfItsOwnWrote) {
  TRandom random;
  SCOPED_TRACE(random.Trace());
  const TEncoding* const encodings[] = {nullptr, TEncoding::UTF16LittleEndian(),
                                        TEncoding::UTF16BigEndian()};
  TScene scene;
  for (int i = 0; i < 2000; ++i) {
    TWriter writer(random);
    writer.Definition();
    scene.Fuzzy.GetItems()->Clear();
    const TEncoding* encoding = encodings[random.Below(3)];
    ASSERT_EQ(Failure([&] { scene.Parser.ParseFuzzyLogic(writer.Text, encoding); }), "nothing")
        << writer.Text;
    ASSERT_EQ(Dump(scene.Fuzzy), writer.Model) << writer.Text;
  }
}

// Whatever a text holds, it is read, or refused as an error of the language with a line in the
// text; the parser stays fit for the next.
TEST(ReaderProperty, SurvivesAnyMutilatedText) {
  TRandom random;
  SCOPED_TRACE(random.Trace());
  static const char* const pieces[] = {"(",      ")",  "\"", ";", "\n", " tri ",
                                       "(term ", "\\", "5",  " ", "?",  "((0 1))"};
  TScene scene;
  for (int i = 0; i < 2000; ++i) {
    TWriter writer(random);
    writer.Definition();
    std::string text = writer.Text;
    for (int cuts = 1 + random.Below(3); cuts > 0; --cuts) {
      const auto at = static_cast<std::size_t>(random.Below(static_cast<int>(text.size()) + 1));
      if (random.OneIn(2))
        text.insert(at, pieces[random.Below(12)]);
      else
        text.erase(at, static_cast<std::size_t>(random.Below(8)));
    }
    scene.Fuzzy.GetItems()->Clear();
    try {
      scene.Parser.ParseFuzzyLogic(text, nullptr);
    } catch (const EFzyParseException& error) {
      EXPECT_GE(error.GetLineNumber(), 1) << text;
      EXPECT_LE(error.GetLineNumber(), 1 + static_cast<int>(text.size()));
    } catch (const EFzyException&) {
      // a number that a shape refuses
    }
    ASSERT_EQ(scene.Parser.GetStream(), nullptr);
    ASSERT_FALSE(scene.Fuzzy.GetItems()->IsUpdating());
  }
}

}  // namespace
}  // namespace fzy
