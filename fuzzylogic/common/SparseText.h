#pragma once

#include <memory>

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
  bool IsEmpty() const noexcept { return !FText || FText->empty(); }
  /// Takes memory only for the first text that needs its own: any before it, or after, can be set
  /// again without.
  void Set(TString text) {
    if (FText && FText != &Blank())
      *FText = std::move(text);
    else if (text.empty())
      FText = nullptr;
    else
      FText = text.size() == 1 && text[0] == u' ' ? &Blank() : new TString(std::move(text));
  }
  /// Takes the memory for a text of that many characters.
  void Reserve(std::size_t count) {
    if (count <= 1 && (!FText || FText == &Blank())) return;
    if (!FText || FText == &Blank()) {
      auto text = std::make_unique<TString>(Get());
      text->Reserve(count);
      FText = text.release();
    } else {
      FText->Reserve(count);
    }
  }
  /// The same as `Set`, without memory where there is room.
  void Assign(const TString& text) {
    if (FText && FText != &Blank())
      *FText = text;
    else
      Set(text);
  }
  void Swap(TSparseText& other) noexcept { std::swap(FText, other.FText); }
  void Clear() noexcept {
    Drop();
    FText = nullptr;
  }

 private:
  static const TString& Empty() noexcept {
    static const TString text;
    return text;
  }
  static TString& Blank() noexcept {
    static TString text(1, u' ');
    return text;
  }
  void Drop() noexcept {
    if (FText && FText != &Blank()) delete FText;
  }

  TString* FText = nullptr;
};

}  // namespace fzy
