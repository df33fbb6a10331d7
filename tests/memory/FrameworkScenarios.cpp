#include "fuzzylogic/common/NamedCollection.h"
#include "fuzzylogic/common/StringStream.h"
#include "fuzzylogic/framework/Component.h"
#include "fuzzylogic/framework/Encoding.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/framework/InterfaceList.h"
#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/language/KelFuzzyLogicParser.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"
#include "fuzzylogic/vocabulary/FuzzyNames.h"
#include "tests/memory/Scenario.h"
#include "tests/support/Refusal.h"

namespace fzy::test {
namespace {

const TString Long = "a text that has memory of its own";

/// Texts, and what is made of them.
struct TTexts {
  std::string Show() const { return Text.Utf8() + '|' + Message.Get().Utf8() + '|' + Result; }

  TString Text = Long;
  TMessage Message{u"a message that has memory of its own"};
  std::string Result;
};

class TNamed final : public TGCollectionItem {
 public:
  explicit TNamed(const TString& name) : FName(name) {}
  TString ClassName() const override { return "TNamed"; }
  const TString& GetItemName() const override { return FName; }
  void SetName(const TString& value) { StoreKey(FName, value), Changed(false); }
  void Assign(TPersistent* source) override { SetName(dynamic_cast<TNamed&>(*source).FName); }
  void Notification(TGCollectionItem*, TOperation) override { ++Told; }

  int Told = 0;

 private:
  TString FName;
};

class TNames final : public TGCollection {
 public:
  TString ClassName() const override { return "TNames"; }
  TNamed* At(int index) const { return static_cast<TNamed*>(ItemAt(index)); }
  TNamed* Add(const TString& name) {
    TOwned<TNamed> item(new TNamed(name));
    item->SetCollection(this);
    return item.Release();
  }

 protected:
  TCollectionItem* AddItem() override { return Add(""); }
};

/// Two lists, one of them long enough that its names are kept in order once they are looked up.
struct TLists {
  TLists() {
    for (int i = 0; i < 20; ++i) List.Add("an item of the list " + TString(std::to_string(i)));
    for (int i = 0; i < 3; ++i) Other.Add("an item of the other " + TString(std::to_string(i)));
  }
  static std::string Show(const TNames& list) {
    std::string text;
    for (int i = 0; i < list.GetCount(); ++i) {
      const TNamed* item = list.At(i);
      const bool isRight = item->GetCollection() == &list && item->GetIndex() == i &&
                           list.IndexOf(item->GetItemName()) >= 0;
      text += item->GetItemName().Utf8() + (isRight ? ";" : "!;") + std::to_string(item->Told);
    }
    return text + (list.IsUpdating() ? "updating" : "") + '\n';
  }
  std::string Show() const { return Show(List) + Show(Other) + std::to_string(Result); }
  void LookUp() {
    for (int i = 0; i < 20; ++i) Result = List.IndexOf(List.At(19)->GetItemName());
  }

  TNames List, Other;
  int Result = 0;
};

/// Components that own and watch each other.
struct TComponents {
  struct TPart final : TComponent {
    using TComponent::Loading;
    using TComponent::TComponent;
    TString ClassName() const override { return "TPart"; }
    void Notification(TComponent* component, TOperation operation) override {
      TComponent::Notification(component, operation);
      if (operation == opRemove) ++Removed;
    }
    int Removed = 0;
  };
  TComponents() {
    for (int i = 0; i < 4; ++i) (new TPart(&Owner))->SetName("a part of the owner");
    Owner.SetName("the owner of the parts");
    Other.SetName("the owner of no parts");
  }
  std::string Show() {
    std::string text = Owner.GetName().Utf8() + Other.GetName().Utf8() + Result;
    for (int i = 0; i < Owner.GetComponentCount(); ++i)
      text += ';' + Owner.GetComponent(i)->GetName().Utf8();
    for (TComponent* component : {static_cast<TComponent*>(&Owner), Owner.GetComponent(0)})
      text += std::to_string(component->GetTag()) + (component->Is(csLoading) ? "loading" : "");
    text += std::to_string(Owner.Removed) + std::to_string(Other.Removed);
    text += Parser.GetFuzzyLogic() ? "fuzzy" : "";
    return text + (Fuzzy.GetParser() ? "parser" : "");
  }

