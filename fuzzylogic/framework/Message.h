#pragma once

#include "fuzzylogic/framework/Text.h"

namespace fzy {

/// A text shown to a user: a constant default that an application may replace at run time, for
/// example by a translation. It is read on each use, so a replacement counts from the next use on.
/// Replace texts before other threads use the library. The placeholders of a replacement are those
/// of the default, in the same order.
class TMessage {
 public:
  constexpr explicit TMessage(const char16_t* text) noexcept : FDefault(text) {}
  TMessage(const TMessage&) = delete;
  TMessage& operator=(const TMessage&) = delete;

  TString Get() const { return FReplacement.empty() ? TString(FDefault) : FReplacement; }
  operator TString() const { return Get(); }

  /// Replaces the text; an empty text brings the default back.
  void Set(TString text) { FReplacement = std::move(text); }

 private:
  const char16_t* FDefault;
  TString FReplacement;
};

}  // namespace fzy
