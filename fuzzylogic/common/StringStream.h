#pragma once

#include "fuzzylogic/framework/Encoding.h"
#include "fuzzylogic/framework/Stream.h"

namespace fzy {

/// A memory stream over a text, as the bytes of an encoding.
class TKelStringStream final : public TMemoryStream {
 public:
  /// No encoding means UTF-8.
  explicit TKelStringStream(const TString& text, const TEncoding* encoding = nullptr);
};

}  // namespace fzy
