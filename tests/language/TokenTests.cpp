#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "fuzzylogic/common/StringStream.h"
#include "tests/language/Definitions.h"
#include "tests/support/Random.h"

namespace fzy {
namespace {

using test::Failure;
using test::TRandom;
using TTokenRef = Ref<IFuzzyStreamToken>;

std::string Visible(const TString& text) {
  std::string result;
  for (const char ch : text.Utf8())
    result += ch == '\r' ? "\\r" : ch == '\n' ? "\\n" : std::string(1, ch);
  return result;
}

TFuzzyLogicTokenStream Tokenizer(const TString& text, const TEncoding* encoding = nullptr) {
  return {std::make_unique<TKelStringStream>(text, encoding), encoding};
}

/// A token as "a:word", "s:string", "i:5", "f:0.5", "v:variable", "(", "$" for the end.
std::string Name(const IFuzzyStreamToken& token) {
  const int kind = token.GetDataType();
  const std::string text = token.GetText().Utf8();
  if (kind == 0) return text == "EOF" ? "$" : "?" + text;
  if (kind > 10) return text;
  const bool number = kind == 3 || kind == 4;
  return "?asifv?????"[kind] + (':' + text) +
         (number ? FormatShortest(token.GetNumber()).Utf8() : "");
}

/// Tokens up to the end with a blank between, "@n" behind one on another line than the one before.
std::string Tokens(TFuzzyLogicTokenStream& stream) {
  std::string text;
  for (int line = 1;;) {
    const TTokenRef token = stream.NextToken();
    text += Name(*token);
    if (token->GetLineNumber() != line) text += '@' + std::to_string(token->GetLineNumber());
    line = token->GetLineNumber();
    if (token->GetDataType() == 0) return Visible(text);
    text += ' ';
  }
}

TEST(TokenStream, TellsTokensApart) {
  const std::string zeros(400, '0');
  const std::pair<TString, std::string> rows[] = {
      {std::u16string_view(u" \t\0\x1F\x20", 5), "$"},
      {"a(b)c[d]e&f|g~h\"i\"j;k", "a:a ( a:b ) a:c [ a:d ] a:e & a:f | a:g ~ a:h s:i a:j $@2"},
      // An equals sign is a token only where one starts; "<" starts a word, and ends one.
      {"a=b =b = <= a<b<=c << <", "a:a=b = a:b = a:<= a:a a:<b a:<=c a:< a:< a:< $"},
      {"\x7F \u00A0 \u00E9\u20AC \U0001F600(", "a:\x7F a:\u00A0 a:\u00E9\u20AC a:\U0001F600 ( $"},
      {std::u16string_view(u"a\0a\xD83D", 4), "a:a a:a\uFFFD $"},
      // Escaped characters; the first of a word is taken before anything can be escaped.
      {R"-(a\ b\(c\)\"d\;e\<f\\g \a \(b)-", R"-(a:a b(c)"d;e<f\g a:\a a:\ ( a:b $)-"},
      {R"-(\5 5\5 5\. ?\ a\)-", R"-(a:\5 i:55 f:5 v: a $)-"},
      // Strings; one carries the line on which it ends.
      {R"-("a\"b\\c\nd\"e""")-", R"-(s:a"b\cnd"e s: $)-"},
      {"\"a\\\r\nb\" \"\n\r\" c", "s:a\\r\\nb@2 s:\\n\\r@4 a:c $"},
      {R"("a""b(;a 5?" "5")", "s:a s:b(;a 5? s:5 $"},
      {"0 007 -5 +5 -0 2147483647 -2147483648",
       "i:0 i:7 i:-5 i:5 i:0 i:2147483647 i:-2147483648 $"},
      {"2147483648 .5 5. -.5 +.5 -0.0", "f:2147483648 f:0.5 f:5 f:-0.5 f:0.5 f:-0 $"},
      {"1E3 1e+3 1e-3 .5e1 5e-324 -1e-400", "f:1000 f:1000 f:0.001 f:5 f:5e-324 f:0 $"},
      {"0e999999999999 1e309 -1e309 1e99999999999", "f:0 a:1e309 a:-1e309 a:1e99999999999 $"},
      {"1" + zeros + " 0." + zeros + "1", "a:1" + zeros + " f:0 $"},
      {"+ - . +- -+ ++5 +-5 --5 -+5", "a:+ a:- a:. a:+- a:-+ a:++5 a:+-5 a:--5 a:-+5 $"},
      {"1e 1e+ .e1 1.2.3 1,5 5x 0x10 1_0", "a:1e a:1e+ a:.e1 a:1.2.3 a:1,5 a:5x a:0x10 a:1_0 $"},
      {"inf -inf nan +nan e5 \u0665", "a:inf a:-inf a:nan a:+nan a:e5 a:\u0665 $"},
      {"?speed ? ?5 ??a a?b ?(b", "v:speed v: v:5 v:?a a:a?b v: ( a:b $"},
      {"\n(\r\n\r(\r(\n ", "(@2 (@4 (@5 $@6"},
      {"a ;x\nb;y\r\nc;\rd;\n", "a:a a:b@2 a:c@3 a:d@4 $@5"},
      {"a ; last", "a:a $@2"}};
  for (const auto& [text, expected] : rows) {
    TFuzzyLogicTokenStream stream = Tokenizer(text);
    EXPECT_EQ(Tokens(stream), expected) << Visible(text);
  }
}

TEST(TokenStream, ReportsWhatIsNoToken) {
  for (const char* text : {"\r\"", "(a\n \"b\nc\n)", "\n\"a\\\"", "\n\"a\\"}) {
    TFuzzyLogicTokenStream stream = Tokenizer(text);
    EXPECT_EQ(Failure([&] { Tokens(stream); }),
              "line 2: Unbalanced string: the closing quote is missing");
  }
  TFuzzyLogicTokenStream stream = Tokenizer("");
  for (const auto& [type, text, expected] : {std::tuple(34, "5", "s:5"),
                                             {13, "x", "a:CRLF"},
                                             {-1, "5", "i:5"},
                                             {0, "", "a:"},
                                             {38, "&", "&"}})
    EXPECT_EQ(Name(*stream.FinishToken(type, text)), expected) << type;
  for (const int type : {-2, 1, 33, 59, 127, 0x128})
    EXPECT_EQ(Failure([&] { stream.FinishToken(type, "x"); }),
              "line 1: Invalid token kind: " + std::to_string(type));
}

TEST(TokenStream, BuffersAConstructWhole) {
  TFuzzyLogicTokenStream stream = Tokenizer("(term hot ((0 0)))");
  EXPECT_EQ(Name(*stream.NextToken()), "(");
  EXPECT_TRUE(stream.IsEof());
  EXPECT_EQ(stream.GetParenthesisLevel(), 1);
  EXPECT_EQ(Tokens(stream), "a:term a:hot ( ( i:0 i:0 ) ) ) $");
  EXPECT_EQ(Name(*stream.NextToken()), "$") << "for ever";

  TFuzzyLogicTokenStream words = Tokenizer("a b)(c");
  EXPECT_EQ(Name(*words.GetCurrentToken()), "a:a") << "read on demand";
  words.NextToken();
  EXPECT_FALSE(words.IsEof());
  EXPECT_EQ(Name(*words.NextToken()), ")");
  EXPECT_EQ(words.GetParenthesisLevel(), -1);
  EXPECT_EQ(Tokens(words), "( a:c $") << "balanced by the next construct";

  TFuzzyLogicTokenStream prepared = Tokenizer("(a) (b)");
  EXPECT_TRUE(prepared.PrepareSExp() && prepared.PrepareSExp());
  EXPECT_EQ(Tokens(prepared), "( a:b ) ( a:a ) $") << "the one read last comes first";
}

TEST(TokenStream, EchoesWhatItHandsOut) {
  TFuzzyLogicTokenStream stream = Tokenizer("(deffuzzy a\n \"b\" ;c\n (range 0.50 ?x)) d e");
  const auto take = [&](int count) {
    TTokenRef token;
    while (count-- > 0) token = stream.NextToken();
    return token;
  };
  take(4);
  EXPECT_EQ(stream.ToString(), "( deffuzzy a \r\nb ");
  TTokenRef token = take(1);
  EXPECT_EQ(stream.ToString(), "( deffuzzy a \r\nb \r\n( ");
  // A line break before a token that is put back goes too, and does not come again: the token is
  // the current one by then.
  stream.PutBackToken(token);
  EXPECT_EQ(stream.ToString(), "( deffuzzy a \r\nb ");
  EXPECT_EQ(stream.GetParenthesisLevel(), 1);
  take(5);
  EXPECT_EQ(stream.ToString(), "( deffuzzy a \r\nb ( range 0.5 x ) ");
  take(2);
  // The next construct writes over this one, and what reaches further stays to be seen.
  EXPECT_EQ(stream.ToString(), "d deffuzzy a \r\nb ( range 0.5 x ) ) ");
  stream.PutBackToken(take(1));
  EXPECT_EQ(stream.ToString(), " ");
  take(2);
  EXPECT_EQ(stream.ToString(), "EOF ") << "a construct of its own";
  // Any token may be put back, also one that is longer than all that was written.
  stream.PutBackToken(stream.FinishToken(34, "a long string"));
  EXPECT_EQ(stream.ToString(), " ");
  EXPECT_EQ(Tokens(stream), "s:a long string@3 $");
}

TEST(TokenStream, LooksAheadAtTheHeadOfAConstruct) {
  for (const auto& [text, head] : {std::pair("(deffuzzy a)", "deffuzzy"),
                                   {" ;c\n(= a)", "="},
                                   {"(\"a\")", ""},
                                   {"(", ""},
                                   {"", ""}}) {
    TFuzzyLogicTokenStream stream = Tokenizer(text), other = Tokenizer(text);
    EXPECT_EQ(stream.Head(), head) << text;
    EXPECT_EQ(stream.GetParenthesisLevel(), 0);
    EXPECT_EQ(Tokens(stream), Tokens(other)) << "nothing is taken";
  }
}

TEST(TokenStream, MovesOnAndStartsAfresh) {
  TFuzzyLogicTokenStream stream = Tokenizer("(a (b c) d) (e)\nc;x\nd");
  stream.MoveToNextConstruct();
  EXPECT_EQ(Name(*stream.NextToken()), "(") << "outside any construct there is nothing to skip";
  stream.MoveToNextConstruct();
  stream.NextToken();
  stream.Clear();
  EXPECT_EQ(stream.ToString().Slice(0, 2), "( ") << "rewound, not wiped";
  EXPECT_EQ(Name(*stream.NextToken()), "a:c") << "the position in the text stays";
  stream.DiscardUntilEOL();
  stream.SetLineNumber(41);
  EXPECT_EQ(Tokens(stream), "a:d@41 $");
}

TEST(TokenStream, ReadsLinesBetweenTokens) {
  TFuzzyLogicTokenStream stream = Tokenizer("a one two\r\nb\t \n");
  EXPECT_EQ(Name(*stream.BuildNextToken()), "a:a");
  EXPECT_EQ(stream.GetLine(), "one two");
  EXPECT_EQ(stream.GetChar(), u'b');
  EXPECT_TRUE(stream.SkipInLineSpaces());
  EXPECT_FALSE(stream.SkipInLineSpaces());
  const TTokenRef end = stream.BuildNextToken();
  EXPECT_EQ(Visible(end->GetWhitespace()), "one two\\r\\n\t \\n");
  EXPECT_EQ(end->GetLineNumber(), 3);
  EXPECT_EQ(Tokenizer("b\\\"c\"d").ReadString("a"), "ab\"c");
}

std::string Place(const IFuzzyStreamToken& token) {
  return std::to_string(token.GetLineNumber()) + ':' + std::to_string(token.GetColumn());
}

TEST(TokenStream, CountsColumnsInUnits) {
  const std::pair<TString, std::string> rows[] = {
      {u"\uFEFF a\tbc(d", "1:2 1:4 1:6 1:7 1:8"},
      {u"\U0001F600 \u00E9x \"\U0001F600\"y", "1:1 1:4 1:7 1:11 1:12"},
      {"a\rb\n\r\nc;d\r\n  e", "1:1 2:1 4:1 5:3 5:4"},
      // What reaches into another line stands at the beginning of that.
      {"x \"a\n\r\nb\" c\r \"\r\"\"\"", "1:1 3:1 3:4 5:1 5:2 5:4"},
      {"ab\\\nc d\\ e\n", "2:1 2:3 3:1"}};
  for (const auto& [text, expected] : rows) {
    for (const bool raw : {false, true}) {
      TFuzzyLogicTokenStream stream = Tokenizer(text);
      std::string places;
      for (TTokenRef token; !token || token->GetDataType() != 0;) {
        token = raw ? stream.BuildNextToken() : stream.NextToken();
        places += (places.empty() ? "" : " ") + Place(*token);
      }
      EXPECT_EQ(places, expected) << Visible(text);
    }
  }
  TFuzzyLogicTokenStream wide = Tokenizer(TString((1 << 24) + 5, u' ') + u"a\nb");
  EXPECT_EQ(Place(*wide.NextToken()), "1:16777215");
  EXPECT_EQ(Place(*wide.NextToken()), "2:1");
  TFuzzyLogicTokenStream open = Tokenizer("(\n \"a\n(");
  EXPECT_NE(Failure([&] { open.NextToken(); }), "nothing");
  EXPECT_EQ(open.GetUnbalancedString().Line, 2);
  EXPECT_EQ(open.GetUnbalancedString().Column, 2);
}

/// Whether a token that begins in its line begins with what stands there; in a text without
/// escapes.
bool StandsAtItsPlace(const IFuzzyStreamToken& token, const std::vector<std::u16string>& lines) {
  const auto line = static_cast<std::size_t>(token.GetLineNumber()) - 1;
  const auto column = static_cast<std::size_t>(token.GetColumn()) - 1;
  // A comment ends its line, even the last.
  if (line == lines.size() && token.GetDataType() == KindOf(fstNone)) return column == 0;
  if (line >= lines.size() || column > lines[line].size()) return false;
  const char16_t there = column < lines[line].size() ? lines[line][column] : u'\0';
  switch (token.GetDataType()) {
    case KindOf(fstNone):
      return line + 1 == lines.size() && there == u'\0';
    case KindOf(fstString):
      return there == u'"' || column == 0;  // it may have begun in another line
    case KindOf(fstInteger):
    case KindOf(fstFloat):
      return std::u16string_view(u"0123456789+-.").find(there) != TString::npos;
    case KindOf(fstVariable):
      return there == u'?';
    default:
      return there == token.GetText()[0];
  }
}

/// A text of few characters, those that mean something and a few that need more than one byte.
std::u16string RandomText(TRandom& random) {
  static constexpr std::u16string_view characters =
      u"((()))[]=&|~<\"\";;\\\\ab?1234509+-.e    \n\n\r\r\t\u00E9\u20AC";
  const int kinds = static_cast<int>(characters.size());
  std::u16string text;
  for (int count = random.Below(60); count > 0; --count) {
    if (random.OneIn(50)) text += u"\U0001F600";
    text += characters[static_cast<std::size_t>(random.Below(kinds))];
  }
  return text;
}

/// The tokens of a stream with their places and white space, by its raw scanner or by constructs.
/// By constructs, some are put back on the way, several at once, and read again.
std::string Read(TFuzzyLogicTokenStream& stream, bool raw, TRandom* putBack) {
  std::string dump;
  std::vector<TTokenRef> taken;
  try {
    do {
      taken.push_back(raw ? stream.BuildNextToken() : stream.NextToken());
      int count = putBack && putBack->OneIn(4) ? putBack->Below(8) : 0;
      for (; count > 0 && !taken.empty(); --count) {
        stream.PutBackToken(taken.back());
        taken.pop_back();
      }
    } while (taken.empty() || taken.back()->GetDataType() != 0);
  } catch (const EFzyParseException& error) {
    dump = "!@" + std::to_string(error.GetLineNumber());
  }
  std::string tokens;
  for (const TTokenRef& token : taken)
    tokens += Name(*token) + '@' + Place(*token) + '{' + Visible(token->GetWhitespace()) + '}';
  return tokens + dump;
}

TEST(TokenStream, ReadsTheSameInEveryWay) {
  TRandom random;
  SCOPED_TRACE(random.Trace());
  const TEncoding* const encodings[] = {nullptr, TEncoding::UTF16LittleEndian(),
                                        TEncoding::UTF16BigEndian()};
  for (int i = 0; i < 20'000; ++i) {
    std::u16string text = RandomText(random);
    // Now and then across the border of two blocks of the text stream, of 4096 bytes each.
    const std::size_t block = i % 3 == 0 ? 4096 : 2048;
    if (i % 20 == 0) text.insert(0, block - static_cast<std::size_t>(random.Below(40)), u' ');
    const TString shown = Visible(text);
    TFuzzyLogicTokenStream whole = Tokenizer(text);
    const std::string expected = Read(whole, true, nullptr);
    const auto read = [&](bool raw, TRandom* putBack) {
      TFuzzyLogicTokenStream stream = Tokenizer(text, encodings[i % 3]);
      return Read(stream, raw, putBack);
    };
    ASSERT_EQ(read(true, nullptr), expected) << shown;
    if (text.find(u'\\') == std::u16string::npos) {
      std::vector<std::u16string> lines(1);
      for (std::size_t at = 0; at < text.size(); ++at) {
        const bool pair = text[at] == u'\r' && text.substr(at + 1, 1) == u"\n";
        if (text[at] != u'\n' && text[at] != u'\r')
          lines.back() += text[at];
        else if (!pair)
          lines.emplace_back();
      }
      TFuzzyLogicTokenStream placed = Tokenizer(text);
      Failure([&] {
        for (TTokenRef token; !token || token->GetDataType() != 0;) {
          token = placed.BuildNextToken();
          ASSERT_TRUE(StandsAtItsPlace(*token, lines)) << Name(*token) << Place(*token) << shown;
        }
      });
    }
    // The tokens of a construct that is not read to its end do not come out.
    if (expected.find('!') != std::string::npos) continue;
    ASSERT_EQ(read(false, nullptr), expected) << shown;
    ASSERT_EQ(read(false, &random), expected) << "put back and read again: " << shown;
  }
}

using TOwnToken = Ref<TFuzzyStreamToken>;

TOwnToken Token(TFuzzyStreamTokenType kind, const TString& text, double number = 0) {
  TOwnToken token = TFuzzyStreamToken::Create();
  token->SetDataType(static_cast<int>(kind));
  token->SetText(text);
  token->SetNumber(number);
  return token;
}

TOwnToken Group(std::initializer_list<TOwnToken> tokens) {
  const Ref<TFuzzyStreamTokenList> list = TFuzzyStreamTokenList::Create();
  for (const TOwnToken& token : tokens) list->Add(token);
  TOwnToken group = TFuzzyStreamToken::Create();
  group->SetList(list);
  return group;
}

/// What the getters find in a token, as "kind: interface list set object fuzzyset", and its text.
std::string Content(const TOwnToken& token) {
  std::string text = std::to_string(token->GetDataType()) + ':';
  if (token->GetIntfValue()) text += " interface";
  if (token->GetList()) text += " list";
  if (token->GetFuzzySetIntf()) text += " set";
  if (token->GetObjValue()) text += " object";
  if (token->GetFuzzySet()) text += " fuzzyset";
  return text + " \"" + token->ToString().Utf8() + '"';
}

TEST(FuzzyStreamToken, HoldsOnePayloadOfEachKindOfField) {
  const auto list = Group({Token(fstAtom, "warm"), Token(fstInteger, "", 20)})->GetList();
  const TOwned<TFuzzySet> set(TFuzzySet::Create());
  set->SetExpression("very warm");
  const TOwnToken token = Token(fstNone, "left");
  token->SetIntfValue(list);
  EXPECT_EQ(Content(token), "6: interface list \"<interface>\"");
  token->SetList(list);
  EXPECT_EQ(Content(token), "7: interface list \"warm 20\"");
  token->SetFuzzySet(set.Get());
  EXPECT_EQ(Content(token), "10: interface list object fuzzyset \"very warm\"");
  token->SetObjValue(set.Get());
  EXPECT_EQ(Content(token), "9: interface list object fuzzyset \"<object>\"");
  // Nothing clears the kind, and only the field that it was given for.
  token->SetFuzzySetIntf(nullptr);
  EXPECT_EQ(Content(token), "0: object fuzzyset \"left\"");
  token->SetList(list);
  token->SetObjValue(nullptr);
  EXPECT_EQ(Content(token), "0: interface list \"left\"");
  token->SetList(nullptr);
  EXPECT_EQ(list->AddRef(), 2) << "given back";
  list->Release();
  // The kind alone promises nothing.
  for (const TFuzzyStreamTokenType kind : {fstList, fstIFuzzySet, fstFuzzySet}) {
    token->SetDataType(static_cast<int>(kind));
    EXPECT_EQ(token->ToString(), "");
  }
}

TEST(FuzzyStreamToken, CopiesAllAndComparesWhatItMeans) {
  const TOwned<TFuzzySet> set(TFuzzySet::Create());
  const TOwnToken token = Token(fstAtom, "warm", 0.1);
  token->SetLineNumber(12);
  token->SetColumn(7);
  token->SetWhitespace(" ; note\n");
  token->SetTag(-3);
  token->SetFuzzySet(set.Get());
  const Ref<IFuzzyStreamToken> copy = Query<IFuzzyStreamToken>(token->Clone().Get());
  copy->Assign(*copy);
  EXPECT_TRUE(copy->GetLineNumber() == 12 && copy->GetColumn() == 7 && copy->GetTag() == -3);
  EXPECT_EQ(copy->GetObjValue(), set.Get());
  EXPECT_EQ(copy->GetWhitespace(), " ; note\n");
  token->SetLineNumber(0);
  token->SetWhitespace("");
  EXPECT_TRUE(copy->Equals(*token));
  copy->SetObjValue(nullptr);
  copy->SetDataType(token->GetDataType());
  EXPECT_FALSE(copy->Equals(*token)) << "the payload differs";
  const TOwnToken a = Token(fstAtom, "a", 0.1);
  for (const TOwnToken& other :
       {Token(fstString, "a", 0.1), Token(fstAtom, "a"), Token(fstAtom, "A", 0.1)})
    EXPECT_FALSE(a->Equals(*other));
}

TEST(FuzzyStreamTokenList, HandsOutItsTokensByBothInterfaces) {
  const Ref<TFuzzyStreamTokenList> list = TFuzzyStreamTokenList::Create();
  const TOwnToken a = Token(fstAtom, "a"), b = Token(fstString, "b c"),
                  c = Token(fstFloat, "", 0.5);
  EXPECT_THROW(list->First(), EListError);
  EXPECT_THROW(list->LastBaseStreamToken(), EListError);
  EXPECT_EQ(list->Add(b), 0);
  list->Insert(0, a);
  list->Insert(2, Group({c, Group({}), Group({a})}));
  EXPECT_EQ(list->ToString(), "a b c 0.5  a");
  EXPECT_EQ(list->First(), Ref<IFuzzyStreamToken>(a));
  EXPECT_EQ(list->LastBaseStreamToken()->ToString(), "0.5  a");
  EXPECT_EQ(list->GetBaseStreamToken(1), Ref<IBaseStreamToken>(b));

  const Ref<IFuzzyStreamTokenList> copy = list->Clone();
  EXPECT_TRUE(list->Equals(copy));
  copy->Append(copy);
  copy->Append(nullptr);
  EXPECT_EQ(copy->IndexOf(c), -1) << "not in a nested list";
  EXPECT_EQ(copy->Remove(b), 1);
  EXPECT_EQ(copy->Remove(b), 3);
  EXPECT_FALSE(list->Equals(copy) || list->Equals(nullptr));
  copy->Clear();
  copy->Append(list);
  copy->Put(0, Token(fstAtom, "a"));
  EXPECT_TRUE(list->Equals(copy)) << "equal, not the same";
  copy->PutBaseStreamToken(0, b);
  EXPECT_THROW(copy->PutBaseStreamToken(0, TBaseStreamToken::Create()), EConvertError);
  EXPECT_FALSE(list->Equals(copy)) << "as long, but of other tokens";
  copy->Delete(2);
  EXPECT_EQ(copy->ToString(), "b c b c");
  for (const int index : {-1, 2}) {
    EXPECT_THROW(copy->Get(index), EListError);
    EXPECT_THROW(copy->Put(index, a), EListError);
    EXPECT_THROW(copy->Delete(index), EListError);
    EXPECT_THROW(copy->Insert(index < 0 ? -1 : 3, a), EListError);
  }
}

}  // namespace
}  // namespace fzy
