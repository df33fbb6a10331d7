#include <cmath>
#include <limits>

#include <gmock/gmock.h>

#include "fuzzylogic/framework/Properties.h"
#include "tests/language/Definitions.h"
#include "tests/support/Forms.h"
#include "tests/support/Random.h"
#include "tests/support/Refusal.h"

namespace fzy {
namespace {

using test::Load;
using test::Stored;
using test::TCountedScene;
using test::TScene;

/// A scene whose component and parser have the names that forms tell them apart by.
template <class Scene>
struct TNamed : Scene {
  TNamed() {
    this->Fuzzy.SetName("fuzzy");
    this->Parser.SetName("parser");
  }
  std::string Form() { return Stored({&this->Fuzzy, &this->Parser}); }
  void Load(const std::string& form) { test::Load(form, {&this->Fuzzy, &this->Parser}); }
};
using TOwnedScene = TNamed<TScene>;
using TIntfScene = TNamed<TCountedScene>;

constexpr const char* Temperature =
    "(deffuzzy temperature \"outside\" (range -20 40) (units C)\n"
    "  (values (term cold (z -10 10)) (term mild (tri 0 15 25)) (term fine mild or very cold)))\n";

// Random models

double RandomNumber(test::TRandom& random) {
  switch (random.Below(8)) {
    case 0:
      return 0;
    case 1:
      return -0.0;
    case 2:
      return std::numeric_limits<double>::denorm_min();
    case 3:
      return random.Unit() * 1e300;
    default:
      return (random.Unit() - 0.5) * 200;
  }
}

TString RandomText(test::TRandom& random) {
  std::u16string text;
  for (int i = random.Below(8); i > 0; --i)
    text +=
        static_cast<char16_t>(random.OneIn(2) ? 0x20 + random.Below(0x60) : random.Below(0x10000));
  return text;
}

/// A set with points of all kinds, beyond its range too, and with what was once said of them.
void RandomSet(test::TRandom& random, TFuzzySet& set) {
  set.SetName("n" + RandomText(random));
  set.SetDefined(random.OneIn(2));
  if (random.OneIn(4)) {
    set.SetSetType(static_cast<TFuzzySetType>(random.Below(6)));
  } else {
    for (int i = random.Below(9); i > 0; --i)
      set.GetValues()->Add(RandomNumber(random), std::abs(RandomNumber(random)));
    if (random.OneIn(3)) set.CreateBetaCurveFunctionValues(5, 2, 5, 0.5 + random.Unit());
  }
  if (random.OneIn(2)) set.SetExpression(RandomText(random));
  if (random.OneIn(2)) set.SetDefinition(RandomText(random));
  set.SetComment(RandomText(random));
  set.SetTag(static_cast<std::intptr_t>(random.Bits()));
}

void RandomModel(test::TRandom& random, TFuzzyLogic& fuzzy) {
  fuzzy.SetAutoTerms(random.OneIn(2));
  fuzzy.SetThreshold(random.Unit());
  fuzzy.SetNumFunctionValues(random.Below(12));
  fuzzy.SetCorrelationMethod(random.OneIn(2) ? fcmMinimum : fcmProduct);
  fuzzy.SetInferenceMethod(static_cast<TFuzzyInferenceMethod>(random.Below(5)));
  fuzzy.SetDefuzzificationMethod(random.OneIn(2) ? dmCenterOfGravity : dmMeanOfMaxima);
  for (int i = random.Below(3); i > 0; --i) fuzzy.GetVariables()->Add(RandomText(random));
  for (int i = random.Below(4); i > 0; --i) {
    TFuzzyVariable* variable = fuzzy.GetItems()->Add(RandomText(random));
    variable->SetMinimum(RandomNumber(random));
    variable->SetMaximum(variable->GetMinimum() + 10 * random.Unit());
    for (int sets = random.Below(5); sets > 0; --sets)
      RandomSet(random, *variable->GetItems()->Add());
    variable->SetMinimum(variable->GetMinimum() + 1);  // some points lie outside now
    variable->SetUnits(RandomText(random));
    variable->SetComment(RandomText(random));
    variable->SetThreshold(random.Unit());
    variable->SetItemIndex(random.Below(variable->GetItems()->GetCount() + 3) - 3);
  }
}

TEST(StoredModel, ComesBackAsItWas) {
  test::TRandom random;
  SCOPED_TRACE(random.Trace());
  TOwnedScene target;
  for (int i = 0; i < 200; ++i) {
    TOwnedScene scene;
    RandomModel(random, scene.Fuzzy);
    const std::string form = scene.Form();
    target.Load(form);  // in place of the model before
    ASSERT_TRUE(EqualProperties(scene.Fuzzy, target.Fuzzy)) << form;
    ASSERT_EQ(target.Form(), form);
  }
}

// Nothing is made anew

TEST(StoredModel, MakesNothingAnewAndTellsOnceItIsComplete) {
  TOwnedScene scene;
  scene.Fuzzy.SetStrings(TString(Temperature));
  scene.Fuzzy.GetItems()->GetItem(0)->GetItems()->Add("any")->SetSetType(fstPICurve);
  scene.Fuzzy.GetItems()->GetItem(0)->SetThreshold(0.75);
  scene.Fuzzy.SetAutoTerms(true);
  const std::string form = scene.Form();

  TOwnedScene target;
  target.Fuzzy.GetItems()->Add("old")->GetItems()->Add("term");
  std::string log;
  const auto note = [&](const char* event) {
    return [&log, &target, event](TObject*, auto* item) {
      log += std::string(event) + " " + item->GetName().Utf8();
      log += target.Fuzzy.Is(csLoading) ? " loading; " : "; ";
    };
  };
  target.Fuzzy.SetOnVariableAdded(note("added"));
  target.Fuzzy.SetOnVariableDeleted(note("deleted"));
  target.Fuzzy.SetOnFuzzySetAdded(note("set added"));
  target.Fuzzy.SetOnFuzzySetDeleted(note("set deleted"));
  target.Fuzzy.SetOnFuzzySetChange(note("set changed"));
  target.Fuzzy.SetOnVariableChange(note("changed"));
  target.Fuzzy.SetOnChange([&](TObject*) { log += "all changed; "; });
  target.Parser.SetOnParsing([&](TObject*) { log += "parsing; "; });
  target.Load(form);
  EXPECT_EQ(log, "set deleted term; deleted old; added temperature; all changed; ");

  TFuzzyVariable* variable = target.Fuzzy.GetItems()->GetItem(0);
  EXPECT_EQ(variable->GetItems()->GetCount(),
            scene.Fuzzy.GetItems()->GetItem(0)->GetItems()->GetCount());
  EXPECT_EQ(variable->GetItems()->GetItemByName("any")->GetSetType(), fstPICurve);
  EXPECT_EQ(variable->GetThreshold(), 0.75);
  EXPECT_EQ(target.Fuzzy.GetStrings()->GetText(), scene.Fuzzy.GetStrings()->GetText());
  EXPECT_EQ(target.Form(), form);
  // The model lives on: changes reach the component, and the text is written as it would be there.
  for (TOwnedScene* each : {&scene, &target}) each->Fuzzy.GetItems()->GetItem(0)->SetUnits("F");
  EXPECT_THAT(log, testing::EndsWith("changed temperature; "));
  EXPECT_EQ(target.Fuzzy.GetStrings()->GetText(), scene.Fuzzy.GetStrings()->GetText());
  EXPECT_THAT(target.Form(), testing::HasSubstr("fine mild or very cold"));
}

TEST(StoredModel, IsStoredWithoutAParserToo) {
  TFuzzyLogic fuzzy, other;
  fuzzy.GetItems()->Add("v");
  const std::string form = Stored({&fuzzy});
  EXPECT_THAT(form, testing::HasSubstr("  NeedsUpdate = true\n"));
  Load(form, {&other});
  EXPECT_EQ(test::MessageOf([&] { other.GetStrings(); }), "Parser not assigned.  Cannot parse");
  TKelFuzzyLogicParser parser;
  other.SetParser(&parser);
  EXPECT_THAT(other.GetStrings()->GetText().Utf8(), testing::HasSubstr("(deffuzzy v"));
  fuzzy.SetParser(&parser);
  EXPECT_THAT(Stored({&fuzzy}), testing::HasSubstr("\"(deffuzzy v"));
  EXPECT_THAT(Stored({&fuzzy}), testing::Not(testing::HasSubstr("NeedsUpdate")));
}

TEST(StoredModel, OfTheCountedComponentIsItsText) {
  TIntfScene scene;
  scene.Fuzzy.SetThreshold(0.25);
  scene.Fuzzy.SetStrings(TString(Temperature));
  scene.Fuzzy.GetItems()->ContainsVariable("temperature")->ContainsFuzzySet("mild")->Add(20, 0.5);
  const std::string form = scene.Form();
  EXPECT_THAT(form, testing::HasSubstr("(20.0000 0.5000)"));
  TIntfScene target;
  target.Fuzzy.SetStrings(TString("(deffuzzy old (values (term t ((0 1)))))"));
  int added = 0;
  target.Fuzzy.SetOnVariableAdded([&](const Ref<IFuzzyVariable>&) { ++added; });
  target.Load(form);
  EXPECT_EQ(added, 1);
  EXPECT_TRUE(EqualProperties(scene.Fuzzy, target.Fuzzy));
  EXPECT_EQ(target.Form(), form);
  const Ref<IFuzzyVariable> variable = target.Fuzzy.GetItems()->ContainsVariable("temperature");
  EXPECT_EQ(variable->GetThreshold(), 0.25);
  EXPECT_EQ(variable->GetCount(),
            scene.Fuzzy.GetItems()->ContainsVariable("temperature")->GetCount());
  EXPECT_EQ(target.Fuzzy.GetItems()->GetCount(), 1);

  // A fault in the text shows when it is parsed; the variables of before are back then.
  std::string broken = form;
  broken.replace(broken.find("range"), 5, "rongo");
  const std::string fault = test::MessageOf([&] { target.Load(broken); });
  EXPECT_THAT(fault,
              testing::StartsWith("Stored form, line 5, TIFuzzyLogic.Strings: Parsing Error"));
  EXPECT_EQ(target.Fuzzy.GetItems()->ContainsVariable("temperature"), variable);
  EXPECT_EQ(target.Form(), form);
  variable->ContainsFuzzySet("cold")->Add(30, 1);
  EXPECT_THAT(target.Form(), testing::HasSubstr("(30.0000 1.0000)")) << "still tells the component";

  TIFuzzyLogic alone;
  EXPECT_THAT(test::MessageOf([&] { Load(Stored({&alone}), {&alone}); }),
              testing::HasSubstr("Parser not assigned.  Cannot parse"));
}

// Damaged forms

template <class Scene>
class DamagedModel : public testing::Test {};
using TScenes = testing::Types<TOwnedScene, TIntfScene>;
TYPED_TEST_SUITE(DamagedModel, TScenes);

TYPED_TEST(DamagedModel, IsLoadedOrLeavesEverythingAsItWas) {
  TypeParam scene, target;
  scene.Fuzzy.SetStrings(
      TString("(deffuzzy v (range 0 9) (values (term a ((0 1) (9 0))) (term b not a)))"));
  const std::string form = scene.Form();
  target.Fuzzy.SetStrings(TString(Temperature));
  const std::string before = target.Form();
  int loaded = 0;
  const auto attempt = [&](const std::string& damaged) {
    try {
      target.Load(damaged);
    } catch (const EStoredFormError& error) {
      ASSERT_EQ(target.Form(), before) << damaged;
      ASSERT_THAT(error.what(), testing::StartsWith("Stored form, line "));
      return;
    }
    ++loaded;
    TypeParam copy;
    copy.Load(target.Form());
    ASSERT_EQ(copy.Form(), target.Form()) << damaged;
    target.Load(before);
    ASSERT_EQ(target.Form(), before);
  };
  for (std::size_t i = 0; i < form.size(); ++i) {
    attempt(form.substr(0, i));
    for (const char byte : {'\0', '\n', ' ', '"', '0', '9', '}', '\xFF'}) {
      std::string damaged = form;
      damaged[i] = byte;
      attempt(damaged);
    }
  }
  EXPECT_GT(loaded, 20);
}

// Handlers

TYPED_TEST(DamagedModel, LeavesEverythingUsableWhateverHandlersDo) {
  TypeParam scene;
  scene.Fuzzy.SetStrings(TString(Temperature));
  const std::string form = scene.Form();
  using TLogic = typename TypeParam::TLogic;
  struct TOwner final : TComponent {
    TString ClassName() const override { return "TOwner"; }
  };
  enum TDeed { Throw, FreeBoth, Clear, LoadAgain, Unlink };
  for (const TDeed deed : {Throw, FreeBoth, Clear, LoadAgain, Unlink}) {
    TOwner owner;
    TMemoryStream first(form);
    LoadForm(first, owner, {TLogic::Class(), TKelFuzzyLogicParser::Class()});
    auto* fuzzy = dynamic_cast<TLogic*>(owner.FindComponent("fuzzy"));
    auto* parser = dynamic_cast<TKelFuzzyLogicParser*>(owner.FindComponent("parser"));
    int told = 0;
    fuzzy->SetOnVariableAdded([&](auto&&...) {
      if (++told > 1) return;
      if (deed == Throw) throw std::runtime_error("mischief");
      if (deed == FreeBoth) parser->Free(), fuzzy->Free();
      if (deed == Clear) fuzzy->GetItems()->Clear();
      if (deed == LoadAgain) Load(form, {fuzzy, parser});
      if (deed == Unlink) fuzzy->SetParser(nullptr), parser->SetFuzzyLogic(nullptr);
    });
    try {
      Load(form, {fuzzy, parser});
    } catch (const std::runtime_error&) {
      EXPECT_EQ(deed, Throw);
    } catch (const EException&) {
      EXPECT_TRUE(TypeParam::Counted);  // whose text is being parsed at that time
    }
    EXPECT_GE(told, 1) << deed;
    if (deed == FreeBoth) {
      EXPECT_EQ(owner.GetComponentCount(), 0);
    } else {
      fuzzy->SetOnVariableAdded(nullptr);
      Load(form, {fuzzy, parser});
      EXPECT_EQ(Stored({fuzzy, parser}), form) << deed;
    }
  }
}

TEST(StoredModel, LetsHandlersDoAwayWithWhatIsReplaced) {
  for (const bool fails : {false, true}) {
    TOwnedScene scene;
    TIntfScene counted;
    counted.Fuzzy.SetName("counted");
    counted.Fuzzy.SetStrings(TString("(deffuzzy v (values (term a ((0 1)))))"));
    TFuzzyVariable* freed = scene.Fuzzy.GetItems()->Add("freed");
    TFuzzyVariable* moved = scene.Fuzzy.GetItems()->Add("moved");
    TFuzzyLogic other;
    const Ref<IFuzzyVariable> kept = counted.Fuzzy.GetItems()->ContainsVariable("v");
    const std::string form = Stored({&scene.Fuzzy, &counted.Fuzzy});
    counted.Parser.SetOnParsed([&](TObject*) {
      freed->Free();
      moved->SetCollection(other.GetItems());
      counted.Fuzzy.GetItems()->Add(kept);
      if (fails) throw EListError("mischief");
    });
    EXPECT_EQ(test::MessageOf([&] { Load(form, {&scene.Fuzzy, &counted.Fuzzy}); }).empty(), !fails);
    EXPECT_EQ(scene.Fuzzy.GetItems()->GetCount(), fails ? 0 : 2);
    EXPECT_EQ(other.GetItems()->IndexOf("moved"), 0);
    ASSERT_EQ(counted.Fuzzy.GetItems()->ContainsVariable("v"), kept);
    int changes = 0;
    counted.Fuzzy.SetOnFuzzySetChange([&](auto&&...) { ++changes; });
    kept->ContainsFuzzySet("a")->Clear();
    EXPECT_GT(changes, 0) << "still wired";
  }
}

// Objects of the counted model in a component of the application

class TGauge final : public TComponent {
 public:
  TString ClassName() const override { return "TGauge"; }
  void DefineProperties(TFiler& filer) override {
    TComponent::DefineProperties(filer);
    filer.DefineObject("Level", *Level);
    filer.DefineObject("Alarm", *Alarm);
    filer.DefineField("Limit", Limit, 0);
  }
  Ref<TIFuzzyVariable> Level = TIFuzzyVariable::Create("level");
  TOwned<TFuzzyVariable> Alarm{TFuzzyVariable::Create()};
  int Limit = 0;
};

TEST(StoredModel, HoldsVariablesOfEitherModelInOtherComponents) {
  TGauge gauge, other;
  TKelFuzzyLogicParser parser;
  parser.SetName("parser");
  gauge.Level->SetParser(parser.GetInterface());
  gauge.Level->SetMaximum(50);
  gauge.Level->SetThreshold(0.5);
  gauge.Level->Add("full")->Add(10, 1);
  gauge.Level->Add("empty")->Add(0, 1);
  gauge.Level->ContainsFuzzySet("empty")->SetDefined(false);
  gauge.Alarm->GetItems()->Add("on")->SetSetType(fstTriangle);
  std::string form = Stored({&gauge, &parser});
  const std::string items = "    Items = {\n";
  form.insert(form.find(items) + items.size(), "LoadFactor = 0.75\nHashType = 2\nCapacity = 16\n");

  TKelFuzzyLogicParser reader;
  reader.SetName("parser");
  const Ref<IFuzzySet> held = other.Level->Add("held");
  int changes = 0;
  other.Level->SetOnChange([&](TObject*) { ++changes; });
  Load(form, {&other, &reader});
  EXPECT_TRUE(EqualProperties(gauge, other));
  EXPECT_EQ(changes, 3);
  EXPECT_EQ(other.Level->GetParser(), reader.GetInterface());
  const Ref<IFuzzySet> full = other.Level->ContainsFuzzySet("full");
  EXPECT_EQ(full->GetVariable().Get(), other.Level.Get());
  EXPECT_EQ(full->GetParser(), reader.GetInterface());
  EXPECT_EQ(other.Level->ContainsFuzzySet("empty")->GetIndex(), 1);
  EXPECT_EQ(held->GetVariable().Get(), other.Level.Get()) << "as after a Clear";

  // A fault behind them takes them back, the very objects; so does a name that comes twice.
  TFuzzySet* on = other.Alarm->GetItems()->GetItem(0);
  for (const auto& [what, by] :
       {std::pair<std::string, std::string>{"SetType = fstTriangle", "SetType = fst"},
        {"Name = \"empty\"", "Name = \"full\""}}) {
    std::string broken = form;
    broken.replace(broken.find(what), what.size(), by);
    EXPECT_THROW(Load(broken, {&other, &reader}), EStoredFormError);
    EXPECT_EQ(other.Level->ContainsFuzzySet("full"), full);
    EXPECT_EQ(other.Alarm->GetItems()->GetItem(0), on);
    EXPECT_TRUE(EqualProperties(gauge, other));
  }
  other.Level->Remove(full);
  EXPECT_EQ(other.Level->GetCount(), 1);
}

TEST(StoredModel, TellsOfASetThatIsLoadedWhereItStands) {
  TOwnedScene scene;
  scene.Fuzzy.SetStrings(TString(Temperature));
  TFuzzySets& sets = *scene.Fuzzy.GetItems()->GetItem(0)->GetItems();
  TFuzzySetValue* point = sets[0]->GetValues()->GetItem(1);
  const std::string form = Stored({sets[1]});
  int changes = 0;
  scene.Fuzzy.SetOnFuzzySetChange([&](TObject*, TFuzzySet*) { ++changes; });
  const TPin pinned(point);
  Load(form, {sets[0]});
  EXPECT_EQ(changes, 1);
  EXPECT_TRUE(EqualProperties(*sets[0], *sets[1]));
  EXPECT_EQ(sets[0]->GetSetType(), fstTriangle);
  EXPECT_TRUE(point->IsFreed());
  EXPECT_EQ(sets.IndexOf("mild"), 0);
  EXPECT_THAT(scene.Fuzzy.GetStrings()->GetText().Utf8(),
              testing::HasSubstr("(term mild (tri 0.0000"));
}

TEST(StoredModel, LoadsPartsOfAModelAndTakesThemBack) {
  TOwnedScene scene;
  scene.Fuzzy.SetStrings(TString("(deffuzzy v (range 5 10) (values (term a (tri 5 6 7))))"));
  const std::string before = scene.Form();
  TFuzzyVariable* variable = scene.Fuzzy.GetItems()->GetItem(0);
  TFuzzySet* set = variable->GetItems()->GetItem(0);
  TFuzzySetValue* point = set->GetValues()->GetItem(0);
  EXPECT_THROW(Load("TFuzzyVariable {\nMaximum = 1\nMinimum = 0\nx = 1\n", {variable}),
               EStoredFormError);
  EXPECT_THROW(Load("TFuzzySetValue {\nX = 6\nY = 1\n}\njunk", {point}), EStoredFormError);
  EXPECT_EQ(scene.Form(), before);
  EXPECT_EQ(point->GetIndex(), 0);

  const std::string list = Stored({scene.Fuzzy.GetItems()});
  variable->SetName("w");
  scene.Fuzzy.GetStrings();
  Load(list, {scene.Fuzzy.GetItems()});
  EXPECT_THAT(scene.Form(), testing::HasSubstr("(deffuzzy v \\r\\n")) << "the text is made anew";
}

TEST(StoredModel, OfTheCountedComponentHasVariablesThatWereEntered) {
  TIntfScene scene, target;
  const Ref<IFuzzyVariable> variable = scene.Fuzzy.NewVariable("v");  // it has no parser
  variable->Add("a");
  scene.Fuzzy.GetItems()->Add(variable);
  target.Load(scene.Form());
  ASSERT_TRUE(target.Fuzzy.GetItems()->ContainsVariable("v"));
  variable->SetUnits("K");
  target.Load(scene.Form());
  EXPECT_EQ(target.Fuzzy.GetItems()->ContainsVariable("v")->GetUnits(), "K");
  scene.Fuzzy.GetItems()->Remove(variable);
  target.Load(scene.Form());
  EXPECT_EQ(target.Fuzzy.GetItems()->GetCount(), 0);
}

/// A component that holds a counted model with its parser.
class TCase final : public TComponent {
 public:
  TString ClassName() const override { return "TCase"; }
  void DefineProperties(TFiler& filer) override {
    TComponent::DefineProperties(filer);
    filer.DefineObject("Parser", Scene.Parser);
    filer.DefineObject("Fuzzy", Scene.Fuzzy);
  }
  TCountedScene Scene;
};

TEST(StoredModel, StandsInOtherComponentsAsAWhole) {
  TCase original, loaded, copy;
  original.Scene.Fuzzy.SetName("fuzzy");
  original.Scene.Parser.SetName("parser");
  original.Scene.Fuzzy.SetStrings(TString(Temperature));
  const std::string form = Stored({&original});
  loaded.Scene.Fuzzy.SetParser(nullptr);
  loaded.Scene.Parser.SetFuzzyLogic(nullptr);
  Load(form, {&loaded});
  EXPECT_TRUE(EqualProperties(original, loaded));
  EXPECT_EQ(loaded.Scene.Fuzzy.GetItems()->GetCount(), 1);
  EXPECT_EQ(loaded.Scene.Parser.GetFuzzyLogic(), &loaded.Scene.Fuzzy);
  copy.Assign(&original);
  EXPECT_EQ(copy.Scene.Fuzzy.GetItems()->GetCount(), 1);

  const Ref<IFuzzyVariable> before = loaded.Scene.Fuzzy.GetItems()->ContainsVariable("temperature");
  EXPECT_THROW(Load(form + "junk", {&loaded}), EStoredFormError);
  EXPECT_EQ(loaded.Scene.Fuzzy.GetItems()->ContainsVariable("temperature"), before);
  EXPECT_EQ(Stored({&loaded}), form);
}

TEST(StoredModel, CopiesAComponentWithAllThatIsInIt) {
  TOwnedScene scene, other;
  scene.Fuzzy.SetStrings(TString(Temperature));
  scene.Fuzzy.GetItems()->GetItem(0)->GetItems()->GetItem(0)->SetComment("kept");
  other.Fuzzy.Assign(&scene.Fuzzy);
  EXPECT_TRUE(EqualProperties(scene.Fuzzy, other.Fuzzy));
  EXPECT_EQ(other.Fuzzy.GetParser(), &other.Parser);
  TIntfScene counted, copy;
  EXPECT_THROW(counted.Fuzzy.Assign(&scene.Fuzzy), EConvertError);
  counted.Fuzzy.SetStrings(TString(Temperature));
  copy.Fuzzy.Assign(&counted.Fuzzy);
  EXPECT_TRUE(EqualProperties(counted.Fuzzy, copy.Fuzzy));
  EXPECT_EQ(copy.Fuzzy.GetItems()->GetCount(), 1);
}

}  // namespace
}  // namespace fzy
