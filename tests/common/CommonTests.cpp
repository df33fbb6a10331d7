#include <algorithm>
#include <functional>
#include <limits>

#include <gtest/gtest.h>

#include "fuzzylogic/common/HelperFunctions.h"
#include "fuzzylogic/common/NamedCollection.h"
#include "fuzzylogic/common/PostFix.h"
#include "fuzzylogic/common/Spelling.h"
#include "fuzzylogic/common/StreamTokenList.h"
#include "fuzzylogic/common/StringStream.h"
#include "fuzzylogic/common/TextStream.h"
#include "tests/support/Random.h"
#include "tests/support/Refusal.h"

namespace fzy {
namespace {

// Letters are operands, "!" is a prefix operator, "^" groups from the right, "*", then "+" and "-"
// from the left.
struct TRules {
  bool IsOpenParen(char item) const { return item == '['; }
  bool IsCloseParen(char item) const { return item == ']'; }
  bool IsOperand(char item) const { return item >= 'a' && item <= 'z'; }
  int InStackPriority(char item) const {
    return item == '[' ? 100 : item == '!' ? 1 : item == '^' ? 3 : item == '*' ? 4 : 5;
  }
  int IncomingPriority(char item) const {
    return item == '[' || item == '!' ? 0 : item == '^' ? 2 : InStackPriority(item);
  }
};

std::string Convert(const std::string& infix) {
  const std::vector<char> output = PostFix(std::vector<char>(infix.begin(), infix.end()), TRules());
  return {output.begin(), output.end()};
}

TEST(PostFix, GivesThePostfixFormOfAnyExpression) {
  const std::pair<const char*, const char*> cases[] = {
      {"a", "a"},           {"a+b-c", "ab+c-"},   {"a-b+c*d", "ab-cd*+"},    {"a*b+c", "ab*c+"},
      {"a*b*c", "ab*c*"},   {"a^b^c", "abc^^"},   {"a*b^c*d", "abc^*d*"},    {"a^b*c+d", "ab^c*d+"},
      {"!!a", "a!!"},       {"!a^!b", "a!b!^"},   {"a*!b+c", "ab!*c+"},      {"![a+b]", "ab+!"},
      {"a-[b-c]", "abc--"}, {"[a^b]^c", "ab^c^"}, {"a*[b+[c]]*d", "abc+*d*"}};
  for (const auto& [infix, postfix] : cases) EXPECT_EQ(Convert(infix), postfix) << infix;
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
      ADD_FAILURE() << infix << " gives " << Convert(infix);
    } catch (const EUnmatchedBracket& error) {
      EXPECT_EQ(error.GetIndex(), index) << infix;
      EXPECT_EQ(error.GetMessage(), "Unmatched bracket");
    }
  }
}

const TEncoding* const Encodings[] = {nullptr, TEncoding::UTF16LittleEndian(),
                                      TEncoding::UTF16BigEndian()};
constexpr std::size_t Block = 0x10000;  // a multiple of what the reader takes at a time

TGTextStream Reader(const TString& text, const TEncoding* encoding = nullptr) {
  return {std::make_unique<TKelStringStream>(text, encoding), encoding};
}

TEST(TextStream, EndsOnceReadsOnWhatIsPutBackAndReplacesWhatIsCutOff) {
  const std::string cut = std::string(Block - 2, 'x') + "\xF0\x9F\x98";
  EXPECT_EQ(TGTextStream(std::make_unique<TMemoryStream>(cut), nullptr).GetLine(),
            TString(std::u16string(Block - 2, u'x') + u'\uFFFD'));

  TGTextStream reader = Reader(TString(std::u16string(u"\0b", 2)));
  char16_t ch = u'?';
  EXPECT_TRUE(reader.GetChar(ch)) << "a #0 in the text is not the end";
  EXPECT_EQ(reader.GetChar(), u'b');
  for (int i = 0; i < 2; ++i) EXPECT_TRUE(reader.IsEof() && !reader.GetChar(ch = u'?') && !ch);
  for (const char16_t back : {u'2', u'1'}) reader.PutBack(back);
  EXPECT_EQ(reader.GetLine(), "12");
}

// The marks cross every border of the blocks, in each encoding that has them.
TEST(TextStream, DropsOneByteOrderMarkAtTheStart) {
  for (const TEncoding* encoding : Encodings) {
    EXPECT_TRUE(Reader(u"\uFEFF", encoding).IsEof());
    for (const std::size_t count : {Block, Block + 1})
      EXPECT_EQ(Reader(TString(count, u'\uFEFF'), encoding).GetLine(),
                TString(count - 1, u'\uFEFF'));
  }
}

