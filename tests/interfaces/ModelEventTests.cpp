#include <functional>
#include <memory>
#include <set>

#include <gtest/gtest.h>

#include "fuzzylogic/framework/Strings.h"
#include "fuzzylogic/interfaces/IFuzzyLogic.h"
#include "tests/interfaces/Tallied.h"
#include "tests/support/Refusal.h"

// The events of variables and component in their order, and what handlers may do.

namespace fzy::test {
namespace {

class TListedVariable final : public TTallied<TIFuzzyVariable> {
 public:
  TListedVariable() { FFuzzySetClass = TTalliedSet::Class(), All.insert(this); }
  ~TListedVariable() override { All.erase(this); }
  static inline std::set<IFuzzyVariable*> All;
};

/// Variables "t" and "u", each with sets "cold" and "hot", in a component, or not, and a log
/// of what happens from then on: "+t.cold", "-t.cold", "~t.cold" (its points) of the variable, or
/// in braces of the component; "*" and "t/2" for `OnChange` and `OnVariableChange` with the
/// number of sets; "{new t}", "{gone t}" for the component's variables.
struct TScene {
  explicit TScene(bool wired) {
    Fuzzy->SetAutoTerms(false);
    Listen(*T);
    Listen(*U);
    if (wired) Fuzzy->GetItems()->Add(T), Fuzzy->GetItems()->Add(U);
    Listen(*Fuzzy);  // not before: the log begins here
  }
  static Ref<IFuzzyVariable> Make(const char* name) {
    static constexpr TIFuzzyVariableDescriptor descriptor{
        "TListedVariable", []() -> TIFuzzyVariable* { return new TListedVariable; }};
    const Ref<TIFuzzyVariable> variable = TIFuzzyVariable::Create(name, &descriptor);
    variable->SetMaximum(10);
    for (const char* term : {"cold", "hot"}) variable->Add(term)->Add(5, 1);
    return variable;
  }
  void Write(const std::string& entry) {
    Log += Log.empty() ? entry : ' ' + entry;
    if (Handler) Handler();
  }
  TIFuzzySetEvent OfSet(const std::string& before, const std::string& behind = "") {
    return [this, before, behind](const Ref<IFuzzyVariable>& v, const Ref<IFuzzySet>& set) {
      Write(before + v->GetName().Utf8() + '.' + set->GetName().Utf8() + behind);
    };
  }
  TIFuzzyVariableEvent OfVariable(const std::string& before) {
    return
        [this, before](const Ref<IFuzzyVariable>& v) { Write(before + v->GetName().Utf8() + '}'); };
  }
  void Listen(IFuzzyVariable& variable) {
    variable.SetOnFuzzySetAdded(OfSet("+"));
    variable.SetOnFuzzySetDeleted(OfSet("-"));
    variable.SetOnFuzzySetChange(OfSet("~"));
    variable.SetOnChange([this](TObject*) { Write("*"); });
    variable.SetOnVariableChange([this](const Ref<IFuzzyVariable>& v) {
      Write(v->GetName().Utf8() + '/' + std::to_string(v->GetCount()));
    });
  }
  void Listen(TIFuzzyLogic& fuzzy) {
    fuzzy.SetOnFuzzySetAdded(OfSet("{+", "}"));
    fuzzy.SetOnFuzzySetDeleted(OfSet("{-", "}"));
    fuzzy.SetOnFuzzySetChange(OfSet("{~", "}"));
    fuzzy.SetOnVariableAdded(OfVariable("{new "));
    fuzzy.SetOnVariableDeleted(OfVariable("{gone "));
    fuzzy.SetOnVariableChange(OfVariable("{changed "));
    fuzzy.SetOnChange([this](TObject*) { Write("{change}"); });
  }

