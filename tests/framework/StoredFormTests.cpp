#include <cmath>
#include <limits>

#include <gmock/gmock.h>

#include "fuzzylogic/framework/Collection.h"
#include "fuzzylogic/framework/Properties.h"
#include "fuzzylogic/framework/Strings.h"
#include "tests/support/Forms.h"

namespace fzy {
namespace {

using test::Load;
using test::Stored;

enum class TSize : std::uint8_t { Small, Large };
std::span<const char* const> ValueNames(TSize) noexcept {
  static constexpr const char* names[] = {"Small", "Large"};
  return names;
}

class TPart;

/// Parts that have parts.
class TParts final : public TCollection {
 public:
  TString ClassName() const override { return "TParts"; }
  TPart* At(int index) const;
  TPart* Add(const TString& name);

 protected:
  TCollectionItem* AddItem() override { return nullptr; }
  TCollectionItem* NewItem() override;
};

class TPart final : public TCollectionItem {
 public:
  TPart() { ++Alive; }
  ~TPart() override { --Alive; }
  TString ClassName() const override { return "TPart"; }
  void DefineProperties(TFiler& filer) override {
    filer.DefineField("Name", Name);
    filer.DefineObject("Parts", Parts);
  }

  static inline int Alive = 0;
  TString Name;
  TParts Parts;
};

TCollectionItem* TParts::NewItem() { return new TPart; }
TPart* TParts::At(int index) const { return static_cast<TPart*>(ItemAt(index)); }
TPart* TParts::Add(const TString& name) {
  auto* part = new TPart;
  part->Name = name;
  part->SetCollection(this);
  return part;
}

class TGear final : public TComponent {
 public:
  static TComponentClass Class() {
    static constexpr TComponentDescriptor descriptor{
        "TGear", [](TComponent* owner) -> TComponent* { return new TGear(owner); }};
    return &descriptor;
  }
  using TComponent::TComponent;
  TString ClassName() const override { return "TGear"; }
  void DefineProperties(TFiler& filer) override {
    TComponent::DefineProperties(filer);
    filer.DefineField("On", On, false);
    filer.Define(
        "Teeth", [this] { return Teeth; },
        [this](std::uint8_t value) {
          if (value == 13) throw EListError("Nobody makes 13 teeth");
          Teeth = value;
        },
        12);
    filer.DefineField("Ratio", Ratio);
    filer.DefineField("Label", Label);
    filer.DefineField("Size", Size, TSize::Small);
    filer.DefineLink(
        "Mate", [this] { return Mate; }, [this](TGear* value) { Mate = value; });
    filer.DefineIgnored("Weight");
    filer.DefineObject("Notes", Notes);
    filer.DefineObject("Parts", Parts);
    filer
        .Define(
            "Best", [this] { return Best; },
            [this](int value) {
              if (value >= Parts.GetCount()) throw EListError("No such part");
              Best = value;
            },
            -1)
        .IsLate = true;
  }
  void Loaded() override {
    EXPECT_TRUE(Is(csLoading));
    TComponent::Loaded();
    if (Label == "broken") throw EListError("The gear is broken");
  }

  bool On = false;
  std::uint8_t Teeth = 12;
  double Ratio = 1;
  TString Label;
  TSize Size = TSize::Small;
  TGear* Mate = nullptr;
  TStrings Notes;
  TParts Parts;
  int Best = -1;
};

class TWheel final : public TComponent {
 public:
  using TComponent::TComponent;
  TString ClassName() const override { return "TWheel"; }
};

std::string Fault(const std::string& form, std::initializer_list<TPersistent*> objects) {
  try {
    Load(form, objects);
  } catch (const EStoredFormError& error) {
    return error.what();
  }
  return "none";
}

constexpr const char* TwoGears = R"(TGear "left" {
  Tag = -7
  Teeth = 40
  Ratio = 0.1
  Label = "\"a\"\\\t\r\n" +
    "ä€𝄞\u0001\uD800"
  Size = Large
  Mate = component "right"
  Notes = {
    "one"
    "two\n" +
      "lines" "\r\n"
  }
  Parts = {
    TPart {
      Name = "p"
      Parts = {
        TPart {
          Name = "q"
          Parts = {
          }
        }
      }
    }
  }
  Best = 0
}
TGear "right" {
  On = true
  Ratio = -0
  Label = ""
  Mate = component "left"
  Notes = {
  }
  Parts = {
  }
}
)";

