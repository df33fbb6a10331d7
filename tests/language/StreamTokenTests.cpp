#include <gtest/gtest.h>

#include "fuzzylogic/engine/FuzzySet.h"
#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/language/FuzzyStreamToken.h"
#include "fuzzylogic/model/FuzzyLogic.h"
#include "tests/language/SmallStack.h"

namespace fzy {
namespace {

using TTokenRef = Ref<TFuzzyStreamToken>;
using TListRef = Ref<TFuzzyStreamTokenList>;

TTokenRef Token(TFuzzyStreamTokenType kind, const TString& text, double number = 0) {
  TTokenRef token = TFuzzyStreamToken::Create();
  token->SetDataType(static_cast<int>(kind));
  token->SetText(text);
  token->SetNumber(number);
  return token;
}
TTokenRef Atom(const TString& text) { return Token(fstAtom, text); }

TTokenRef Group(std::initializer_list<TTokenRef> tokens) {
  const TListRef list = TFuzzyStreamTokenList::Create();
  for (const TTokenRef& token : tokens) list->Add(token);
  TTokenRef group = TFuzzyStreamToken::Create();
  group->SetList(list);
  return group;
}

std::int32_t References(IInterface* object) {
  object->AddRef();
  return object->Release();
}

/// What the getters find in a token, as "kind: interface list set object fuzzyset", and its text.
std::string Content(const TTokenRef& token) {
  std::string text = std::to_string(token->GetDataType()) + ':';
  if (token->GetIntfValue()) text += " interface";
  if (token->GetList()) text += " list";
  if (token->GetFuzzySetIntf()) text += " set";
  if (token->GetObjValue()) text += " object";
  if (token->GetFuzzySet()) text += " fuzzyset";
  return text + " \"" + token->ToString().Utf8() + '"';
}

TEST(FuzzyStreamToken, HoldsOnePayloadOfEachKindOfField) {
  const TListRef list = TFuzzyStreamTokenList::Create();
  list->Add(Atom("warm"));
  list->Add(Token(fstInteger, "", 20));
  const TOwned<TFuzzySet> set(TFuzzySet::Create());
  set->SetExpression("very warm");
  TFuzzyLogic other;

  const TTokenRef token = TFuzzyStreamToken::Create();
  EXPECT_EQ(Content(token), "0: \"\"");
  token->SetText("left");
  token->SetIntfValue(token->Clone());
  EXPECT_EQ(Content(token), "6: interface \"<interface>\"");
  token->SetIntfValue(list);
  EXPECT_EQ(Content(token), "6: interface list \"<interface>\"");
  token->SetList(list);
  EXPECT_EQ(Content(token), "7: interface list \"warm 20\"");
  token->SetObjValue(&other);
  EXPECT_EQ(Content(token), "9: interface list object \"<object>\"");
  token->SetFuzzySet(set.Get());
  EXPECT_EQ(Content(token), "10: interface list object fuzzyset \"very warm\"");
  token->SetObjValue(set.Get());
  EXPECT_EQ(Content(token), "9: interface list object fuzzyset \"<object>\"");

  // Nothing clears the kind, and only the field that it was given for.
  token->SetFuzzySetIntf(nullptr);
  EXPECT_EQ(Content(token), "0: object fuzzyset \"left\"");
  token->SetFuzzySet(nullptr);
  EXPECT_EQ(Content(token), "0: \"left\"");
  for (int setter = 0; setter < 3; ++setter) {
    token->SetList(list);
    if (setter == 0) token->SetList(nullptr);
    if (setter == 1) token->SetIntfValue(nullptr);
    if (setter == 2) token->SetObjValue(nullptr);
    EXPECT_EQ(Content(token), setter == 2 ? "0: interface list \"left\"" : "0: \"left\"");
  }
  token->SetList(nullptr);
  EXPECT_EQ(References(list.Get()), 1);

  // The kind alone promises nothing.
  for (const TFuzzyStreamTokenType kind : {fstList, fstIFuzzySet, fstFuzzySet}) {
    token->SetDataType(static_cast<int>(kind));
    EXPECT_EQ(token->ToString(), "");
  }
}

TEST(FuzzyStreamToken, CopiesAndComparesItsPayloadToo) {
  const TOwned<TFuzzySet> set(TFuzzySet::Create());
  const TTokenRef token = Atom("warm");
  token->SetLineNumber(3);
  token->SetWhitespace("\n");
  token->SetTag(-1);
  token->SetFuzzySet(set.Get());
  const Ref<IFuzzyStreamToken> copy = Query<IFuzzyStreamToken>(token->Clone().Get());
  ASSERT_TRUE(copy);
  EXPECT_EQ(copy->GetObjValue(), set.Get());
  EXPECT_EQ(copy->GetText(), "warm");
  EXPECT_EQ(copy->GetLineNumber() + copy->GetTag(), 2);
  EXPECT_EQ(copy->GetWhitespace(), "\n");
  EXPECT_TRUE(copy->Equals(*token));
  copy->SetObjValue(nullptr);
  EXPECT_FALSE(copy->Equals(*token)) << "the kind differs";
  copy->SetDataType(token->GetDataType());
  EXPECT_FALSE(copy->Equals(*token)) << "the payload differs";
  copy->Assign(*token);
  copy->Assign(*copy);
  EXPECT_TRUE(copy->Equals(*token));

  EXPECT_TRUE(Group({Atom("a"), Atom("b")})->Equals(*Group({Atom("a"), Atom("b")})));
  EXPECT_FALSE(Group({Atom("a"), Atom("b")})->Equals(*Group({Atom("a")})));
}

TEST(FuzzyStreamTokenList, HandsOutItsTokensByBothInterfaces) {
  const TListRef list = TFuzzyStreamTokenList::Create();
  const TTokenRef a = Atom("a");
  const TTokenRef b = Token(fstString, "b c");
  const TTokenRef c = Token(fstFloat, "", 0.5);
  EXPECT_EQ(list->ToString(), "");
  EXPECT_THROW(list->First(), EListError);
  EXPECT_THROW(list->LastBaseStreamToken(), EListError);
  EXPECT_EQ(list->Add(b), 0);
  list->Insert(0, a);
  list->Insert(2, Group({c, Group({}), Group({a})}));
  EXPECT_EQ(list->ToString(), "a b c 0.5  a");
  EXPECT_EQ(list->GetValueCount(), 3);
  EXPECT_EQ(list->First(), Ref<IFuzzyStreamToken>(a));
  EXPECT_EQ(list->FirstBaseStreamToken(), Ref<IBaseStreamToken>(a));
  EXPECT_EQ(list->Last()->GetList()->GetValueCount(), 3);
  EXPECT_EQ(list->LastBaseStreamToken()->ToString(), "0.5  a");
  EXPECT_EQ(list->GetBaseStreamToken(1), Ref<IBaseStreamToken>(b));

  const Ref<IFuzzyStreamTokenList> copy = list->Clone();
  EXPECT_TRUE(list->Equals(copy));
  copy->Append(copy);
  copy->Append(nullptr);
  EXPECT_EQ(copy->GetValueCount(), 6);
  EXPECT_EQ(copy->IndexOf(b), 1);
  EXPECT_EQ(copy->IndexOf(c), -1) << "not in a nested list";
  EXPECT_EQ(copy->Remove(b), 1);
  EXPECT_EQ(copy->Remove(b), 3);
  EXPECT_EQ(copy->Remove(b), -1);
  EXPECT_FALSE(list->Equals(copy));
  EXPECT_FALSE(list->Equals(nullptr));
  copy->Clear();
  copy->Append(list);
  copy->Put(0, Atom("a"));
  EXPECT_TRUE(list->Equals(copy)) << "equal, not the same";
  copy->PutBaseStreamToken(0, b);
  EXPECT_EQ(copy->Get(0), Ref<IFuzzyStreamToken>(b));
  EXPECT_THROW(copy->PutBaseStreamToken(0, TBaseStreamToken::Create()), EConvertError);
  copy->Delete(2);
  EXPECT_EQ(copy->ToString(), "b c b c");
  for (const int index : {-1, 2}) {
    EXPECT_THROW(copy->Get(index), EListError);
    EXPECT_THROW(copy->Put(index, a), EListError);
    EXPECT_THROW(copy->Delete(index), EListError);
  }
  copy->SetTag(7);
  EXPECT_EQ(copy->GetTag() + list->GetTag(), 7);
}

TEST(FuzzyStreamTokenList, NestsAMillionDeepWithoutUsingTheStack) {
  test::OnSmallStack([] {
    TTokenRef inner = Group({Atom("core")});
    for (int i = 0; i < 1'000'000; ++i) inner = Group({inner, Atom("x")});
    const TTokenRef kept = Group({inner});
    EXPECT_EQ(inner->ToString().size(), std::string_view("core").size() + 2'000'000);
    inner = nullptr;
    EXPECT_TRUE(kept->GetList());
  });
}

}  // namespace
}  // namespace fzy
