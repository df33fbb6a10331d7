#pragma once

#include <filesystem>
#include <fstream>

#include "fuzzylogic/framework/Stream.h"

namespace fzy {

/// A file that is read.
class TFileReader final : public TStream {
 public:
  /// @throws EStreamError (`SFileNotRead`), as does reading
  explicit TFileReader(const std::filesystem::path& path);
  std::size_t Read(char* buffer, std::size_t count) override;

 private:
  std::filesystem::path FPath;
  std::ifstream FFile;
};

/// A file that takes the place of another, or none, when it is complete. Until then the bytes stand
/// in a new file beside it, so that whoever reads the path finds the old content or the new one,
/// never a part, even when the program ends in the middle; then the new file stays behind, under
/// the name with ".<number>.part" added. An object that ends without `Commit` removes it.
///
/// The bytes are handed to the operating system, which may not yet have them on the disk when the
/// power fails.
class TFileReplacer final : public TStream {
 public:
  /// A link is followed: the file that it leads to is replaced. The new file gets the permissions
  /// of the old one.
  /// @throws EStreamError (`SFileNotWritten`), as do writing and `Commit`
  explicit TFileReplacer(const std::filesystem::path& path);
  ~TFileReplacer() override;

  /// Nothing: the file is only written.
  std::size_t Read(char* buffer, std::size_t count) override;
  void Write(std::string_view bytes) override;
  void Commit();

 private:
  [[noreturn]] void Fail() const;

  std::filesystem::path FPath;
  std::filesystem::path FPart;
  std::ofstream FFile;
  bool FIsOpen = false;
};

}  // namespace fzy
