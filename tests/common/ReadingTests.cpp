#include <gtest/gtest.h>

#include "fuzzylogic/common/PostFix.h"
#include "fuzzylogic/common/StringStream.h"
#include "fuzzylogic/common/TextStream.h"
#include "tests/support/Random.h"

namespace fzy {
namespace {

// Letters are operands, "!" is a prefix operator, "^" groups from the right, "*" and "/", then "+"
// and "-" from the left.
struct TRules {
  bool IsOpenParen(char item) const { return item == '['; }
  bool IsCloseParen(char item) const { return item == ']'; }
  bool IsOperand(char item) const { return item >= 'a' && item <= 'z'; }
  int InStackPriority(char item) const {
    constexpr std::string_view signs = "!.^*+.../-";
    return item == '[' ? 100 : static_cast<int>(signs.find(item)) % 5 + 1;
  }
  int IncomingPriority(char item) const {
    return item == '[' || item == '!' ? 0 : item == '^' ? 2 : InStackPriority(item);
  }
};

std::string Convert(const std::string& infix) {
  const std::vector<char> output = PostFix(std::vector<char>(infix.begin(), infix.end()), TRules());
  return {output.begin(), output.end()};
}

/// A random expression, written as infix with the brackets that it needs and some that it does not,
/// and as postfix, both by plain recursion.
struct TExpression {
  std::string Infix;
  std::string Postfix;
  int Level;  // 0 for what needs no brackets, else that of the operator: a higher one binds looser
};

TExpression Make(test::TRandom& random, int depth) {
  const auto enclosed = [&](TExpression e, int loosest) {
    if (e.Level > loosest || random.OneIn(8)) e.Infix = '[' + e.Infix + ']';
    return e;
  };
  const int kind = depth == 0 ? 0 : random.Below(8);
  if (kind < 2) {
    const std::string operand(1, static_cast<char>('a' + random.Below(26)));
    return {operand, operand, 0};
  }
  TExpression left = Make(random, depth - 1);
  if (kind == 2) return {'!' + enclosed(left, 1).Infix, left.Postfix + '!', 1};
  const TExpression right = Make(random, depth - 1);
  const char sign = "^*/+-"[random.Below(5)];
  const int level = sign == '^' ? 2 : sign == '*' || sign == '/' ? 3 : 4;
  const std::string before = enclosed(left, sign == '^' ? level - 1 : level).Infix;
  const std::string after = enclosed(right, sign == '^' ? level : level - 1).Infix;
  return {before + sign + after, left.Postfix + right.Postfix + sign, level};
}

TEST(PostFix, GivesThePostfixFormOfAnyExpression) {
  test::TRandom random;
  SCOPED_TRACE(random.Trace());
  for (int i = 0; i < 3000; ++i) {
    const TExpression e = Make(random, random.Below(8));
    ASSERT_EQ(Convert(e.Infix), e.Postfix) << e.Infix;
  }
  EXPECT_EQ(Convert(""), "");
  constexpr std::size_t deep = 1'000'000;
  EXPECT_EQ(Convert(std::string(deep, '[') + "a" + std::string(deep, ']')), "a");
  EXPECT_TRUE(Convert(std::string(deep, '!') + "a") == "a" + std::string(deep, '!'));
}

TEST(PostFix, NamesTheBracketWithoutAPartner) {
  const std::pair<const char*, std::size_t> cases[] = {
      {"]", 0}, {"[", 0}, {"a+b]*c", 3}, {"[a]]", 3}, {"[[a]", 0}, {"a*[b+[c", 5}, {"][", 0}};
  for (const auto& [infix, index] : cases) {
    try {
      Convert(infix);
      ADD_FAILURE() << infix;
    } catch (const EUnmatchedBracket& error) {
      EXPECT_EQ(error.GetIndex(), index) << infix;
      EXPECT_EQ(error.GetMessage(), "Unmatched bracket");
    }
  }
}

const TEncoding* const Encodings[] = {nullptr, TEncoding::UTF16LittleEndian(),
                                      TEncoding::UTF16BigEndian(), TEncoding::ASCII()};
constexpr std::size_t Block = 0x10000;  // a multiple of what the reader takes at a time

TGTextStream Reader(const TString& text, const TEncoding* encoding = nullptr) {
  return {std::make_unique<TKelStringStream>(text, encoding), encoding};
}

// The text begins with 0 to 3 letters, so that each byte of a character comes to lie on each side
// of a block's border, and is cut to end before, at and after a border.
TEST(TextStream, ReadsEveryEncodingAcrossTheBordersOfItsBlocks) {
  for (const TEncoding* encoding : Encodings) {
    const bool bytes = encoding == TEncoding::ASCII();
    for (std::size_t shift = 0; shift < 4; ++shift) {
      std::u16string text(shift, u'x');
      while (text.size() < Block + 9) text += bytes ? u"ab" : u"\u20AC\u00E9\U0001F600";
      for (const std::size_t size : {text.size(), Block, Block - 1, Block / 2}) {
        text.resize(size);
        TGTextStream reader = Reader(text, encoding);
        std::u16string read;
        for (char16_t ch = 0; !reader.IsEof() && reader.GetChar(ch);) {
          if (read.size() % 999 == 0) {
            reader.PutBack(ch);
            EXPECT_FALSE(reader.IsEof());
            EXPECT_EQ(reader.GetChar(), ch);
          }
          read += ch;
        }
        // UTF-8 has no form for the half of a pair that may be left at the end.
        const TString expected = encoding ? TString(text) : TString(TString(text).Utf8());
        EXPECT_TRUE(read == expected) << "shift " << shift << ", size " << size;
      }
    }
  }
}

TEST(TextStream, EndsOnceReadsOnWhatIsPutBackAndReplacesWhatIsCutOff) {
  const std::string cut = std::string(Block - 2, 'x') + "\xF0\x9F\x98";
  EXPECT_EQ(TGTextStream(std::make_unique<TMemoryStream>(cut), nullptr).GetLine(),
            TString(std::u16string(Block - 2, u'x') + u'\uFFFD'));

  TGTextStream reader = Reader(TString(std::u16string(u"\0b", 2)));
  char16_t ch = u'?';
  EXPECT_TRUE(reader.GetChar(ch)) << "a #0 in the text is not the end";
  EXPECT_EQ(reader.GetChar(), u'b');
  for (int i = 0; i < 2; ++i) {
    EXPECT_TRUE(reader.IsEof());
    EXPECT_FALSE(reader.GetChar(ch = u'?'));
    EXPECT_EQ(ch, u'\0');
  }
  for (const char16_t back : {u'2', u'1'}) reader.PutBack(back);
  EXPECT_FALSE(reader.IsEof());
  EXPECT_EQ(reader.GetLine(), "12");
  EXPECT_TRUE(reader.IsEof());
}

TEST(TextStream, DropsOneByteOrderMarkAtTheStart) {
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(Reader(u"\uFEFF\uFEFFa\uFEFF", Encodings[i]).GetLine(), TString(u"\uFEFFa\uFEFF"));
    EXPECT_TRUE(Reader(u"\uFEFF", Encodings[i]).IsEof());
    const TString marks(Block, u'\uFEFF');
    EXPECT_EQ(Reader(marks, Encodings[i]).GetLine().size(), Block - 1) << "blocks begin with marks";
  }
}

TEST(TextStream, ReadsLinesOfEveryKindOfEnd) {
  const std::string full(Block - 1, 'x');  // so that CR and LF come into two blocks
  const std::vector<std::string> cases[] = {{"a", "\n", "b", "\r", "c", "\r\n", "d"},
                                            {"", "\r", "", "\r\n", "", "\n", "", "\n"},
                                            {"a", "\n", "", "\r", "b", "\r"},
                                            {full, "\r\n", "y", "\r\n"}};
  for (const std::vector<std::string>& parts : cases) {
    std::string text;
    for (const std::string& part : parts) text += part;
    TGTextStream reader = Reader(text);
    for (std::size_t i = 0; i < parts.size(); i += 2) {
      EXPECT_FALSE(reader.IsEof());
      EXPECT_EQ(reader.GetLine(), parts[i]);
    }
    EXPECT_TRUE(reader.IsEof());
    EXPECT_EQ(reader.GetLine(), "");
  }
}

}  // namespace
}  // namespace fzy