TEST(TextStream, ReadsLinesOfEveryKindOfEnd) {
  const std::string full(Block - 1, 'x');  // so that CR and LF come into two blocks
  const std::vector<std::string> cases[] = {{"a", "\n", "", "\r", "b", "\r\n", "", "\r\n", "c"},
                                            {"", "\n", "b", "\r"},
                                            {full, "\r\n", "y", "\r\n"}};
  for (const std::vector<std::string>& parts : cases) {
    std::string text;
    for (const std::string& part : parts) text += part;
    TGTextStream reader = Reader(text);
    for (std::size_t i = 0; i < parts.size(); i += 2)
      EXPECT_EQ(reader.IsEof() ? "end" : reader.GetLine(), parts[i]);
    EXPECT_TRUE(reader.IsEof() && reader.GetLine().empty());
  }
}

/// The number of changes by the whole table of it.
int PlainDistance(const std::u16string& a, const std::u16string& b) {
  std::vector<std::vector<int>> table(a.size() + 1, std::vector<int>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      int best = i == 0 ? static_cast<int>(j) : static_cast<int>(i);
      if (i > 0 && j > 0) {
        best = std::min({table[i - 1][j] + 1, table[i][j - 1] + 1,
                         table[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
        if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
          best = std::min(best, table[i - 2][j - 2] + 1);
      }
      table[i][j] = best;
    }
  }
  return table[a.size()][b.size()];
}

TEST(Spelling, CountsTheChangesUpToABound) {
  test::TRandom random;
  SCOPED_TRACE(random.Trace());
  const auto word = [&] {
    std::u16string text;
    for (int count = random.Below(8); count > 0; --count)
      text += static_cast<char16_t>(u'a' + random.Below(3));
    return text;
  };
  for (int i = 0; i < 20'000; ++i) {
    const std::u16string a = word(), b = word();
    const int distance = PlainDistance(a, b);
    for (const int most : {0, 1, 2, 3, 100, INT32_MAX - 1})
      ASSERT_EQ(EditDistance(a, b, most), std::min(distance, most + 1))
          << TString(a) << ' ' << TString(b);
  }
  EXPECT_EQ(EditDistance(u"\u00C4rger", u"\u00E4RGER", 0), 0);
}

TEST(Spelling, GuessesTheNameThatWasMeant) {
  const std::tuple<const char*, std::vector<const char*>, const char*> rows[] = {
      {"wram", {"cold", "warm", "wrap"}, "warm"},  // equally near: the first
      {"Warm", {"warp", "warm"}, "warm"},
      {"ct", {"cat", "CT"}, "CT"},
      {"ct", {"cat", "c", ""}, ""},
      {"tempratur", {"temperature"}, "temperature"},
      {"tempratr", {"temperature"}, ""},
      {"warm", {"warm", "warn"}, "warn"}};
  for (const auto& [word, names, expected] : rows) {
    TSpellingGuess guess(word);
    for (const char* name : names) guess.Consider(TString(name));
    EXPECT_EQ(guess.GetName(), expected) << word;
  }
}

TEST(InCircularRange, IsTheWalkFromAfterLowToHigh) {
  for (int code = 0; code < 216; ++code) {
    const int low = code % 6, item = code / 6 % 6, high = code / 36;
    int at = low;
    do at = (at + 1) % 6;
    while (at != item && at != high);
    EXPECT_EQ(InCircularRange(low, item, high), at == item) << low << ' ' << item << ' ' << high;
  }
}

TEST(FloatEquals, CountsBothBoundsInAndNoNumberOut) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(FloatEquals(-1, -1.5, 0.5) && FloatEquals(infinity, infinity, 1));
  EXPECT_FALSE(FloatEquals(1, 1.5, 0.4999) || FloatEquals(-infinity, infinity, 1));
  EXPECT_FALSE(FloatEquals(nan, nan, infinity) || FloatEquals(nan, 1, infinity));
}

class TNamed final : public TGCollectionItem {
 public:
  TNamed(TCollection* list, const char* name) : FName(name) { SetCollection(list); }
  TString ClassName() const override { return "TNamed"; }
  const TString& GetItemName() const override { return FName; }
  void Notification(TGCollectionItem* item, TOperation operation) override {
    EXPECT_TRUE(operation == opRemove && !item->GetCollection()) << "it has left";
    Log += FName + " hears of " + item->GetItemName() + ". ";
    if (const auto handler = Handler) handler(item);
  }

  static inline TString Log;
  std::function<void(TGCollectionItem*)> Handler;
  const TString FName;
};

class TNamedList final : public TGCollection {
 public:
  TString ClassName() const override { return "TNamedList"; }
  TCollectionItem* AddItem() override { return new TNamed(this, ""); }
};

TEST(NamedCollection, ItemsHearOfEachOthersEndOnceWhicheverGoesFirst) {
  for (const bool watchedFirst : {true, false}) {
    TNamedList list;
    TNamed* watched = new TNamed(&list, "watched");
    TNamed *watcher = new TNamed(&list, "watcher"), *third = new TNamed(&list, "third");
    new TNamed(&list, "watcher");
    EXPECT_EQ(list.IndexOf("watcher"), 1) << "the first";
    EXPECT_EQ(list.IndexOf("Watcher"), -1);
    for (TNamed* item : {watcher, third, watcher, watched}) watched->FreeNotification(item);
    watched->FreeNotification(nullptr);
    third->RemoveFreeNotification(watched);
    TNamed::Log = "";
    (watchedFirst ? watched : watcher)->Free();
    list.Clear();
    EXPECT_EQ(TNamed::Log,
              watchedFirst ? "watcher hears of watched. " : "watched hears of watcher. ");
  }
}

TEST(NamedCollection, ItemGoesWhateverItsWatchersDo) {
  TNamedList list;
  TNamed* watcher = nullptr;
  const std::function<void(TGCollectionItem*)> deeds[] = {
      [](TGCollectionItem*) { throw EException("watcher"); },
      [&](TGCollectionItem*) { list.Clear(); },
      [&](TGCollectionItem* going) { going->FreeNotification(watcher); }};
  for (const auto& deed : deeds) {
    auto* going = new TNamed(&list, "going");
    for (const char* name : {"first", "second"})
      going->FreeNotification(watcher = new TNamed(&list, name));
    watcher->Handler = deed;
    TNamed::Log = "";
    EXPECT_EQ(test::MessageOf([&] { going->Free(); }), &deed == deeds ? "watcher" : "");
    list.Clear();
    EXPECT_EQ(TNamed::Log.Find(u"second"), 0U);
    EXPECT_EQ(TNamed::Log.Find(u"second", 1), TString::npos) << TNamed::Log;
  }
}

using TTokenRef = Ref<IBaseStreamToken>;

TTokenRef Token(int kind, double number, const char* text) {
  TTokenRef token = TBaseStreamToken::Create();
  token->SetDataType(kind);
  token->SetNumber(number);
  token->SetText(text);
  return token;
}

int Count(const TTokenRef& token) {
  token->AddRef();
  return token->Release();
}

TEST(Token, ShowsItsNumberOrItsText) {
  const TTokenRef token = TBaseStreamToken::Create();
  for (const char* text : {"", " ", "  ", "x", " ", ""}) {
    token->SetText(text);
    EXPECT_EQ(token->Clone()->GetText(), text) << "whatever short texts share";
  }
  EXPECT_EQ(Token(btInteger, 12, "x")->ToString(), "12");
  EXPECT_EQ(Token(btFloat, 0.1, "x")->ToString(), "0.1");
  EXPECT_EQ(Token(btNone, 12, "\"x\"")->ToString(), "\"x\"");
}

TEST(Token, AnswersItsInterfacesAndNoOther) {
  TTokenRef token = TBaseStreamToken::Create();
  EXPECT_EQ(Query<IBaseStreamToken>(token.Get()), token);
  EXPECT_EQ(Query<IInterface>(token.Get()).Get(), token.Get());
  void* result = &token;
  EXPECT_EQ(token->QueryInterface(IBaseStreamTokenList::Id, &result), E_NoInterface);
  EXPECT_EQ(result, nullptr);
  EXPECT_FALSE(Query<IInterface>(nullptr));
  EXPECT_EQ(Count(token), 1) << "no answer keeps a reference";
}

TEST(Ref, SurvivesItsOwnAssignmentAndReleasesThatComeBack) {
  TTokenRef token = TBaseStreamToken::Create();
  token = TTokenRef(token.Get());
  TTokenRef moved = std::move(token);
  EXPECT_EQ(token, nullptr);  // NOLINT(bugprone-use-after-move): a moved reference is empty
  EXPECT_EQ(Count(moved), 1);

  // A token whose end assigns to the very reference that let it go.
  struct TReturning final : TBaseStreamTokenOf<IBaseStreamToken> {
    explicit TReturning(TTokenRef& home) : Home(home) {}
    ~TReturning() override { Home = Token(5, 0, "late"); }
    std::intptr_t GetTag() const override { return 0; }
    void SetTag(std::intptr_t) override {}
    TTokenRef Clone() const override { return nullptr; }
    TTokenRef& Home;
  };
  TTokenRef home;
  home = TTokenRef(new TReturning(home));
  home = moved;
  EXPECT_EQ(home->GetText(), "late");
  EXPECT_EQ(Count(moved), 1);
}

}  // namespace
}  // namespace fzy
