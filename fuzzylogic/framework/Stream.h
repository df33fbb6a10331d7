#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace fzy {

/// A sequence of bytes that is read, or written, from its start on.
class TStream {
 public:
  TStream() = default;
  TStream(const TStream&) = delete;
  TStream& operator=(const TStream&) = delete;
  virtual ~TStream() = default;

  /// Reads up to `count` bytes and returns how many; fewer only at the end of the stream.
  virtual std::size_t Read(char* buffer, std::size_t count) = 0;
  /// Appends bytes.
  /// @throws EStreamError (`SStreamNotWritable`) unless a class says otherwise
  virtual void Write(std::string_view bytes);
};

/// A stream over bytes in memory. What is written follows the bytes that it had.
class TMemoryStream : public TStream {
 public:
  TMemoryStream() = default;
  explicit TMemoryStream(std::string bytes) : FBytes(std::move(bytes)) {}
  std::size_t Read(char* buffer, std::size_t count) override;
  void Write(std::string_view bytes) override { FBytes += bytes; }
  /// All bytes, read or not.
  const std::string& GetBytes() const noexcept { return FBytes; }

 private:
  std::string FBytes;
  std::size_t FPosition = 0;
};

}  // namespace fzy
