#include <gtest/gtest.h>

#include "fuzzylogic/common/StreamTokenList.h"
#include "fuzzylogic/framework/Exception.h"

namespace fzy {
namespace {

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
  EXPECT_EQ(copy->GetText(), "warm");
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
  const TTokenRef& same = token;
  token = same;
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
  TTokenArray<IBaseStreamToken> list;
  const TTokenRef a = Token(1, 0, "a");
  const TTokenRef b = Token(1, 0, "b");
  EXPECT_THROW(list.First(), EListError);
  EXPECT_THROW(list.Last(), EListError);
  EXPECT_EQ(list.Add(b), 0);
  list.Insert(0, a);
  list.Insert(2, b->Clone());
  EXPECT_EQ(list.First(), a);
  EXPECT_EQ(list.IndexOf(b), 1) << "by identity";
  EXPECT_EQ(list.IndexOf(list.Last()), 2);

  TTokenArray<IBaseStreamToken> equal;
  for (const TTokenRef& token : list.Items()) equal.Add(token->Clone());
  EXPECT_TRUE(list.Equals(equal));
  equal.Put(1, a);
  EXPECT_FALSE(list.Equals(equal));
  equal.Delete(2);
  EXPECT_FALSE(list.Equals(equal));
  equal.Clear();
  EXPECT_EQ(list.Remove(b), 1);
  EXPECT_EQ(list.Remove(b), -1);
  EXPECT_EQ(Count(b), 1);
  EXPECT_EQ(Count(a), 2);
  for (const int index : {-1, 2}) {
    EXPECT_THROW(list.Get(index), EListError);
    EXPECT_THROW(list.Put(index, a), EListError);
    EXPECT_THROW(list.Delete(index), EListError);
    EXPECT_THROW(list.Insert(index < 0 ? -1 : 3, a), EListError);
  }
  EXPECT_EQ(list.GetCount(), 2);
}

}  // namespace
}  // namespace fzy