/// Two gears as the form above has them.
struct TPair {
  TPair() {
    Left.SetName("left");
    Right.SetName("right");
  }
  void Fill() {
    Left.SetTag(-7);
    Left.Teeth = 40;
    Left.Ratio = 0.1;
    Left.Label = TString(u"\"a\"\\\t\r\n\u00E4\u20AC\U0001D11E\u0001") + TString(1, u'\xD800');
    Left.Size = TSize::Large;
    Left.Mate = &Right;
    Left.Notes.Add("one");
    Left.Notes.Add("two\nlines");
    Left.Parts.Add("p")->Parts.Add("q");
    Left.Best = 0;
    Right.On = true;
    Right.Ratio = -0.0;
    Right.Mate = &Left;
  }
  TGear Left, Right;
};

TEST(StoredForm, WritesWhatIsReadAgain) {
  TPair pair;
  pair.Fill();
  const std::string form = TwoGears;
  const std::string end = " \"\\r\\n\"";
  const std::string plain =
      form.substr(0, form.find(end)) + form.substr(form.find(end) + end.size());
  EXPECT_EQ(Stored({&pair.Left, &pair.Right}), plain);

  TPair other;
  other.Left.Parts.Add("replaced");
  Load(form, {&other.Right, &other.Left});
  EXPECT_EQ(Stored({&other.Left, &other.Right}), form);
  EXPECT_TRUE(EqualProperties(pair.Right, other.Right));
  EXPECT_FALSE(EqualProperties(pair.Left, other.Left)) << "a line ends differently";
  EXPECT_EQ(other.Left.Mate, &other.Right);
  EXPECT_EQ(other.Right.Mate, &other.Left);
  EXPECT_EQ(other.Left.Label, pair.Left.Label);
  EXPECT_EQ(other.Left.GetComponentState(), TComponentState());

  // As editors leave it: a byte order mark, ends of lines and blanks of their own, other orders.
  Load(
      "\xEF\xBB\xBF\r\nTGear\t{\r\nMate=none\r\nBest = 0\r\n\r\n   Weight = 7.5 \r\nLabel = \"a\" "
      "+ "
      "\"b\"\r\nParts = {\r\nTPart {\r\nParts = {\r\n}\r\nName = \"n\"\r\n}\r\n}\r\nNotes = "
      "{\r\n}\r\n"
      "Ratio = 1e300\r\n}",
      {&other.Left});
  EXPECT_EQ(Stored({&other.Left}),
            "TGear {\n  Ratio = 1e+300\n  Label = \"ab\"\n  Mate = none\n  Notes = {\n  }\n"
            "  Parts = {\n    TPart {\n      Name = \"n\"\n      Parts = {\n      }\n    }\n  }\n"
            "  Best = 0\n}\n")
      << "what stands at its default is not stored, nor is a name that is empty";
}

TEST(StoredForm, KeepsEveryBitOfNumbersAndTexts) {
  TGear gear, other;
  using TLimits = std::numeric_limits<double>;
  for (const double number : {0.0, -0.0, 0.1, 1.0 / 3, TLimits::max(), TLimits::denorm_min(),
                              TLimits::infinity(), 123456789.0123456789, 5e-324}) {
    gear.Ratio = number;
    Load(Stored({&gear}), {&other});
    EXPECT_TRUE(EqualProperties(gear, other)) << number;
    EXPECT_EQ(std::signbit(other.Ratio), std::signbit(number));
  }
  std::u16string units;
  for (char32_t unit = 0; unit < 0x10000; ++unit) units += static_cast<char16_t>(unit);
  gear.Label = units;
  gear.Notes.Add(units);
  Load(Stored({&gear}), {&other});
  EXPECT_EQ(other.Label, gear.Label);
  EXPECT_EQ(other.Notes.GetString(0), gear.Label);
}

