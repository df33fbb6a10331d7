#pragma once

#include "fuzzylogic/framework/Text.h"

namespace fzy {

/// A text that is empty or a single blank most of the time: eight bytes, and memory of its own only
/// for any other text. Tokens are made by the million, and few of them carry more.
class TSparseText {
 public:
  TSparseText() = default;
  TSparseText(const TSparseText&) = delete;
  TSparseText& operator=(const TSparseText&) = delete;
  ~TSparseText() { Drop(); }

  const TString& Get() const noexcept { return FText ? *FText : Empty(); }
  bool IsEmpty() const noexcept { return !FText; }
  void Set(const TString& text) {
    if (text.empty() && !FText) return;
    const bool blank = text.size() == 1 && text[0] == u' ';
    const TString* next = text.empty() ? nullptr : blank ? &Blank() : new TString(text);
    Drop();
    FText = next;
  }
  void Clear() noexcept {
    Drop();
    FText = nullptr;
  }

 private:
  static const TString& Empty() noexcept {
    static const TString text;
    return text;
  }
  static const TString& Blank() noexcept {
    static const TString text(1, u' ');
    return text;
  }
  void Drop() noexcept {
    if (FText && FText != &Blank()) delete FText;
  }

  const TString* FText = nullptr;
};

}  // namespace fzy
