#include "support/InputFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace support {
namespace {

/// Blanks, line breaks and control characters become single blanks: library messages quote the
/// user's text, which may hold any of them.
std::string OneLine(std::string_view text) {
  std::string line;
  for (const char c : text) {
    const bool blank = static_cast<unsigned char>(c) <= ' ' || c == '\x7f';
    if (!blank)
      line += c;
    else if (!line.empty() && line.back() != ' ')
      line += ' ';
  }
  if (!line.empty() && line.back() == ' ') line.pop_back();
  return line;
}

std::string Located(const std::string& file, int line, std::string_view message) {
  std::string text = file;
  if (line > 0) text += ":" + std::to_string(line);
  return OneLine(text.append(": ").append(message));
}

/// What stands before a column.
std::string WithLine(const std::string& file, const fzy::TTextPlace& place) {
  return place.Line > 0 ? file + ":" + std::to_string(place.Line) : file;
}

std::string Told(const std::string& file, const fzy::TReadingFault& fault,
                 std::string_view message) {
  const fzy::TTextPlace& place = fault.Place;
  std::string text = Located(WithLine(file, place), place.Column, message);
  if (!fault.Advice.empty()) text += '\n' + support::Located(file, place, "advice", fault.Advice);
  return text;
}

[[noreturn]] void Fail(const std::string& file, const std::string& what, int error) {
  throw InputError(file, 0, error ? what + ": " + std::strerror(error) : what);
}

}  // namespace

InputError::InputError(const std::string& file, int line, std::string_view message)
    : std::runtime_error(Located(file, line, message)) {}

InputError::InputError(const std::string& file, const fzy::TReadingFault& fault,
                       std::string_view message)
    : std::runtime_error(Told(file, fault, message)) {}

std::string Located(const std::string& file, const fzy::TTextPlace& place, std::string_view kind,
                    const fzy::TString& text) {
  return Located(WithLine(file, place), place.Column,
                 std::string(kind).append(": ").append(text.Utf8()));
}

std::string ReadFile(const std::string& file) {
  // A folder can be opened like a file, but then gives nothing.
  if (std::error_code ignored; std::filesystem::is_directory(file, ignored))
    Fail(file, "is a directory", 0);
  errno = 0;
  std::ifstream in(file, std::ios::binary);
  if (!in) Fail(file, "cannot be opened", errno);
  std::string content{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  if (in.bad()) Fail(file, "cannot be read", errno);
  return content;
}

void WriteFile(const std::string& file, std::string_view content) {
  namespace fs = std::filesystem;
  std::error_code error;
  // The new file replaces the old one, which must not happen to a folder or a device.
  const fs::file_status status = fs::status(file, error);
  if (fs::exists(status) && !fs::is_regular_file(status)) Fail(file, "is not a regular file", 0);

  const std::string temporary = file + ".part";
  errno = 0;
  std::ofstream out(temporary, std::ios::binary);
  if (!out) Fail(file, "cannot be written", errno);
  out << content;
  out.close();
  if (!out) {
    const int cause = errno;
    fs::remove(temporary, error);
    Fail(file, "cannot be written", cause);
  }
  fs::rename(temporary, file, error);
  if (error) {
    const int cause = error.value();
    fs::remove(temporary, error);
    Fail(file, "cannot be written", cause);
  }
}

}  // namespace support
