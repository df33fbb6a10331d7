#include "fuzzylogic/common/StringStream.h"

namespace fzy {
namespace {

std::string Encoded(const TString& text, const TEncoding* encoding) {
  std::string bytes;
  (encoding ? encoding : TEncoding::UTF8())->Encode(text, bytes);
  return bytes;
}

}  // namespace

TKelStringStream::TKelStringStream(const TString& text, const TEncoding* encoding)
    : TMemoryStream(Encoded(text, encoding)) {}

}  // namespace fzy