TEST(StoredForm, TellsAFaultByLineAndPropertyAndChangesNothing) {
  const std::string start = "TGear \"left\" {\n  Ratio = 1\n  Label = \"\"\n  Mate = none\n";
  const std::string lists = "  Notes = {\n  }\n  Parts = {\n  }\n";
  const std::string right =
      "}\nTGear \"right\" {\n  Ratio = 1\n  Label = \"\"\n  Mate = none\n" + lists + "}\n";
  const std::string line = "Stored form, line ";
  const struct {
    std::string Form;
    std::string Fault;
  } cases[] = {
      {"", line + "0: the form has no TGear \"left\""},
      {start, line + "4, TGear: the form ends here, too early"},
      {start + lists + "}\n", line + "9: the form has no TGear \"right\""},
      {start + lists + right + "TGear \"left\" {",
       line + "19: there is no place for a TGear \"left\""},
      {"TWheel \"left\" {", line + "1: there is no place for a TWheel \"left\""},
      {"TGear left {", line + R"(1: expected class "name" {, not "TGear left {")"},
      {start + lists + "  Colour = 1\n", line + "9, TGear.Colour: a TGear has no such property"},
      {start + lists + "  Ratio = 2\n", line + "9, TGear.Ratio: stands here twice"},
      {start + "  Notes = {\n  }\n" + right, line + "7, TGear.Parts: is missing"},
      {start + lists + "  Name = \"x\"\n",
       line + "9, TGear.Name: the name stands behind the class"},
      {start + "  Size = Huge\n",
       line + "5, TGear.Size: expected one of Small, Large, not \"Huge\""},
      {start + "  On = yes\n", line + "5, TGear.On: expected true or false, not \"yes\""},
      {start + "  Teeth = 1.5\n", line + "5, TGear.Teeth: expected a whole number, not \"1.5\""},
      {start + "  Teeth = 256\n", line + "5, TGear.Teeth: The value must lie between 0 and 255"},
      {start + "  Teeth = 13\n", line + "5, TGear.Teeth: Nobody makes 13 teeth"},
      {start + "  Weight = {\n", line + "5, TGear.Weight: expected a value, not \"{\""},
      {start + "  Notes = \"x\"\n",
       line + R"(5, TGear.Notes: expected { at the end of the line, not ""x"")"},
      {start + "  Notes = {\n (1 2)\n", line + "6, TGear.Notes: a TStrings has no such entry"},
      {start + "  Notes = {\n \"a\" \"b\"\n",
       line + R"(6, TGear.Notes: expected \n, \r\n or \r, not "b")"},
      {start + "  Notes = {\n \"a\" b\n",
       line + "6, TGear.Notes: expected the end of the line, not \"b\""},
      {start + "  Notes = {\n \"\\q\"\n",
       line + "6, TGear.Notes: the text holds an unknown escape"},
      {start + "  Notes = {\n \"\xE4\"\n", line + "6, TGear.Notes: the text is not UTF-8"},
      {start + "  Notes = {\n \"\t\"\n",
       line + "6, TGear.Notes: the text holds a control character"},
      {start + "  Notes = {\n \"a\n", line + "6, TGear.Notes: the text has no end"},
      {"TGear \"left\" +\n" + std::string(100'000, ' ') + "\"b\" x\n",
       line + R"(2: expected class "name" {, not "TGear "left" +")"},
      {start + "  Parts = {\n TWheel {\n",
       line + "6, TGear.Parts[0]: expected TPart {, not \"TWheel {\""},
      {start + "  \"a\"\n", line + "5, TGear: a TGear has no such entry"},
      {start + "  Parts = {\n TPart {\n Name = \"\"\n Parts = {\n }\n }\n TPart {\n Name = 1\n",
       line + "12, TGear.Parts[1].Name: expected a text in quotes, not \"1\""},
      {start + lists + "  Best = 0\n" + right, line + "9, TGear.Best: No such part"},
      {"TGear \"left\" {\n  Ratio = 1\n  Label = \"\"\n  Mate = component \"x\"\n" + lists + right,
       line + "4, TGear.Mate: there is no component \"x\""},
      {"TGear \"left\" {\n  Ratio = 1\n  Label = \"broken\"\n  Mate = component \"right\"\n" +
           lists + right,
       line + "1, TGear: The gear is broken"},
  };
  TPair pair;
  pair.Fill();
  const TPart* part = pair.Left.Parts.At(0);
  const std::string before = Stored({&pair.Left, &pair.Right});
  const int alive = TPart::Alive;
  for (const auto& [form, fault] : cases) {
    EXPECT_EQ(Fault(form, {&pair.Left, &pair.Right}), fault) << form;
    EXPECT_EQ(Stored({&pair.Left, &pair.Right}), before) << form;
    EXPECT_EQ(pair.Left.Parts.At(0), part);
    EXPECT_EQ(TPart::Alive, alive);
    EXPECT_FALSE(pair.Left.Is(csLoading) || pair.Right.Is(csLoading));
  }
  TWheel wheel;
  wheel.SetName("right");
  EXPECT_EQ(Fault("TGear \"left\" {\n  Ratio = 1\n  Label = \"\"\n  Mate = component \"right\"\n" +
                      lists + "}\nTWheel \"right\" {\n}\n",
                  {&pair.Left, &wheel}),
            line + "4, TGear.Mate: a TWheel is not what this can be linked to");
}

TEST(StoredForm, KeepsTheExceptionBehindAFault) {
  TGear gear;
  try {
    Load("TGear {\n  Teeth = 13\n", {&gear});
    FAIL();
  } catch (const EStoredFormError& error) {
    EXPECT_EQ(error.GetLine(), 2);
    EXPECT_EQ(error.GetProperty(), "TGear.Teeth");
    EXPECT_THROW(std::rethrow_if_nested(error), EListError);
  }
}

TEST(StoredForm, NeverReachesTheEndOfTheStack) {
  TGear gear;
  const auto repeated = [](const std::string& part) {
    std::string text;
    for (int i = 0; i < 1'000'000; ++i) text += part;
    return text;
  };
  EXPECT_THAT(Fault("TGear {\n" + repeated("Parts = {\nTPart {\n"), {&gear}),
              testing::HasSubstr("too deep"));
  EXPECT_THAT(Fault("TGear {\n" + repeated("TPart {\n"), {&gear}),
              testing::HasSubstr("no such entry"));
  TParts* parts = &gear.Parts;
  for (int i = 0; i < 1000; ++i) parts = &parts->Add("p")->Parts;
  EXPECT_THROW(Stored({&gear}), EConvertError);
  EXPECT_EQ(TPart::Alive, 1000);
}

TEST(StoredForm, IsNotWrittenWithNamesThatDoNotRead) {
  struct TOdd final : TComponent {
    TString ClassName() const override { return Class; }
    void DefineProperties(TFiler& filer) override { filer.DefineField(Property, Field); }
    TString Class = "TOdd";
    const char* Property = "Field";
    int Field = 0;
  };
  TOdd odd;
  EXPECT_EQ(Stored({&odd}), "TOdd {\n  Field = 0\n}\n");
  odd.Property = "Gr\u00F6\u00DFe";
  EXPECT_THROW(Stored({&odd}), EConvertError);
  odd.Property = "Field";
  odd.Class = "app::TOdd";
  EXPECT_THROW(Stored({&odd}), EConvertError);
}

TEST(StoredForm, FollowsLinksOutOfTheForm) {
  TWheel owner;
  auto* mate = new TGear(&owner);
  auto* gear = new TGear(&owner);
  gear->Mate = mate;
  const std::string unnamed = Stored({gear});
  EXPECT_EQ(unnamed.find("Mate"), std::string::npos);
  Load(unnamed, {gear});
  EXPECT_EQ(gear->Mate, mate) << "a link that is not stored stays as it is";
  EXPECT_THROW(Stored({gear, mate}), EConvertError) << "in the form it needs a name";
  for (TGear* each : {gear, mate}) each->SetName("same");
  EXPECT_THROW(Stored({gear, mate}), EConvertError) << "of its own";

  mate->SetName("mate");
  const std::string named = Stored({gear});
  gear->Mate = nullptr;
  Load(named, {gear});
  EXPECT_EQ(gear->Mate, mate) << "found beside it";
  TGear alone;
  EXPECT_EQ(Fault(named, {&alone}),
            "Stored form, line 4, TGear.Mate: there is no component \"mate\"");
  alone.Mate = mate;
  Load(named, {&alone});
  EXPECT_EQ(alone.Mate, mate) << "the link led there before";
}

TEST(StoredForm, MakesComponents) {
  TWheel owner;
  TMemoryStream whole(TwoGears);
  LoadForm(whole, owner, {TGear::Class()});
  ASSERT_EQ(owner.GetComponentCount(), 2);
  auto* left = dynamic_cast<TGear*>(owner.FindComponent("left"));
  ASSERT_NE(left, nullptr);
  EXPECT_EQ(left->Mate, owner.FindComponent("right"));

  TMemoryStream cut(std::string(TwoGears).substr(0, 460));
  EXPECT_THROW(LoadForm(cut, owner, {TGear::Class()}), EStoredFormError);
  TMemoryStream foreign("TWheel {\n}\n");
  EXPECT_THROW(LoadForm(foreign, owner, {TGear::Class()}), EStoredFormError);
  EXPECT_EQ(owner.GetComponentCount(), 2);
}

TEST(StoredForm, CopiesAComponentOfItsClass) {
  TPair pair;
  pair.Fill();
  TGear copy;
  copy.Parts.Add("replaced");
  copy.SetName("copy");
  copy.Assign(&pair.Left);
  EXPECT_EQ(copy.GetName(), "copy");
  EXPECT_EQ(copy.Mate, nullptr);
  copy.SetName("left");
  copy.Mate = pair.Left.Mate;
  EXPECT_TRUE(EqualProperties(copy, pair.Left));
  TWheel wheel;
  EXPECT_THROW(copy.Assign(&wheel), EConvertError);
  pair.Right.Label = "broken";
  EXPECT_THROW(copy.Assign(&pair.Right), EListError);
  EXPECT_TRUE(EqualProperties(copy, pair.Left));
}

}  // namespace
}  // namespace fzy
