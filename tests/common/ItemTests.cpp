#include <functional>
#include <limits>

#include <gtest/gtest.h>

#include "fuzzylogic/common/HelperFunctions.h"
#include "fuzzylogic/common/NamedCollection.h"
#include "fuzzylogic/common/StreamTokenList.h"
#include "fuzzylogic/framework/Exception.h"

namespace fzy {
namespace {

TEST(InCircularRange, IsTheWalkFromAfterLowToHigh) {
  constexpr int ring = 6;
  for (int low = 0; low < ring; ++low) {
    for (int high = 0; high < ring; ++high) {
      bool reached[ring] = {};
      int at = low;
      do reached[at = (at + 1) % ring] = true;
      while (at != high);
      for (int item = 0; item < ring; ++item)
        EXPECT_EQ(InCircularRange(low, item, high), reached[item])
            << low << ' ' << item << ' ' << high;
    }
  }
}

TEST(FloatEquals, CountsBothBoundsInAndNoNumberOut) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  for (const double sign : {1.0, -1.0}) {
    EXPECT_TRUE(FloatEquals(sign, sign * 1.5, 0.5));
    EXPECT_FALSE(FloatEquals(sign, sign * 1.5, 0.4999));
    EXPECT_TRUE(FloatEquals(sign * infinity, sign * infinity, 1));
    EXPECT_FALSE(FloatEquals(sign * infinity, -sign * infinity, 1));
    for (const double other : {sign, nan}) EXPECT_FALSE(FloatEquals(nan, other, infinity));
  }
}

class TNamed final : public TGCollectionItem {
 public:
  TNamed(TCollection* list, const char* name) : FName(name) { SetCollection(list); }
  TString ClassName() const override { return "TNamed"; }
  const TString& GetItemName() const override { return FName; }
  void Notification(TGCollectionItem* item, TOperation operation) override {
    EXPECT_EQ(operation, opRemove);
    EXPECT_EQ(item->GetCollection(), nullptr) << "it has left";
    Log += FName + " hears of " + item->GetItemName() + ". ";
    if (const auto handler = Handler) handler(item);
  }

  static inline TString Log;
  std::function<void(TGCollectionItem*)> Handler;

