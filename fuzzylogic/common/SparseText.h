#pragma once

#include <memory>

#include "fuzzylogic/framework/Text.h"

namespace fzy {

/// A text that is empty or a single blank most of the time: eight bytes, and memory of its own only
/// for any other text. Tokens are buffered by the million, and few of them carry more.
class TSparseText {
 public:
  TSparseText() = default;
  TSparseText(const TSparseText& other) { Set(other.Get()); }
  TSparseText& operator=(const TSparseText& other) {
    Set(other.Get());
    return *this;
  }
  ~TSparseText() { Drop(); }

  const TString& Get() const noexcept { return *FText; }
  bool IsEmpty() const noexcept { return FText->empty(); }
  void Set(const TString& text) {
    const TString* next = text.empty() ? &Empty() : text == Blank() ? &Blank() : new TString(text);
    Drop();
    FText = next;
  }

 private:
  static const TString& Empty() noexcept {
    static const TString text;
    return text;
  }
  static const TString& Blank() noexcept {
    static const TString text(u" ");
    return text;
  }
  void Drop() noexcept {
    if (FText != &Empty() && FText != &Blank()) delete FText;
  }

  const TString* FText = &Empty();
};

}  // namespace fzy
