#include <functional>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"
#include "tests/model/Scene.h"
#include "tests/model/TestParser.h"

namespace fzy {
namespace {

using test::MessageOf;
using test::TScene;
using test::TTestParser;

constexpr TFzyFloat NaN = std::numeric_limits<TFzyFloat>::quiet_NaN();
constexpr TFzyFloat Infinity = std::numeric_limits<TFzyFloat>::infinity();

std::vector<std::string> NamesOf(TFuzzyVariable* variable) {
  std::vector<std::string> names;
  for (const TFuzzySet* set : *variable->GetItems()) names.push_back(set->GetName().Utf8());
  return names;
}

TEST(Settings, OfANewComponentAndVariable) {
  TFuzzyLogic fuzzy;
  EXPECT_EQ(fuzzy.GetNumFunctionValues(), 7);
  EXPECT_EQ(fuzzy.GetThreshold(), 0.01);
  EXPECT_TRUE(fuzzy.GetAutoTerms());
  EXPECT_EQ(fuzzy.GetCorrelationMethod(), fcmMinimum);
  EXPECT_EQ(fuzzy.GetInferenceMethod(), fimMinMax);
  EXPECT_EQ(fuzzy.GetDefuzzificationMethod(), dmCenterOfGravity);
  EXPECT_EQ(fuzzy.GetParser(), nullptr);
  EXPECT_EQ(fuzzy.GetStrings()->GetCount(), 0);
  EXPECT_EQ(fuzzy.GetItems()->GetCount(), 0);

  TFuzzyVariable* variable = TFuzzyVariable::Create();
  EXPECT_EQ(variable->GetMinimum(), 0);
  EXPECT_EQ(variable->GetMaximum(), 1);
  EXPECT_EQ(variable->GetThreshold(), 0);
  EXPECT_EQ(variable->GetItemIndex(), -1);
  EXPECT_EQ(variable->GetFuzzy(), nullptr);
  EXPECT_EQ(variable->GetDisplayName(), "TFuzzyVariable");
  fuzzy.SetAutoTerms(false);
  variable->SetCollection(fuzzy.GetItems());
  EXPECT_EQ(variable->GetThreshold(), 0.01);
  EXPECT_EQ(variable->GetItems()->GetCount(), 0);
  variable->SetName("and");
  EXPECT_EQ(variable->ToString(), "and") << "names of variables are not checked";
}

TEST(Settings, AreClampedAndARangePushesItsOtherEnd) {
  TScene s;
  for (const auto& [value, stored] :
       {std::pair(1.5, 1.0), {-0.2, 0.0}, {0.3, 0.3}, {Infinity, 1}}) {
    s.T->SetThreshold(0.9);
    s.T->SetThreshold(value);
    EXPECT_EQ(s.T->GetThreshold(), stored);
    s.T->SetThreshold(0.9);
    s.Fuzzy.SetThreshold(value);
    EXPECT_EQ(s.Fuzzy.GetThreshold(), stored);
    EXPECT_EQ(s.T->GetThreshold(), stored) << "a variable's own is overwritten";
  }
  s.T->SetThreshold(0.9);
  s.Fuzzy.SetThreshold(1);
  EXPECT_EQ(s.T->GetThreshold(), 0.9) << "the value it has changes nothing";
  for (const auto& [value, stored] : {std::pair(1, 2), {0, 2}, {-5, 2}, {3, 3}}) {
    s.Fuzzy.SetNumFunctionValues(value);
    EXPECT_EQ(s.Fuzzy.GetNumFunctionValues(), stored);
  }
  s.X->SetSetType(fstBetaCurve);
  EXPECT_EQ(s.X->GetValues()->GetCount(), 3);

  s.U->SetMinimum(5);
  EXPECT_EQ(s.U->GetMaximum(), 5);
  s.U->SetMaximum(-1);
  EXPECT_EQ(s.U->GetMinimum(), -1);
  s.T->SetMaximum(4);
  EXPECT_EQ(s.Cold->GetValues()->GetItem(1)->GetX(), 5) << "points stay where they are";
  s.Cold->GetValues()->GetItem(1)->SetX(7);
  EXPECT_EQ(s.Cold->GetValues()->GetItem(1)->GetX(), 4);
}

TEST(Settings, RefuseWhatIsWrongBeforeAnythingChanges) {
  TScene s;
  s.T->SetItemIndex(0);
  s.Recorder.Take();
  const auto notANumber = [](const char* operation) {
    return std::string("Invalid operation: \"") + operation + "\".  Not a number";
  };
  const auto notFinite = [](const char* operation) {
    return std::string("Invalid operation: \"") + operation + "\".  Not a finite number";
  };
  TFuzzySets* sets = s.T->GetItems();
  TFuzzyVariables* variables = s.Fuzzy.GetItems();
  TStringList list;
  const std::pair<std::string, std::function<void()>> faults[] = {
      {notANumber("SetMinimum"), [&] { s.T->SetMinimum(NaN); }},
      {notFinite("SetMinimum"), [&] { s.T->SetMinimum(-Infinity); }},
      {notFinite("SetMaximum"), [&] { s.T->SetMaximum(Infinity); }},
      {notANumber("SetThreshold"), [&] { s.T->SetThreshold(NaN); }},
      {notANumber("SetThreshold"), [&] { s.Fuzzy.SetThreshold(NaN); }},
      {"List index out of bounds (2)", [&] { s.T->SetItemIndex(2); }},
      {"List index out of bounds (-1)", [&] { sets->GetItem(-1); }},
      {"List index out of bounds (3)", [&] { sets->Insert(3); }},
      {"List index out of bounds (2)", [&] { variables->GetItem(2); }},
      {"List index out of bounds (3)", [&] { variables->Insert(3); }},
      {"List index out of bounds (2)", [&] { variables->Delete(2); }},
      {"Unknown Fuzzy Set name: \"nothing\"", [&] { sets->GetItemByName("nothing"); }},
      {"Unknown Fuzzy Set name: \"nothing\"", [&] { sets->SetItemByName("nothing", s.Hot); }},
      {"Unknown Fuzzy Variable name: \"x\"", [&] { variables->GetItemByName("x"); }},
      {"Unknown Fuzzy Variable name: \"x\"", [&] { variables->SetItemByName("x", s.T); }},
      {"Invalid fuzzy set name, \"very\" is a reserved word", [&] { s.Hot->SetName("very"); }},
      {"Cannot assign a TStringList to a TFuzzyVariable", [&] { s.T->Assign(&list); }},
      {"Cannot assign a TFuzzyVariable to a TFuzzySet", [&] { s.Hot->Assign(s.T); }},
      {"Cannot assign a nil to a TFuzzyVariable", [&] { s.T->Assign(nullptr); }},
  };
  for (const auto& [message, fault] : faults) EXPECT_EQ(MessageOf(fault), message);
  EXPECT_EQ(s.Recorder.Take(), "");
  EXPECT_EQ(s.T->GetItemIndex(), 0);
  EXPECT_EQ(s.T->GetMaximum(), 10);
  EXPECT_EQ(s.Hot->GetName(), "hot");
}

TEST(Settings, OfASetDependOnItsName) {
  TScene s;
  TFuzzySets* sets = s.T->GetItems();
  EXPECT_TRUE(sets->Add("mild")->GetDefined());
  EXPECT_FALSE(sets->Add("")->GetDefined());
  EXPECT_FALSE(sets->Add("__Empty")->GetDefined());
  EXPECT_FALSE(sets->Add()->GetDefined());
  EXPECT_FALSE(sets->Insert(0)->GetDefined());
  s.Fuzzy.SetDesigning(true);
  EXPECT_TRUE(sets->Add()->GetDefined()) << "in a form designer";
}

TEST(Lists, FindTheFirstOfAName) {
  TScene s;
  TFuzzySets* sets = s.T->GetItems();
  TFuzzySet* second = sets->Add("cold");
  EXPECT_EQ(sets->GetItemByName("cold"), s.Cold);
  EXPECT_EQ((*sets)[2], second);
  sets->SetItemByName("cold", s.Hot);
  EXPECT_EQ(s.Cold->ToString(), "(hot (5.0000 0.0000) (10.0000 1.0000) )");
  EXPECT_EQ(sets->GetItemByName("cold"), second);
  s.Fuzzy.GetItems()->SetItemByName("u", s.T);
  EXPECT_EQ(s.U->GetName(), "t");
  EXPECT_EQ(s.Fuzzy.GetItems()->GetItemByName("t"), s.T);
}

TEST(Lists, CopyAVariableFieldByField) {
  TScene s;
  s.T->SetUnits("K");
  s.T->SetComment("outside");
  s.T->SetThreshold(0.5);
  s.T->SetItemIndex(0);
  TFuzzySets* list = s.U->GetItems();
  s.U->Assign(s.T);
  EXPECT_EQ(s.U->GetItems(), list);
  EXPECT_THAT(NamesOf(s.U), testing::ElementsAre("cold", "hot"));
  EXPECT_EQ(list->GetItem(0)->GetVariable(), s.U);
  EXPECT_EQ(list->GetItem(0)->ToString(), s.Cold->ToString());
  EXPECT_EQ(s.U->GetUnits(), "K");
  EXPECT_EQ(s.U->GetComment(), "outside");
  EXPECT_EQ(s.U->GetThreshold(), 0.5);
  EXPECT_EQ(s.U->GetMaximum(), 10);
  EXPECT_EQ(s.U->GetItemIndex(), 0);

  TStringList lines;
  lines.Add("before");
  lines.Assign(s.T);
  EXPECT_EQ(lines.GetText(), "cold\nhot\n");
  EXPECT_EQ(lines.GetObject(1), s.Hot);
}

// Automatic terms

struct TTermCase {
  TFzyFloat Minimum, Maximum;
  const char* Present;
  std::vector<std::string> Names;
};

TEST(AutomaticTerms, FillUpWhatIsMissingOverTheRangeOfTheMoment) {
  const TTermCase cases[] = {
      {0, 10, "x", {"x", "low", "medium", "high"}},
      {10, 20, "medium", {"medium", "low", "high"}},
      {-1, 3, "high", {"high", "low", "medium"}},
  };
  for (const TTermCase& c : cases) {
    TScene s;
    s.U->SetMaximum(c.Maximum);
    s.U->SetMinimum(c.Minimum);
    s.X->SetName(c.Present);
    s.Fuzzy.AddAutoTerms(s.U);
    EXPECT_THAT(NamesOf(s.U), testing::ElementsAreArray(c.Names));
    EXPECT_EQ(s.U->GetItemIndex(), s.U->GetItems()->GetCount() - 1);
    const TFzyFloat middle = (c.Minimum + c.Maximum) / 2;
    const std::pair<const char*, std::vector<TFuzzyPoint>> terms[] = {
        {"low", {{c.Minimum, 1}, {c.Maximum, 0}}},
        {"medium", {{c.Minimum, 0}, {middle, 1}, {c.Maximum, 0}}},
        {"high", {{c.Minimum, 0}, {c.Maximum, 1}}},
    };
    for (const auto& [name, points] : terms) {
      if (std::string(name) == c.Present) continue;
      const TFuzzySet* term = s.U->GetItems()->GetItemByName(name);
      EXPECT_EQ(term->GetExpression(), name);
      EXPECT_TRUE(term->GetDefined());
      ASSERT_EQ(term->GetValues()->GetCount(), static_cast<int>(points.size()));
      for (std::size_t i = 0; i < points.size(); ++i) {
        EXPECT_EQ(term->GetValues()->Points()[i].X, points[i].X) << name;
        EXPECT_EQ(term->GetValues()->Points()[i].Y, points[i].Y) << name;
      }
    }
    s.U->SetMaximum(100);
    EXPECT_EQ(s.U->GetItems()->GetItem(1)->GetValues()->Points().back().X, c.Maximum);
  }
}

TEST(AutomaticTerms, AreNotAddedToAVariableThatAHandlerTakesOutAgain) {
  TScene s;
  s.Fuzzy.SetAutoTerms(true);
  s.Recorder.Handler = [](std::size_t event, TFuzzyVariable* variable, TFuzzySet*) {
    if (event == 1) variable->SetCollection(nullptr);
  };
  TFuzzyVariable* variable = s.Fuzzy.GetItems()->Add("v");
  EXPECT_EQ(variable->GetItems()->GetCount(), 0);
  EXPECT_EQ(s.Recorder.Take(), "VariableAdded -; VariableDeleted -; Changed x2");
  variable->Free();
}

TEST(AutomaticTerms, AreNamedInTheUsersLanguage) {
  SLowFuzzyTerm.Set("niedrig");
  SHighFuzzyTerm.Set("hoch");
  TFuzzyLogic fuzzy;
  TFuzzyVariable* variable = fuzzy.GetItems()->Add("t");
  EXPECT_THAT(NamesOf(variable), testing::ElementsAre("niedrig", "medium", "hoch"));
  SLowFuzzyTerm.Set("");
  SHighFuzzyTerm.Set("");
}

TEST(AutomaticTerms, AreAddedToWhatAParserBuilds) {
  TFuzzyLogic fuzzy;
  TTestParser parser;
  parser.SetFuzzyLogic(&fuzzy);
  fuzzy.SetParser(&parser);
  fuzzy.SetStrings(TString("t"));
  EXPECT_EQ(fuzzy.GetStrings()->GetText(), "t\n") << "in step, though the model was changed";
  fuzzy.GetItems()->GetItem(0)->SetComment("changed");
  EXPECT_EQ(fuzzy.GetStrings()->GetText(), "t low medium high\n");
}

// Parser link and states

TEST(ParserLink, AndTheParsersOwnGoEachForItself) {
  for (const bool parserFirst : {true, false}) {
    for (const char* unlinked : {"none", "parser's", "component's"}) {
      for (const bool heap : {true, false}) {
        SCOPED_TRACE(std::string(unlinked) +
                     (parserFirst ? ", parser first" : ", component first") +
                     (heap ? ", on the heap" : ""));
        const auto end = [heap](auto* component) { heap ? component->Free() : delete component; };
        auto* parser = new TTestParser;
        auto* fuzzy = new TFuzzyLogic;
        parser->SetFuzzyLogic(fuzzy);
        fuzzy->SetParser(parser);
        EXPECT_EQ(parser->GetFuzzyLogic(), fuzzy);
        if (*unlinked == 'p') parser->SetFuzzyLogic(nullptr);
        if (*unlinked == 'c') fuzzy->SetParser(nullptr);
        EXPECT_EQ(fuzzy->GetParser() != nullptr, *unlinked != 'c');
        if (parserFirst) {
          end(parser);
          EXPECT_EQ(fuzzy->GetParser(), nullptr);
          end(fuzzy);
        } else {
          end(fuzzy);
          EXPECT_EQ(parser->GetFuzzyLogic(), nullptr);
          end(parser);
        }
      }
    }
  }
}

TEST(ParserLink, MayGoWhileTheParserWorks) {
  const std::function<void(TFuzzyLogic&, TTestParser*)> deeds[] = {
      [](TFuzzyLogic&, TTestParser* parser) { parser->Free(); },
      [](TFuzzyLogic& fuzzy, TTestParser* parser) {
        fuzzy.SetParser(nullptr);
        parser->Free();
      },
  };
  for (const auto& deed : deeds) {
    for (const bool printing : {false, true}) {
      TFuzzyLogic fuzzy;
      auto* parser = new TTestParser;
      parser->SetFuzzyLogic(&fuzzy);
      fuzzy.SetParser(parser);
      for (const char* name : {"t", "u"}) fuzzy.GetItems()->Add(name);
      (printing ? parser->OnPrint : parser->OnParse) = [&] { deed(fuzzy, parser); };
      if (printing)
        EXPECT_EQ(MessageOf([&] { fuzzy.GetStrings(); }), "Parser not assigned.  Cannot parse");
      else
        fuzzy.SetStrings(TString("v"));
      EXPECT_EQ(fuzzy.GetParser(), nullptr);
    }
  }
}

class TLoadingLogic final : public TFuzzyLogic {
 public:
  using TFuzzyLogic::Loading;
};

TEST(Loading, ReadsTextAndModelWithoutParsing) {
  TLoadingLogic fuzzy;
  fuzzy.Loading();
  fuzzy.SetStrings(TString("stored text"));
  fuzzy.GetItems()->Add("t");
  fuzzy.Parse();
  EXPECT_EQ(fuzzy.GetStrings()->GetText(), "stored text\n");
  EXPECT_EQ(fuzzy.GetItems()->GetCount(), 1);
  fuzzy.Loaded();
  EXPECT_EQ(fuzzy.GetStrings()->GetText(), "stored text\n") << "nor is it parsed at the end";
  EXPECT_EQ(fuzzy.GetItems()->GetCount(), 1);
  fuzzy.GetItems()->Add("u");
  EXPECT_EQ(MessageOf([&] { fuzzy.GetStrings(); }), "Parser not assigned.  Cannot parse");
}

}  // namespace
}  // namespace fzy