 private:
  TString FName;
};

class TNamedList final : public TGCollection {
 public:
  TString ClassName() const override { return "TNamedList"; }
  TCollectionItem* AddItem() override { return new TNamed(this, ""); }
};

TEST(NamedCollection, ItemsHearOfEachOthersEndOnceWhicheverGoesFirst) {
  for (const bool watchedFirst : {true, false}) {
    TNamedList list;
    auto* watched = new TNamed(&list, "watched");
    auto* watcher = new TNamed(&list, "watcher");
    auto* third = new TNamed(&list, "third");
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
    going->FreeNotification(new TNamed(&list, "first"));
    going->FreeNotification(watcher = new TNamed(&list, "second"));
    watcher->Handler = deed;
    TNamed::Log = "";
    if (&deed == &deeds[0]) {
      EXPECT_THROW(going->Free(), EException);
    } else {
      going->Free();
    }
    list.Clear();
    EXPECT_EQ(TNamed::Log.Slice(0, 23), "second hears of going. ");
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

TEST(Token, CopiesAllAndComparesWhatItMeans) {
  const TTokenRef token = Token(7, 0.1, "warm");
  token->SetLineNumber(12);
  token->SetWhitespace(" ; note\n");
  token->SetTag(-3);
  const TTokenRef copy = token->Clone();
  copy->Assign(*copy);
  EXPECT_NE(copy, token);
  EXPECT_EQ(copy->GetLineNumber(), 12);
  EXPECT_EQ(copy->GetWhitespace(), " ; note\n");
  EXPECT_EQ(copy->GetTag(), -3);
  token->SetLineNumber(0);
  token->SetWhitespace("");
  EXPECT_TRUE(copy->Equals(*token));
  for (const TTokenRef& o : {Token(8, 0.1, "warm"), Token(7, 0.2, "warm"), Token(7, 0.1, "Warm")})
    EXPECT_FALSE(token->Equals(*o));
  for (const char* text : {"", " ", "  ", "x", " ", ""}) {
    token->SetText(text);
    EXPECT_EQ(token->GetText(), text) << "whatever short texts share";
  }
  EXPECT_EQ(Token(btInteger, 12, "x")->ToString(), "12");
  EXPECT_EQ(Token(btFloat, 0.1, "x")->ToString(), "0.1");
  EXPECT_EQ(Token(btNone, 12, "\"x\"")->ToString(), "\"x\"");
}

TEST(Token, AnswersItsInterfacesAndNoOther) {
  TTokenRef token = TBaseStreamToken::Create();
  EXPECT_EQ(Count(token), 1);
  EXPECT_EQ(Query<IBaseStreamToken>(token.Get()), token);
  EXPECT_EQ(Query<IInterface>(token.Get()).Get(), token.Get());
  void* result = &token;
  EXPECT_EQ(token->QueryInterface(IBaseStreamTokenList::Id, &result), E_NoInterface);
  EXPECT_EQ(result, nullptr);
  EXPECT_FALSE(Query<IBaseStreamTokenList>(token.Get()));
  EXPECT_FALSE(Query<IInterface>(nullptr));
  EXPECT_EQ(Count(token), 1) << "no answer keeps a reference";
}

TEST(Ref, SurvivesItsOwnAssignmentAndReleasesThatComeBack) {
  TTokenRef token = TBaseStreamToken::Create();
  token = TTokenRef(token.Get());
  EXPECT_EQ(Count(token), 1);
  TTokenRef moved = std::move(token);
  EXPECT_EQ(token, nullptr);  // NOLINT(bugprone-use-after-move): a moved reference is empty
  EXPECT_EQ(Count(moved), 1);

  // A token whose end assigns to the very reference that let it go.
  class TReturning final : public TBaseStreamTokenOf<IBaseStreamToken> {
   public:
    explicit TReturning(TTokenRef& home) : FHome(home) {}
    ~TReturning() override { FHome = Token(5, 0, "late"); }
    std::intptr_t GetTag() const override { return 0; }
    void SetTag(std::intptr_t) override {}
    TTokenRef Clone() const override { return nullptr; }

   private:
    TTokenRef& FHome;
  };
  TTokenRef home;
  home = TTokenRef(new TReturning(home));
  home = moved;
  EXPECT_EQ(home->GetText(), "late");
  EXPECT_EQ(Count(moved), 1);
}

TEST(TokenArray, HoldsCountedTokensInOrder) {
  TTokenArray<IBaseStreamToken> list, equal;
  const TTokenRef a = Token(1, 0, "a"), b = Token(1, 0, "b");
  EXPECT_THROW(list.First(), EListError);
  EXPECT_THROW(list.Last(), EListError);
  EXPECT_EQ(list.Add(b), 0);
  list.Insert(0, a);
  list.Insert(2, b->Clone());
  EXPECT_EQ(list.IndexOf(list.First()), 0);
  EXPECT_EQ(list.IndexOf(b), 1) << "by identity";
  EXPECT_EQ(list.IndexOf(list.Last()), 2);

  for (const TTokenRef& token : list.Items()) equal.Add(token->Clone());
  EXPECT_TRUE(list.Equals(equal));
  equal.Put(1, a);
  EXPECT_FALSE(list.Equals(equal));
  equal.Delete(2);
  EXPECT_FALSE(list.Equals(equal));
  equal.Clear();
  EXPECT_EQ(list.Remove(b), 1);
  EXPECT_EQ(list.Remove(b), -1);
  EXPECT_EQ(Count(a) - Count(b), 1);
  for (const int index : {-1, 2}) {
    EXPECT_THROW(list.Get(index), EListError);
    EXPECT_THROW(list.Put(index, a), EListError);
    EXPECT_THROW(list.Delete(index), EListError);
    EXPECT_THROW(list.Insert(index < 0 ? -1 : 3, a), EListError);
  }
}

}  // namespace
}  // namespace fzy
