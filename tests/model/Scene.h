#pragma once

#include "fuzzylogic/framework/Exception.h"
#include "tests/model/EventRecorder.h"

namespace fzy::test {

/// What an operation raises, empty when it does not.
inline std::string MessageOf(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const EException& e) {
    return e.what();
  }
  return "";
}

/// A component with one variable "t" from 0 to 10 of the sets "cold", falling to 0 at 5, and "hot",
/// rising from there, and a second variable "u" of one set "x" without points. Only what happens
/// afterwards is recorded.
struct TScene {
  TScene() {
    Fuzzy.SetAutoTerms(false);
    T = Fuzzy.GetItems()->Add("t");
    T->SetMaximum(10);
    Cold = T->GetItems()->Add("cold");
    Cold->GetValues()->Add(0, 1);
    Cold->GetValues()->Add(5, 0);
    Hot = T->GetItems()->Add("hot");
    Hot->GetValues()->Add(5, 0);
    Hot->GetValues()->Add(10, 1);
    U = Fuzzy.GetItems()->Add("u");
    X = U->GetItems()->Add("x");
    Recorder.Take();
  }

  TFuzzyLogic Fuzzy;
  TEventRecorder Recorder{Fuzzy};
  TFuzzyVariable* T;
  TFuzzyVariable* U;
  TFuzzySet* Cold;
  TFuzzySet* Hot;
  TFuzzySet* X;
};

}  // namespace fzy::test
