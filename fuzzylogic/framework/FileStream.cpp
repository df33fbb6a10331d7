#include "fuzzylogic/framework/FileStream.h"

#include <random>

#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/framework/Messages.h"

namespace fzy {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void FailFile(const TString& message, const fs::path& path) {
  throw EStreamError(FormatText(message, {TString(path.u16string())}));
}

/// Where a chain of links ends; the path itself when it is none, or leads nowhere.
fs::path FollowLinks(const fs::path& path) {
  std::error_code error;
  if (!fs::is_symlink(fs::symlink_status(path, error))) return path;
  fs::path end = fs::weakly_canonical(path, error);
  return error ? path : end;
}

/// A name that no other writer of the same file has.
fs::path PartOf(const fs::path& path) {
  fs::path part = path;
  part += "." + std::to_string(std::random_device()()) + ".part";
  return part;
}

}  // namespace

// TFileReader

TFileReader::TFileReader(const fs::path& path) : FPath(path), FFile(path, std::ios::binary) {
  std::error_code error;  // a folder opens like a file, but then gives nothing
  if (!FFile || fs::is_directory(path, error)) FailFile(SFileNotRead, path);
}

std::size_t TFileReader::Read(char* buffer, std::size_t count) {
  FFile.read(buffer, static_cast<std::streamsize>(count));
  if (FFile.bad()) FailFile(SFileNotRead, FPath);
  return static_cast<std::size_t>(FFile.gcount());
}

// TFileReplacer

TFileReplacer::TFileReplacer(const fs::path& path)
    : FPath(FollowLinks(path)), FPart(PartOf(FPath)) {
  std::error_code error;
  const fs::file_status status = fs::status(FPath, error);
  // A folder or a device is not to be replaced by a file.
  if (fs::exists(status) && !fs::is_regular_file(status)) Fail();
  try {
    FFile.open(FPart, std::ios::binary);
  } catch (...) {  // the file is there, but no memory for its buffer
    fs::remove(FPart, error);
    throw;
  }
  FIsOpen = FFile.is_open();
  if (!FIsOpen) Fail();
  if (fs::exists(status)) fs::permissions(FPart, status.permissions(), error);
}

TFileReplacer::~TFileReplacer() {
  if (!FIsOpen) return;
  FFile.close();
  std::error_code error;
  fs::remove(FPart, error);
}

std::size_t TFileReplacer::Read(char* /*buffer*/, std::size_t /*count*/) { return 0; }

void TFileReplacer::Write(std::string_view bytes) {
  FFile.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!FFile) Fail();
}

void TFileReplacer::Commit() {
  FFile.close();
  if (!FFile) Fail();
  std::error_code error;
  fs::rename(FPart, FPath, error);
  if (error) Fail();
  FIsOpen = false;
}

void TFileReplacer::Fail() const { FailFile(SFileNotWritten, FPath); }

}  // namespace fzy
