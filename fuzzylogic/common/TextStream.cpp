#include "fuzzylogic/common/TextStream.h"

namespace fzy {
namespace {

constexpr std::size_t BlockSize = 4096;
constexpr char16_t ByteOrderMark = 0xFEFF;

}  // namespace

TGTextStream::TGTextStream(std::unique_ptr<TStream> stream, const TEncoding* encoding)
    : FStream(std::move(stream)), FEncoding(encoding ? encoding : TEncoding::UTF8()) {}

bool TGTextStream::Fill() {
  FBefore += static_cast<std::int64_t>(FText.size());
  FText.clear();
  FPosition = 0;
  while (FText.empty() && !FStreamEnded) {
    const std::size_t kept = FBytes.size();
    FBytes.resize(kept + BlockSize);
    const std::size_t read = FStream->Read(FBytes.data() + kept, BlockSize);
    FBytes.resize(kept + read);
    FStreamEnded = read < BlockSize;
    FBytes.erase(0, FEncoding->Decode(FBytes, FStreamEnded, FText));
    if (!FStarted && !FText.empty()) {
      FStarted = true;
      if (FText.front() == ByteOrderMark) FText.erase(0, 1);
    }
  }
  return !FText.empty();
}

char16_t TGTextStream::GetChar() {
  char16_t ch = 0;
  TGTextStream::GetChar(ch);
  return ch;
}

bool TGTextStream::GetChar(char16_t& ch) {
  if (!FPutBack.empty()) {
    ch = FPutBack.back();
    FPutBack.pop_back();
    return true;
  }
  if (FPosition == FText.size() && !Fill()) {
    ch = 0;
    return false;
  }
  ch = FText[FPosition++];
  return true;
}

TString TGTextStream::GetLine() {
  std::u16string line;
  char16_t ch = 0;
  while (TGTextStream::GetChar(ch) && ch != u'\n') {
    if (ch == u'\r') {
      if (TGTextStream::GetChar(ch) && ch != u'\n') PutBack(ch);
      break;
    }
    line += ch;
  }
  return line;
}

}  // namespace fzy
