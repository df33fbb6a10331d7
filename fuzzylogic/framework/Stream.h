#pragma once

#include <cstddef>
#include <string>
#include <utility>

namespace fzy {

/// A source of bytes.
class TStream {
 public:
  TStream() = default;
  TStream(const TStream&) = delete;
  TStream& operator=(const TStream&) = delete;
  virtual ~TStream() = default;

  /// Reads up to `count` bytes and returns how many; fewer only at the end of the stream.
  virtual std::size_t Read(char* buffer, std::size_t count) = 0;
};

/// A stream over bytes in memory.
class TMemoryStream : public TStream {
 public:
  explicit TMemoryStream(std::string bytes) : FBytes(std::move(bytes)) {}
  std::size_t Read(char* buffer, std::size_t count) override;

 private:
  std::string FBytes;
  std::size_t FPosition = 0;
};

}  // namespace fzy
