#pragma once

#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "fuzzylogic/model/FuzzyLogic.h"

namespace fzy::test {

/// A parser whose language is one line a variable, "speed slow fast". Like a real one it has a link
/// of its own to the component that it parses into, cleared when that component goes.
class TTestParser final : public TFuzzyTextParser {
 public:
  using TFuzzyTextParser::TFuzzyTextParser;
  ~TTestParser() override { SetFuzzyLogic(nullptr); }
  TString ClassName() const override { return "TTestParser"; }

  TFuzzyLogic* GetFuzzyLogic() const { return FFuzzyLogic; }
  void SetFuzzyLogic(TFuzzyLogic* value) {
    if (value == FFuzzyLogic) return;
    if (FFuzzyLogic) FFuzzyLogic->RemoveFreeNotification(this);
    FFuzzyLogic = value;
    if (FFuzzyLogic) FFuzzyLogic->FreeNotification(this);
  }
  void Notification(TComponent* component, TOperation operation) override {
    TFuzzyTextParser::Notification(component, operation);
    if (operation == opRemove && component == FFuzzyLogic) SetFuzzyLogic(nullptr);
  }

  void Parse(const TString& text, const TEncoding* encoding) override {
    const TPin self(this);
    Texts.push_back(text.Utf8() + (encoding ? " encoded" : ""));
    if (OnParse) OnParse();
    std::istringstream lines(text.Utf8());
    for (std::string line; FFuzzyLogic && std::getline(lines, line);) {
      std::istringstream words(line);
      std::string word;
      words >> word;
      TFuzzyVariable* variable = FFuzzyLogic->GetItems()->Add(word);
      const TPin pinned(variable);
      while (variable && !variable->IsFreed() && words >> word) variable->GetItems()->Add(word);
    }
  }

  TString PrettyPrint(TFuzzyVariable* variable) override {
    if (OnPrint) OnPrint();
    TString text = variable->GetName();
    for (TFuzzySet* set : *variable->GetItems()) text = text + " " + set->GetName();
    return text;
  }

  std::vector<std::string> Texts;  ///< what was parsed
  std::function<void()> OnParse;
  std::function<void()> OnPrint;

 private:
  TFuzzyLogic* FFuzzyLogic = nullptr;
};

}  // namespace fzy::test