  std::string Log;
  std::function<void()> Handler;
  std::unique_ptr<TIFuzzyLogic> Fuzzy = std::make_unique<TIFuzzyLogic>();
  Ref<IFuzzyVariable> T = Make("t"), U = Make("u");
  Ref<IFuzzySet> Cold() const { return T->ContainsFuzzySet("cold"); }
};

using TCase = std::pair<void (*)(TScene& s), const char*>;
const TCase Cases[] = {
    // clang-format off
    {[](TScene& s) { s.T->Add("mild"); s.T->Add("__Empty"); }, "+t.mild * t/3"},
    {[](TScene& s) { const Ref<IFuzzySet> old = s.Cold(); s.T->Add("cold"); s.T->Remove(old); }, "+t.cold * t/2"},
    {[](TScene& s) { s.Cold()->SetName("cool"); }, "-t.cold * t/1 +t.cool * t/2"},
    {[](TScene& s) { const Ref<IFuzzySet> cold = s.Cold(); cold->SetDefined(false);
        cold->SetName("cool"); s.T->Add(cold); }, "-t.cold * t/1"},
    {[](TScene& s) { s.Cold()->Hedge(bfhMultiply, 0.5, true); },
     "~t.cold -t.cold * t/1 +t.cold * 0.5000 * t/2"},
    {[](TScene& s) { s.U->Add(s.Cold()); }, "-t.cold * t/1 +u.cold * u/2"},
    {[](TScene& s) { s.Cold()->SetVariable(nullptr); }, "-t.cold * t/1"},
    {[](TScene& s) { s.T->Remove(s.Cold()); }, "-t.cold * t/1"},
    {[](TScene& s) { s.T->Clear(); }, "* t/0"},
    {[](TScene& s) { s.T->BeginUpdate(); s.T->Add("mild"); s.T->EndUpdate(); }, "+t.mild * t/3"},
    {[](TScene& s) { s.U->AssignFuzzySets(s.T); },
     "* u/0 ~u.hot +u.hot * u/1 ~u.cold +u.cold * u/2"},
    {[](TScene& s) { s.U->Assign(Ref<IInterface>(s.T)); },
     "* t/0 ~t.hot +t.hot * t/1 ~t.cold +t.cold * t/2 * t/2"},
    {[](TScene& s) { s.T->SetMinimum(20); s.T->SetMaximum(5); }, "* t/2 * t/2 * t/2 * t/2"},
    {[](TScene& s) { s.T->SetName("v"); s.T->SetName("v"); s.T->SetNumFunctionValues(9); },
     "* v/2 * v/2"},
    {[](TScene& s) { s.T->SetUnits("K"); s.T->SetThreshold(1.5);
        s.T->SetComment("c"); s.T->SetTag(1); s.Cold()->SetComment("c"); },
     ""},
    {[](TScene& s) { s.Cold()->SetXValues(0, 1); s.Cold()->Add(2, 1); s.Cold()->Delete(0); },
     "~t.cold ~t.cold ~t.cold"},
    {[](TScene& s) { s.Cold()->CreateTriangleFunctionValues(0, 1, 2); }, "~t.cold ~t.cold"},
    {[](TScene& s) { Query<IFuzzySet>(s.Cold()->Clone().Get())->Clear(); }, "~t.cold ~t.cold"},
    {[](TScene& s) { s.Cold()->Clone(s.U)->Add(6, 1); }, "~u.cold ~u.cold"},
    {[](TScene& s) { s.Cold()->Union(s.T->ContainsFuzzySet("hot"))->Clear(); },
     "~t.cold or hot ~t.cold or hot"},
    {[](TScene& s) { s.T->AssertRule(0.5, s.Cold(), s.T->ContainsFuzzySet("hot")); },
     "~t.cold ~t.cold ~t.hot or [cold > 0.5000]"},
    // clang-format on
};

TEST(ModelEvents, OfAVariableAreToldInOrderAndThroughItsComponent) {
  for (const auto& [act, log] : Cases) {
    TScene plain(false), wired(true);
    act(plain);
    EXPECT_EQ(plain.Log, log);
    act(wired);
    std::string unwired;  // the component's events are the variable's
    for (const char c : wired.Log) {
      if (c != '{' && c != '}') unwired += c;
    }
    EXPECT_EQ(unwired, plain.Log);
  }
}

const TCase Wirings[] = {
    // clang-format off
    {[](TScene& s) { s.Fuzzy->SetAutoTerms(true); s.T->Clear(); s.Listen(*s.T); s.Log.clear(); s.Fuzzy->GetItems()->Add(s.T);
        EXPECT_EQ(s.T->GetFuzzySetByName("medium")->GetValuesToString(), "((0.0000 0.0000) (5.0000 1.0000) (10.0000 0.0000) )"); },
     "+t.low * t/1 ~t.low ~t.low +t.medium * t/2 ~t.medium +t.high * t/3 ~t.high ~t.high {new t}"},
    {[](TScene& s) { s.Fuzzy->GetItems()->Remove(s.T); s.T->Add("y"); }, "{gone t} * t/3"},
    {[](TScene& s) { s.Fuzzy->GetItems()->Clear(); s.T->Add("y"); }, "* t/3"},
    {[](TScene& s) { s.Fuzzy = nullptr; s.T->Add("y"); }, "* t/3"},
    // One that was replaced keeps the handlers, which are safe when the component goes.
    {[](TScene& s) { s.Fuzzy->GetItems()->Add(s.Make("t")); s.T->Add("y"); s.Fuzzy = nullptr; s.T->Add("z"); },
     "{new t} {+t.y} * t/3 * t/4"},
    {[](TScene& s) { TIFuzzyLogic second; second.SetAutoTerms(false); second.SetOnFuzzySetAdded(s.OfSet("second+"));
        second.GetItems()->Add(s.T); s.Fuzzy->GetItems()->Clear(); s.T->Add("y"); },
     "second+t.y * t/3"},
    {[](TScene& s) { TFuzzyVariableTable table; table.Add(s.Make("v")); s.Fuzzy->SetItems(&table); s.T->Add("y"); },
     "{new v} * t/3"},
    {[](TScene& s) { TStrings names; names.Add("v"); EXPECT_THROW(s.Fuzzy->GetItems()->Assign(&names), EConvertError);
        EXPECT_EQ(MessageOf([&] { s.Fuzzy->Parse(); }), "Parser not assigned.  Cannot parse");
        EXPECT_EQ(s.Fuzzy->GetItems()->GetCount(), 2); },
     ""},
    {[](TScene& s) { EXPECT_EQ(s.T->GetThreshold(), 0.01); s.Fuzzy->SetThreshold(2); EXPECT_EQ(s.T->GetThreshold(), 1); }, ""},
    {[](TScene& s) { s.Fuzzy->UpdateVariable(s.T); s.Fuzzy->UpdateVariable(nullptr); }, "{changed t} {change}"},
    // clang-format on
};

TEST(ModelEvents, OfAComponentFollowItsWiring) {
  for (const auto& [act, log] : Wirings) {
    TScene scene(true);
    act(scene);
    EXPECT_EQ(scene.Log, log);
  }
}

struct TParser final : TFuzzyTextParser {
  TString ClassName() const override { return "TParser"; }
  void Parse(const TString& text, const TEncoding*) override { Text += text.Utf8(); }
  TString PrettyPrint(const TFuzzyVariable*) override { return {}; }
  TString PrettyPrint(const TFuzzySet*, bool) override { return {}; }
  std::string Text;
};

TEST(ModelEvents, MarkTheTextWhichIsParsedOnceItIsLoaded) {
  struct TLoading : TIFuzzyLogic {
    using TIFuzzyLogic::Loading;
  } fuzzy;
  TParser parser;
  fuzzy.SetParser(&parser);
  fuzzy.Loading();
  fuzzy.SetStrings(TString("v"));
  EXPECT_EQ(parser.Text, "");
  fuzzy.Loaded();
  EXPECT_EQ(parser.Text, "v");
  const Ref<IFuzzyVariable> variable = fuzzy.NewVariable("w");
  fuzzy.GetItems()->Add(variable);
  EXPECT_EQ(fuzzy.GetStrings()->GetText(), "v\n");
  variable->ContainsFuzzySet("low")->Clear();
  EXPECT_EQ(fuzzy.GetStrings()->GetText(), "w\n");
}

TEST(ModelEvents, LeaveEverythingSoundWhateverHandlersDo) {
  void (*const deeds[])(TScene & s) = {
      // clang-format off
      [](TScene&) { throw 1; },
      [](TScene& s) { s.T->Clear(); s.U->Clear(); for (const char* name : {"cold", "hot"}) s.T->Add(name)->Add(5, 1); },
      [](TScene& s) { s.Fuzzy->GetItems()->Clear(); s.T = s.Make("t"); s.U = s.Make("u"); },
      [](TScene& s) { s.T = s.Make("t"); s.U = s.Make("u"); s.Fuzzy.release()->Free(); throw 1; },
      [](TScene& s) { if (s.Cold()) s.U->Add(s.Cold()); s.T->Add("cold")->Add(5, 1); s.T->SetName("renamed"); },
      [](TScene& s) { for (IFuzzyVariable* v : TListedVariable::All) { v->SetOnChange(nullptr);
          v->SetOnVariableChange(nullptr); v->SetOnFuzzySetAdded(nullptr); v->SetOnFuzzySetDeleted(nullptr); } s.T->Clear();
          s.T = s.Make("t"); },
      // clang-format on
  };
  for (const auto& [act, log] : Cases) {
    for (const auto& deed : deeds) {
      bool done = true;
      for (int at = 0; done; ++at) {
        TScene s(true);
        int event = 0;
        done = false;
        s.Handler = [&] {
          if (event++ != at) return;
          done = true;
          deed(s);
        };
        try {
          act(s);
        } catch (int) {
          EXPECT_TRUE(done && (&deed == &deeds[0] || &deed == &deeds[3]));
          EXPECT_FALSE(&deed == &deeds[0] && s.Log.ends_with("*")) << "the second half is told";
        }
        s.Handler = nullptr;
        s.Listen(*s.T);
        s.Log.clear();
        s.T->Add("next")->Add(20, 1);
        EXPECT_TRUE(s.Log.starts_with("+") && s.Log.find(" * ") != std::string::npos) << s.Log;
        s.Fuzzy = nullptr;
        s.T = s.U = nullptr;
        while (!TListedVariable::All.empty())  // sets that entered tables late
          Ref<IFuzzyVariable>(*TListedVariable::All.begin())->Clear();
        ASSERT_EQ(TTalliedSet::Live, 0) << log << ", event " << at << ", deed " << &deed - deeds;
      }
    }
  }
}

}  // namespace
}  // namespace fzy::test
