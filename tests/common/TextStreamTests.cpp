#include <gtest/gtest.h>

#include "fuzzylogic/common/StringStream.h"
#include "fuzzylogic/common/TextStream.h"

namespace fzy {
namespace {

constexpr std::size_t Block = 0x10000;  // a multiple of what the reader takes at a time

TGTextStream Reader(const TString& text, const TEncoding* encoding = nullptr) {
  return {std::make_unique<TKelStringStream>(text, encoding), encoding};
}

const TEncoding* const Encodings[] = {nullptr, TEncoding::UTF16LittleEndian(),
                                      TEncoding::UTF16BigEndian(), TEncoding::ASCII(),
                                      TEncoding::Latin1()};

// The text begins with 0 to 3 letters, so that each byte of a character comes to lie on each side
// of a block's border, and is cut to end before, at and after a border.
TEST(TextStream, ReadsEveryEncodingAcrossTheBordersOfItsBlocks) {
  for (const TEncoding* encoding : Encodings) {
    const bool bytes = encoding == TEncoding::ASCII() || encoding == TEncoding::Latin1();
    for (std::size_t shift = 0; shift < 4; ++shift) {
      std::u16string text(shift, u'x');
      while (text.size() < Block + 9) text += bytes ? u"ab" : u"\u20AC\u00E9\U0001F600";
      for (const std::size_t size : {text.size(), Block, Block - 1, Block / 2}) {
        text.resize(size);
        TGTextStream reader = Reader(text, encoding);
        std::u16string read;
        for (char16_t ch = 0; !reader.IsEof() && reader.GetChar(ch);) {
          if (read.size() % 999 == 0) {
            reader.PutBack(ch);
            EXPECT_FALSE(reader.IsEof());
            EXPECT_EQ(reader.GetChar(), ch);
          }
          read += ch;
        }
        // UTF-8 has no form for the half of a pair that may be left at the end.
        const TString expected = encoding ? TString(text) : TString(TString(text).Utf8());
        EXPECT_TRUE(read == expected) << "shift " << shift << ", size " << size;
      }
    }
  }
}

TEST(TextStream, EndsOnceAndReadsOnWhatIsPutBack) {
  TGTextStream reader = Reader(TString(std::u16string(u"\0b", 2)));
  char16_t ch = u'?';
  EXPECT_TRUE(reader.GetChar(ch)) << "a #0 in the text is not the end";
  EXPECT_EQ(ch, u'\0');
  EXPECT_EQ(reader.GetChar(), u'b');
  for (int i = 0; i < 2; ++i) {
    EXPECT_TRUE(reader.IsEof());
    EXPECT_FALSE(reader.GetChar(ch = u'?'));
    EXPECT_EQ(ch, u'\0');
  }
  for (const char16_t back : {u'2', u'1'}) reader.PutBack(back);
  EXPECT_FALSE(reader.IsEof());
  EXPECT_EQ(reader.GetLine(), "12");
  EXPECT_TRUE(reader.IsEof());
  EXPECT_TRUE(Reader("").IsEof());
}

TEST(TextStream, DropsOneByteOrderMarkAtTheStart) {
  for (int i = 0; i < 3; ++i) {
    TGTextStream reader = Reader(u"\uFEFF\uFEFFa\uFEFF", Encodings[i]);
    EXPECT_EQ(reader.GetLine(), TString(u"\uFEFFa\uFEFF"));
    EXPECT_TRUE(Reader(u"\uFEFF", Encodings[i]).IsEof());
    const TString marks(Block, u'\uFEFF');
    EXPECT_EQ(Reader(marks, Encodings[i]).GetLine().size(), Block - 1) << "blocks begin with marks";
  }
}

TEST(TextStream, ReplacesACharacterThatTheStreamCutsOff) {
  const std::string cut = std::string(Block - 2, 'x') + "\xF0\x9F\x98";
  TGTextStream reader(std::make_unique<TMemoryStream>(cut), nullptr);
  EXPECT_EQ(reader.GetLine(), TString(std::u16string(Block - 2, u'x') + u'\uFFFD'));
  EXPECT_TRUE(reader.IsEof());
}

TEST(TextStream, ReadsLinesOfEveryKindOfEnd) {
  // The last case puts a CR LF across the border of two blocks.
  const std::string full(Block - 1, 'x');
  const std::vector<std::string> cases[] = {{"a", "\n", "b", "\r", "c", "\r\n", "d"},
                                            {"", "\r", "", "\r\n", "", "\n", "", "\n"},
                                            {"a", "\n", "", "\r", "b", "\r"},
                                            {full, "\r\n", "y", "\r\n"}};
  for (const std::vector<std::string>& parts : cases) {
    std::string text;
    for (const std::string& part : parts) text += part;
    TGTextStream reader = Reader(text);
    for (std::size_t i = 0; i < parts.size(); i += 2) {
      EXPECT_FALSE(reader.IsEof());
      EXPECT_EQ(reader.GetLine(), parts[i]);
    }
    EXPECT_TRUE(reader.IsEof());
    EXPECT_EQ(reader.GetLine(), "");
  }
}

}  // namespace
}  // namespace fzy
