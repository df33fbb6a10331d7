#include <vector>

#include <gtest/gtest.h>

#include "fuzzylogic/vocabulary/FuzzyExceptions.h"
#include "tests/language/TokenDump.h"

namespace fzy {
namespace {

using test::Name;
using test::Tokenizer;
using test::Tokens;
using test::Visible;

struct TRow {
  TString Text;
  std::string Expected;
};

TString Units(std::u16string_view units) { return {units}; }

void Check(const std::vector<TRow>& rows) {
  for (const TRow& row : rows) EXPECT_EQ(Tokens(row.Text), row.Expected) << Visible(row.Text);
}

TEST(TokenStream, TellsCharactersApart) {
  Check({
      {"", "$"},
      {Units({u" \t\0\x1F\x20", 5}), "$"},
      {"(term hot ((0 1)))", "( a:term a:hot ( ( i:0 i:1 ) ) ) $"},
      {"()[]=&|~", "( ) [ ] = & | ~ $"},
      {"a(b)c[d]e&f|g~h\"i\"j;k", "a:a ( a:b ) a:c [ a:d ] a:e & a:f | a:g ~ a:h s:i a:j $@2"},
      // An equals sign is a token only where one starts; "<" starts a word, and ends one.
      {"a=b =b = <= a<b<=c << <", "a:a=b = a:b = a:<= a:a a:<b a:<=c a:< a:< a:< $"},
      {"a,b{c}'d'!#%/*>", "a:a,b{c}'d'!#%/*> $"},
      {"a\x7F"
       "b \u00A0 \u00E9\u20AC \U0001F600(",
       "a:a\x7F"
       "b a:\u00A0 a:\u00E9\u20AC a:\U0001F600 ( $"},
      {Units({u"a\0b", 3}), "a:a a:b $"},
      {Units({u"a\xD83D"
              u"b",
              3}),
       "a:a\uFFFD"
       "b $"},
  });
}

TEST(TokenStream, TakesEscapedCharactersLiterally) {
  Check({
      {R"-(a\ b\(c\)\"d\;e\<f\\g)-", R"-(a:a b(c)"d;e<f\g $)-"},
      {"a\\\nb c", "a:a\\nb@2 a:c $"},
      // The first character of a word is taken before anything can be escaped.
      {R"-(\a \(b)-", R"-(a:\a a:\ ( a:b $)-"},
      {R"-(\)-", R"-(a:\ $)-"},
      {R"-(a\)-", "a:a $"},
      {R"-(a\b)-", "a:ab $"},
      {R"-(\5 5\5 5\. ?\ )-", R"-(a:\5 i:55 f:5 v:  $)-"},
      {R"-("a\"b\\c\nd\"e")-", R"-(s:a"b\cnd"e $)-"},
      {"\"a\\\r\nb\" c", "s:a\\r\\nb@2 a:c $"},
  });
}

TEST(TokenStream, ReadsStrings) {
  Check({
      {R"("")", "s: $"},
      {R"("a""b")", "s:a s:b $"},
      {R"("(;a 5?" "5")", "s:(;a 5? s:5 $"},
      // A string carries the line on which it ends.
      {"\"a\nb\" c", "s:a\\nb@2 a:c $"},
      {"\"\r\n\n\r\" c", "s:\\r\\n\\n\\r@4 a:c $"},
  });
}

TEST(TokenStream, ReadsNumbers) {
  Check({
      {"0 7 007 -5 +5 -0", "i:0 i:7 i:7 i:-5 i:5 i:0 $"},
      {"2147483647 -2147483648 +2147483647", "i:2147483647 i:-2147483648 i:2147483647 $"},
      {"2147483648 -2147483649", "f:2147483648 f:-2147483649 $"},
      {"0.5 .5 5. -.5 +.5 -0.0", "f:0.5 f:0.5 f:5 f:-0.5 f:0.5 f:-0 $"},
      {"1e3 1E3 1e+3 1e-3 .5e1", "f:1000 f:1000 f:1000 f:0.001 f:5 $"},
      {"0.1 0.30000000000000004 1.7976931348623157e308",
       "f:0.1 f:0.30000000000000004 "
       "f:1.7976931348623157e+308 $"},
      {"5e-324 1e-400 -1e-400 0e999999999999", "f:5e-324 f:0 f:0 f:0 $"},
      {"1e309 -1e309 1e99999999999999999999", "a:1e309 a:-1e309 a:1e99999999999999999999 $"},
      {"1" + std::string(400, '0') + " 0." + std::string(400, '0') + "1",
       "a:1" + std::string(400, '0') + " f:0 $"},
      {"1" + std::string(400, '0') + "e-400", "f:1 $"},
      {"+ - . +- -+ ++5 +-5 --5 -+5", "a:+ a:- a:. a:+- a:-+ a:++5 a:+-5 a:--5 a:-+5 $"},
      {"1e 1e+ .e1 1.2.3 1,5 5x 0x10 1_0", "a:1e a:1e+ a:.e1 a:1.2.3 a:1,5 a:5x a:0x10 a:1_0 $"},
      {"inf -inf nan +nan e5 \u0665", "a:inf a:-inf a:nan a:+nan a:e5 a:\u0665 $"},
      {"1-2 1=2 5<6", "a:1-2 a:1=2 i:5 a:<6 $"},
  });
}

TEST(TokenStream, ReadsVariables) {
  Check({{"?speed ? ?5 ??a ?(b", "v:speed v: v:5 v:?a v: ( a:b $"}, {"a?b", "a:a?b $"}});
}

TEST(TokenStream, CountsLines) {
  Check({
      {"a\nb\r\nc\rd", "a:a a:b@2 a:c@3 a:d@4 $"},
      {"(\n(\r\n(\r(", "( (@2 (@3 (@4 $"},
      {"\n\na\n\n\r\n\r\rb \n ", "a:a@3 a:b@8 $@9"},
      {"a ;x\nb;y\r\nc;\rd;\n", "a:a a:b@2 a:c@3 a:d@4 $@5"},
      {"a ; last", "a:a $@2"},
      {"a\n", "a:a $@2"},
      {"a\r\n", "a:a $@2"},
  });
  TFuzzyLogicTokenStream stream = Tokenizer("a\nb");
  stream.SetLineNumber(41);
  EXPECT_EQ(Tokens(stream), "a:a@41 a:b@42 $");
}

TEST(TokenStream, KeepsWhatStandsBetweenTokens) {
  TFuzzyLogicTokenStream stream = Tokenizer(" a ;one\n\t;two\r\n(b;three\r\"c\nd\"\r\n)?e -\nf");
  std::string text;
  for (Ref<IFuzzyStreamToken> token;;) {
    token = stream.NextToken();
    if (token->GetDataType() == 0) break;
    text += '{' + token->GetWhitespace().Utf8() + '}' + Name(*token);
  }
  // The blank that ends a word is read with it.
  EXPECT_EQ(
      Visible(text),
      "{  }a:a{;one\\r\\n\t;two\\r\\n}({}a:b{;three\\r\\n}s:c\\nd{\\r\\n}){ }v:e{\\n}a:-{}a:f");
}

TEST(TokenStream, EndsForEver) {
  TFuzzyLogicTokenStream stream = Tokenizer("; nothing but\n ; comments");
  for (int i = 0; i < 3; ++i) {
    const Ref<IFuzzyStreamToken> end = stream.NextToken();
    EXPECT_EQ(Name(*end), "$");
    EXPECT_TRUE(stream.IsEof());
  }
  EXPECT_EQ(stream.Head(), "");
}

TEST(TokenStream, ReportsAStringWithoutEnd) {
  const std::pair<const char*, int> rows[] = {{"\"", 1},        {"(a\n \"b\nc\n)", 2},
                                              {"\"a\\\"", 1},   {"\"a\\", 1},
                                              {"\r\r\"a\n", 3}, {"\"a\"\n\"b", 2}};
  for (const auto& [text, line] : rows) {
    TFuzzyLogicTokenStream stream = Tokenizer(text);
    try {
      Tokens(stream);
      ADD_FAILURE() << text;
    } catch (const EFzyParseException& error) {
      EXPECT_EQ(error.GetMessage(), "Unbalanced string: the closing quote is missing");
      EXPECT_EQ(error.GetLineNumber(), line) << text;
    }
  }
}

TEST(TokenStream, FinishesTokensOfItsOwnTypesOnly) {
  TFuzzyLogicTokenStream stream = Tokenizer("");
  const std::tuple<int, const char*, const char*> rows[] = {
      {34, "5", "s:5"}, {13, "x", "a:CRLF"}, {-1, "", "$"},  {-1, "5", "i:5"},
      {-1, "?", "v:"},  {0, "-", "a:-"},     {0, "", "a:"},  {38, "&", "&"},
      {124, "|", "|"},  {126, "~", "~"},     {61, "=", "="}, {93, "]", "]"}};
  for (const auto& [type, text, expected] : rows)
    EXPECT_EQ(Name(*stream.FinishToken(type, text)), expected) << type;
  for (const int type : {-2, 1, 2, 33, 35, 59, 60, 92, 127, 0x128}) {
    try {
      stream.FinishToken(type, "x");
      ADD_FAILURE() << type;
    } catch (const EFzyParseException& error) {
      EXPECT_EQ(error.GetMessage(), "Invalid token kind: " + std::to_string(type));
    }
  }
}

TEST(TokenStream, BuffersAConstructWhole) {
  TFuzzyLogicTokenStream stream = Tokenizer("(term hot ((0 0) (50 1)))");
  EXPECT_EQ(stream.GetParenthesisLevel(), 0);
  EXPECT_EQ(Name(*stream.NextToken()), "(");
  EXPECT_TRUE(stream.IsEof());
  EXPECT_EQ(stream.GetParenthesisLevel(), 1);
  for (int i = 0; i < 13; ++i) stream.NextToken();
  EXPECT_EQ(stream.GetParenthesisLevel(), 0);
  EXPECT_EQ(Name(*stream.GetCurrentToken()), ")");
  EXPECT_EQ(Name(*stream.NextToken()), "$");

  TFuzzyLogicTokenStream words = Tokenizer("a b)(c");
  EXPECT_EQ(Name(*words.GetCurrentToken()), "a:a") << "read on demand";
  EXPECT_FALSE(words.IsEof());
  EXPECT_EQ(Name(*words.NextToken()), "a:b");
  EXPECT_FALSE(words.IsEof());
  EXPECT_EQ(Name(*words.NextToken()), ")");
  EXPECT_EQ(words.GetParenthesisLevel(), -1);
  EXPECT_EQ(Tokens(words), "( a:c $") << "balanced by the next construct";
}

TEST(TokenStream, EchoesWhatItHandsOut) {
  TFuzzyLogicTokenStream stream = Tokenizer("(deffuzzy a\n \"b\" ;c\n (range 0.50 ?x)) d e");
  const auto take = [&](int count) {
    Ref<IFuzzyStreamToken> token;
    while (count-- > 0) token = stream.NextToken();
    return token;
  };
  take(4);
  EXPECT_EQ(stream.ToString(), "( deffuzzy a \r\nb ");
  Ref<IFuzzyStreamToken> token = take(1);
  EXPECT_EQ(stream.ToString(), "( deffuzzy a \r\nb \r\n( ");
  // A line break before a token that is put back goes too, and does not come again: the token is
  // the current one by then.
  stream.PutBackToken(token);
  EXPECT_EQ(stream.ToString(), "( deffuzzy a \r\nb ");
  EXPECT_EQ(stream.GetCurrentToken(), token);
  EXPECT_EQ(stream.GetParenthesisLevel(), 1);
  take(5);
  EXPECT_EQ(stream.ToString(), "( deffuzzy a \r\nb ( range 0.5 x ) ");
  take(2);
  // The next construct writes over this one, and what reaches further stays to be seen.
  EXPECT_EQ(stream.ToString(), "d deffuzzy a \r\nb ( range 0.5 x ) ) ");
  token = take(1);
  EXPECT_EQ(stream.ToString(), "e deffuzzy a \r\nb ( range 0.5 x ) ) ");
  stream.PutBackToken(token);
  EXPECT_EQ(stream.ToString(), " ");
  take(2);
  EXPECT_EQ(stream.ToString(), "EOF ") << "a construct of its own";
  // Any token may be put back, also one that is longer than all that was written.
  stream.PutBackToken(stream.FinishToken(34, "a long string"));
  EXPECT_EQ(stream.ToString(), " ");
  EXPECT_EQ(Tokens(stream), "s:a long string@3 $");
}

TEST(TokenStream, LooksAheadAtTheHeadOfAConstruct) {
  const std::tuple<const char*, const char*, const char*> rows[] = {
      {"(deffuzzy a)", "deffuzzy", "( a:deffuzzy a:a ) $"},
      {" ;c\n(= a)", "=", "(@2 = a:a ) $"},
      {"(\"a\")", "", "( s:a ) $"},
      {"(5)", "", "( i:5 ) $"},
      {"((a))", "", "( ( a:a ) ) $"},
      {"(", "", "( $"},
      {"a b", "", "a:b $"},
      {"", "", "$"}};
  for (const auto& [text, head, rest] : rows) {
    TFuzzyLogicTokenStream stream = Tokenizer(text);
    EXPECT_EQ(stream.Head(), head) << text;
    EXPECT_EQ(stream.GetParenthesisLevel(), 0);
    EXPECT_EQ(Tokens(stream), rest) << text;
  }
}

TEST(TokenStream, MovesOnAndStartsAfresh) {
  TFuzzyLogicTokenStream stream = Tokenizer("(a (b c) d) e (f");
  stream.MoveToNextConstruct();
  EXPECT_EQ(Name(*stream.NextToken()), "(") << "outside any construct there is nothing to skip";
  stream.MoveToNextConstruct();
  EXPECT_EQ(Name(*stream.NextToken()), "a:e");
  stream.NextToken();
  stream.MoveToNextConstruct();
  EXPECT_EQ(Name(*stream.GetCurrentToken()), "$");

  TFuzzyLogicTokenStream cleared = Tokenizer("(a b)\nc;x\nd");
  cleared.NextToken();
  cleared.Clear();
  EXPECT_EQ(cleared.ToString(), "( ") << "rewound, not wiped";
  EXPECT_EQ(Name(*cleared.NextToken()), "a:c") << "the position in the text stays";
  cleared.DiscardUntilEOL();
  EXPECT_EQ(Tokens(cleared), "a:d@3 $");
}

TEST(TokenStream, ReadsLinesBetweenTokens) {
  TFuzzyLogicTokenStream stream = Tokenizer("a one two\r\nb\t \n");
  EXPECT_EQ(Name(*stream.BuildNextToken()), "a:a");
  EXPECT_EQ(stream.GetLine(), "one two");
  EXPECT_EQ(stream.GetChar(), u'b');
  EXPECT_TRUE(stream.SkipInLineSpaces());
  EXPECT_FALSE(stream.SkipInLineSpaces());
  const Ref<IFuzzyStreamToken> end = stream.BuildNextToken();
  EXPECT_EQ(Visible(end->GetWhitespace()), "one two\\r\\n\t \\n");
  EXPECT_EQ(end->GetLineNumber(), 3);
  TFuzzyLogicTokenStream text = Tokenizer("b\\\"c\"d");
  EXPECT_EQ(text.ReadString("a"), "ab\"c");
  EXPECT_EQ(text.GetChar(), u'd');
}

}  // namespace
}  // namespace fzy
