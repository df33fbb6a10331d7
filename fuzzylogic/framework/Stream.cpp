#include "fuzzylogic/framework/Stream.h"

#include <algorithm>

#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/Messages.h"

namespace fzy {

void TStream::Write(std::string_view /*bytes*/) { throw EStreamError(SStreamNotWritable); }

std::size_t TMemoryStream::Read(char* buffer, std::size_t count) {
  const std::size_t length = std::min(count, FBytes.size() - FPosition);
  std::copy_n(FBytes.data() + FPosition, length, buffer);
  FPosition += length;
  return length;
}

}  // namespace fzy