  TPart Owner, Other;
  TFuzzyLogic Fuzzy;
  TKelFuzzyLogicParser Parser;
  Ref<IInterface> Face;
  std::string Result;
};

TEncoding const& Utf16() { return *TEncoding::UTF16BigEndian(); }

}  // namespace

void AddFrameworkScenarios(TScenarios& all) {
  // clang-format off
  AddCases<TTexts>(all, "text", {
      {"assign", [](auto& f) { f.Text = Long + " and one more"; }},
      {"append", [](auto& f) { f.Text += u" and this; and this; and this; and this"; }},
      {"slice", [](auto& f) { f.Result = (f.Text.Slice(2) + f.Text.Trim()).Utf8(); }},
      {"utf8", [](auto& f) { f.Result = TString(u"\u00e9\u20ac" + std::u16string(40, u'\u00df')).Utf8(); }},
      {"utf16", [](auto& f) { std::string bytes; std::u16string text; Utf16().Encode(f.Text, bytes); Utf16().Decode(bytes, true, text); f.Result = TString(text).Utf8(); }},
      {"format", [](auto& f) { f.Result = FormatText("%s and a number %d, %.4f", {f.Text, std::int64_t{77}, 1.5e30}).Utf8(); }},
      {"shortest", [](auto& f) { f.Result = FormatShortest(-1.0 / 3 * 1e300).Utf8(); }},
      {"order", [](auto& f) { f.Result = CompareText(f.Text, f.Text + u"s", false) < 0 ? "below" : "above"; }},
      {"message", [](auto& f) { f.Message.Set(f.Text + f.Text); }},
      {"exception", [](auto& f) { f.Result = MessageOf([] { throw EFzyException(SInvalidFuzzySetName, {Long}); }); }},
      {"names", [](auto& f) { f.Result = CreateFuzzyName(CreateFuzzyName(fhVery, f.Text), CreateFuzzyName(bfhPower, false, f.Text), "and").Utf8() + FormatFuzzyExpression(f.Text).Utf8(); }},
      {"lines", [](auto& f) {
         TGTextStream stream(std::make_unique<TKelStringStream>(f.Text + u"\n" + f.Text, nullptr), nullptr);
         const char16_t first = stream.GetChar();
         stream.PutBack(first);
         f.Result = (stream.GetLine() + stream.GetLine()).Utf8();
       }},
      {"interface_list", [](auto& f) {
         const Ref<TInterfaceList> list = TInterfaceList::Create();
         for (int i = 0; i < 5; ++i) { list->Add(TInterfaceList::Create()); list->Add(list->Get(i)); }
         f.Result = std::to_string(list->GetCount());
       }},
  });
  AddCases<TLists>(all, "list", {
      {"add", [](auto& f) { f.List.Add(Long); }},
      {"add_in_order", [](auto& f) { f.List.Add(Long); }, TPromise::Nothing, [](auto& f) { f.LookUp(); }},
      {"delete", [](auto& f) { f.List.Delete(3); }},
      {"free", [](auto& f) { f.List.At(3)->Free(); }},
      {"clear", [](auto& f) { f.List.Clear(); }},
      {"clear_in_order", [](auto& f) { f.List.Clear(); }, TPromise::Nothing, [](auto& f) { f.LookUp(); }},
      {"move", [](auto& f) { f.List.At(3)->SetIndex(17); }, TPromise::Nothing, [](auto& f) { f.LookUp(); }},
      {"rename", [](auto& f) { f.List.At(3)->SetName(Long); }, TPromise::Nothing, [](auto& f) { f.LookUp(); }},
      {"look_up", [](auto& f) { f.LookUp(); }},
      {"change_list", [](auto& f) { f.Other.At(1)->SetCollection(&f.List); }},
      {"change_list_in_order", [](auto& f) { f.Other.At(1)->SetCollection(&f.List); }, TPromise::Nothing, [](auto& f) { f.LookUp(); }},
      {"assign", [](auto& f) { f.List.Assign(&f.Other); }, TPromise::Rebuilt},
      {"assign_more", [](auto& f) { f.Other.Assign(&f.List); }, TPromise::Rebuilt, [](auto& f) { f.LookUp(); }},
      {"assign_in_order", [](auto& f) { f.List.Assign(&f.Other); }, TPromise::Rebuilt, [](auto& f) { f.LookUp(); }},
      {"watch", [](auto& f) { f.List.At(0)->FreeNotification(f.Other.At(0)); f.Other.At(0)->FreeNotification(f.List.At(1)); }},
      {"watch_all", [](auto& f) { for (int i = 1; i < 3; ++i) f.List.At(0)->FreeNotification(f.List.At(i)); }},
      {"free_watched", [](auto& f) { f.List.At(0)->Free(); }, TPromise::Nothing,
       [](auto& f) { for (int i = 1; i < 5; ++i) f.List.At(i)->FreeNotification(f.List.At(0)); }},
  });
  AddCases<TComponents>(all, "component", {
      {"own", [](auto& f) { new TComponents::TPart(&f.Owner); }},
      {"free", [](auto& f) { f.Owner.GetComponent(2)->Free(); }, TPromise::Nothing, [](auto& f) { f.Owner.GetComponent(2)->FreeNotification(&f.Other); }},
      {"name", [](auto& f) { f.Owner.SetName(Long); }},
      {"find", [](auto& f) { f.Result = f.Owner.FindComponent("a part of the owner") ? "found" : ""; }},
      {"watch", [](auto& f) { f.Owner.FreeNotification(&f.Other); }},
      {"watch_many", [](auto& f) { f.Owner.GetComponent(3)->FreeNotification(&f.Other); }, TPromise::Nothing,
       [](auto& f) { for (int i = 0; i < 3; ++i) { f.Owner.GetComponent(i)->FreeNotification(&f.Other); f.Owner.GetComponent(3)->FreeNotification(f.Owner.GetComponent(i)); } }},
      {"assign", [](auto& f) { f.Owner.Assign(&f.Other); }, TPromise::Nothing, [](auto& f) { f.Other.SetTag(77); }},
      {"parser", [](auto& f) { f.Fuzzy.SetParser(&f.Parser); }},
      {"fuzzy", [](auto& f) { f.Parser.SetFuzzyLogic(&f.Fuzzy); }},
      {"another_parser", [](auto& f) { TKelFuzzyLogicParser other; f.Fuzzy.SetParser(&other); f.Fuzzy.SetParser(&f.Parser); }, TPromise::Usable,
       [](auto& f) { f.Fuzzy.SetParser(&f.Parser); f.Parser.SetFuzzyLogic(&f.Fuzzy); }},
      {"face", [](auto& f) { f.Face = f.Parser.GetInterface(); }},
      {"make", [](auto& f) { TFuzzyLogic fuzzy(&f.Other); fuzzy.SetParser(&f.Parser); }, TPromise::Usable},
      {"no_longer_linked", [](auto& f) { f.Parser.SetFuzzyLogic(nullptr); f.Fuzzy.SetParser(nullptr); }, TPromise::Nothing,
       [](auto& f) { f.Fuzzy.SetParser(&f.Parser); f.Parser.SetFuzzyLogic(&f.Fuzzy); }},
  });
  // clang-format on
}

}  // namespace fzy::test
