#include <gtest/gtest.h>

#include "tests/language/Definitions.h"

namespace fzy {
namespace {

using test::Dump;
using test::Failure;
using test::ParseFailure;
using test::TScene;

TEST(EntryPoints, ReadOneVariableOrOneTerm) {
  TScene scene;
  TFuzzyVariable* a = scene.Parser.ParseFuzzyVariable(" (deffuzzy a (range 0 9)) rest", nullptr);
  ASSERT_NE(a, nullptr);
  EXPECT_EQ(a->GetFuzzy(), &scene.Fuzzy);
  TFuzzySet* x = scene.Parser.ParseFuzzySet(a, "(term x \"c\" ((4 1) (12 0)))(", nullptr);
  ASSERT_NE(x, nullptr);
  // Only the terms of a whole variable are defined by being read.
  EXPECT_EQ(Dump(x), "x 'c' =x (4 1)(9 0)");
  EXPECT_EQ(x->GetVariable(), a);
  EXPECT_EQ(a->GetItemIndex(), 0);
  EXPECT_EQ(Failure([&] { scene.Parser.ParseFuzzySet(a, "(deffuzzy b)", nullptr); }),
            ParseFailure("Expected \"( term\"", "ParseFuzzySet", 1, "( deffuzzy "));
  EXPECT_EQ(Failure([&] { scene.Parser.ParseFuzzyVariable("\n(term b)", nullptr); }),
            ParseFailure("Expected \"( deffuzzy\"", "ParseFuzzyVariable", 2, "( term "));

  // A variable that belongs to no component takes a term too, with the parser's default count.
  const TOwned<TFuzzyVariable> free(TFuzzyVariable::Create());
  scene.Parser.SetFuzzyLogic(nullptr);
  x = scene.Parser.ParseFuzzySet(free.Get(), "(term s (s 0 1))", nullptr);
  EXPECT_EQ(x->GetValues()->GetCount(), 7);
  EXPECT_EQ(scene.Parser.GetStream(), nullptr);
}

TEST(EntryPoints, NeedAComponentOfTheRightClass) {
  TKelFuzzyLogicParser parser;
  const std::string unset = "line 0: Fuzzy Logic component must be specified to parse";
  int fired = 0;
  parser.SetOnParsing([&](TObject*) { ++fired; });
  EXPECT_EQ(Failure([&] { parser.Parse("(", nullptr); }), unset);
  EXPECT_EQ(fired, 0);
  EXPECT_EQ(Failure([&] { parser.ParseFuzzyLogic("(", nullptr); }), unset);
  EXPECT_EQ(Failure([&] { parser.ParseFuzzyVariable("(", nullptr); }), unset);
  EXPECT_EQ(Failure([&] { parser.ParseFuzzySet(nullptr, "(", nullptr); }),
            "line 0: fuzzy variable is not defined");

  class TOther final : public TCustomFuzzyLogic {
   public:
    TString ClassName() const override { return "TOther"; }
  };
  {
    TOther other;
    parser.SetFuzzyLogic(&other);
    const std::string wrong =
        "line 0: FuzzyLogic property must be of type TFuzzyLogic or descendant";
    EXPECT_EQ(Failure([&] { parser.ParseFuzzyVariable("(deffuzzy a)", nullptr); }), wrong);
    EXPECT_EQ(Failure([&] { parser.Parse("(deffuzzy a", nullptr); }), wrong);
    EXPECT_EQ(Failure([&] { parser.Parse("(Deffuzzy", nullptr); }),
              ParseFailure("Expected \"( deffuzzy\"", "ParseFuzzyVariable", 1, " ( Deffuzzy "))
        << "the head comes first";
    EXPECT_EQ(Failure([&] { parser.Parse(";", nullptr); }), "nothing");
  }
  EXPECT_EQ(parser.GetFuzzyLogic(), nullptr) << "cleared when the component goes";
}

TEST(EntryPoints, ReadEveryEncoding) {
  const TString text = u"(deffuzzy \u00E9t\u00E9 \"\u20AC\U0001F600\")";
  const std::pair<const TEncoding*, const char*> rows[] = {
      {nullptr, "\u00E9t\u00E9 '\u20AC\U0001F600' 0..1 {}"},
      {TEncoding::UTF8(), "\u00E9t\u00E9 '\u20AC\U0001F600' 0..1 {}"},
      {TEncoding::UTF16LittleEndian(), "\u00E9t\u00E9 '\u20AC\U0001F600' 0..1 {}"},
      {TEncoding::UTF16BigEndian(), "\u00E9t\u00E9 '\u20AC\U0001F600' 0..1 {}"},
      {TEncoding::Latin1(), "\u00E9t\u00E9 '?\?' 0..1 {}"}};
  for (const auto& [encoding, expected] : rows) {
    TScene scene;
    EXPECT_EQ(Dump(scene.Parser.ParseFuzzyVariable(text, encoding)), expected);
    scene.Fuzzy.GetItems()->Clear();
    scene.Parser.ParseFuzzyLogic(text, encoding);
    EXPECT_EQ(Dump(scene.Fuzzy), expected);
  }
  TScene scene;
  scene.Parser.Parse(text, TEncoding::ASCII());
  EXPECT_EQ(Dump(scene.Fuzzy), rows[0].second) << "a whole text loses nothing";
}

TEST(EntryPoints, FillASetFromTokensOfNoText) {
  TKelFuzzyLogicParser parser;
  const TOwned<TFuzzySet> set(TFuzzySet::Create());
  const auto number = [](double value) {
    const Ref<TFuzzyStreamToken> token = TFuzzyStreamToken::Create();
    token->SetDataType(static_cast<int>(fstFloat));
    token->SetNumber(value);
    return token;
  };
  const Ref<TFuzzyStreamTokenList> list = TFuzzyStreamTokenList::Create();
  for (const double x : {1, 2}) {
    const Ref<TFuzzyStreamTokenList> pair = TFuzzyStreamTokenList::Create();
    pair->Add(number(x));
    pair->Add(number(x / 4));
    const Ref<TFuzzyStreamToken> group = TFuzzyStreamToken::Create();
    group->SetList(pair);
    list->Add(group);
  }
  EXPECT_EQ(parser.ConvertListToValues(set.Get(), list), set.Get());
  EXPECT_EQ(Dump(set.Get()), "  (1 0.25)(2 0.5)");
  list->Add(number(0.5));
  EXPECT_EQ(Failure([&] { parser.ConvertListToValues(set.Get(), list); }),
            ParseFailure("Invalid X/Y value pair: 0.5", "ConvertListToValues", 0, ""));

  EXPECT_TRUE(parser.VerifyAll(list, {fstList, fstFloat}));
  EXPECT_FALSE(parser.VerifyAll(list, {fstList, fstInteger}));
  EXPECT_TRUE(parser.VerifyAll(TFuzzyStreamTokenList::Create(), {}));
  for (const int kind : {-1, 11, 16, int{u'('}, 256 + static_cast<int>(fstFloat)}) {
    list->Last()->SetDataType(kind);
    EXPECT_FALSE(parser.VerifyAll(list, {fstList, fstFloat})) << kind;
  }
}

TEST(EntryPoints, RebuildTheModelFromItsText) {
  TScene scene;
  TFuzzyLogic& fuzzy = scene.Fuzzy;
  fuzzy.GetItems()->Add("old");
  const std::string text = "(deffuzzy a)\r\n\r\n(deffuzzy b)";
  TStringList lines;
  lines.SetText(text);
  fuzzy.SetStrings(&lines);
  EXPECT_EQ(Dump(fuzzy), "a 0..1 {} b 0..1 {}");
  EXPECT_EQ(fuzzy.GetStrings()->GetCount(), 3) << "as it was assigned, not written anew";

  // Handlers of the old variables' removal that read or change the text.
  const auto other = [&] { fuzzy.GetStrings()->SetText("(deffuzzy z)"); };
  const std::pair<const char*, std::function<void()>> deeds[] = {
      {"read", [&] { fuzzy.GetStrings(); }},
      {"change", other},
      {"parse", [&] { scene.Parser.Parse("(deffuzzy y)", nullptr); }},
      {"assign", [&] { fuzzy.SetStrings("(deffuzzy x)"); }}};
  for (const auto& [name, deed] : deeds) {
    fuzzy.SetOnVariableDeleted([&, run = &deed](TObject*, TFuzzyVariable*) {
      fuzzy.SetOnVariableDeleted(nullptr);
      (*run)();
    });
    fuzzy.SetStrings(text);
    EXPECT_EQ(fuzzy.GetStrings()->GetCount(), 3) << name;
    const std::string model = Dump(fuzzy);
    EXPECT_EQ(model.substr(model.find("a 0..1")), "a 0..1 {} b 0..1 {}") << name;
    fuzzy.SetOnVariableDeleted(nullptr);
    fuzzy.SetStrings(text);
  }

  // A text that cannot be read is assigned all the same.
  EXPECT_EQ(Failure([&] { fuzzy.SetStrings("(deffuzzy c)\n(term d)"); }),
            ParseFailure("Expected \"( deffuzzy\"", "ParseFuzzyVariable", 2, " ( term "));
  EXPECT_EQ(Dump(fuzzy), "c 0..1 {}");
  EXPECT_EQ(Failure([&] { fuzzy.SetStrings("(deffuzzy c \"d\ne)"); }),
            "line 1: Unbalanced string: the closing quote is missing");
  EXPECT_EQ(Dump(fuzzy), "");
  fuzzy.SetStrings(text);

  // Writing is refused, and the old text stays.
  fuzzy.GetItems()->GetItem(0)->SetUnits("m");
  for (int i = 0; i < 2; ++i)
    EXPECT_EQ(Failure([&] { fuzzy.GetStrings(); }),
              "line 0: Definition text is not written by this parser");
}

}  // namespace
}  // namespace fzy
