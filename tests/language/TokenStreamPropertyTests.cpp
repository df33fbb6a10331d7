#include <vector>

#include <gtest/gtest.h>

#include "fuzzylogic/vocabulary/FuzzyExceptions.h"
#include "tests/language/PlainTokenizer.h"
#include "tests/support/Random.h"

namespace fzy {
namespace {

using test::Name;
using test::TPlainTokenizer;
using test::TRandom;
using test::Visible;

const TEncoding* const Encodings[] = {nullptr, TEncoding::UTF16LittleEndian(),
                                      TEncoding::UTF16BigEndian()};

/// A text of few characters, those that mean something and a few that need more than one byte.
std::u16string RandomText(TRandom& random, int length) {
  static constexpr std::u16string_view characters =
      u"((()))[]=&|~<\"\";;\\\\ab?1234509+-.e    \n\n\r\r\t\u00E9\u20AC";
  std::u16string text;
  for (int count = random.Below(length); count > 0; --count) {
    if (random.OneIn(50))
      text += u"\U0001F600";
    else
      text +=
          characters[static_cast<std::size_t>(random.Below(static_cast<int>(characters.size())))];
  }
  while (!text.empty() && text.back() == u'\r') text.pop_back();
  return text;
}

std::string Written(const IFuzzyStreamToken& token) {
  return Name(token) + '@' + std::to_string(token.GetLineNumber()) + '{' +
         Visible(token.GetWhitespace()) + '}';
}

/// The tokens of a stream as the plain tokenizer writes them, by its raw scanner or by constructs.
/// By constructs, some are put back on the way, as many as `putBack` says and read again.
std::string Read(TFuzzyLogicTokenStream& stream, bool raw, TRandom* putBack) {
  std::string dump;
  std::vector<Ref<IFuzzyStreamToken>> taken;
  try {
    for (;;) {
      const Ref<IFuzzyStreamToken> token = raw ? stream.BuildNextToken() : stream.NextToken();
      taken.push_back(token);
      const bool end = token->GetDataType() == 0;
      if (putBack && putBack->OneIn(4)) {
        std::size_t count = static_cast<std::size_t>(putBack->Below(8));
        for (; count > 0 && !taken.empty(); --count) {
          stream.PutBackToken(taken.back());
          taken.pop_back();
        }
        if (end && !taken.empty() && taken.back() != token) continue;
      }
      if (!taken.empty() && taken.back()->GetDataType() == 0) break;
    }
  } catch (const EFzyParseException& error) {
    dump = "!@" + std::to_string(error.GetLineNumber());
  }
  std::string tokens;
  for (const auto& token : taken) tokens += Written(*token);
  return tokens + dump;
}

TEST(TokenStreamProperty, ReadsAsThePlainTokenizerDoes) {
  TRandom random;
  SCOPED_TRACE(random.Trace());
  for (int i = 0; i < 20'000; ++i) {
    std::u16string text = RandomText(random, 60);
    if (i % 100 == 0) {
      // Across the border of two blocks of the reader, of 64 kB each.
      const std::size_t block = (i % 3 == 0 ? 64 : 32) * 1024;
      text.insert(0, block - static_cast<std::size_t>(random.Below(40)), u' ');
    }
    const TString shown = Visible(text);
    const std::string expected = TPlainTokenizer(text).Run();
    const TEncoding* encoding = Encodings[i % 3];
    TFuzzyLogicTokenStream raw = test::Tokenizer(text, encoding);
    ASSERT_EQ(Read(raw, true, nullptr), expected) << shown;
    TFuzzyLogicTokenStream constructs = test::Tokenizer(text, encoding);
    const std::string read = Read(constructs, false, nullptr);
    // The tokens of a construct that is not read to its end do not come out.
    if (expected.find('!') == std::string::npos) {
      ASSERT_EQ(read, expected) << shown;
      TFuzzyLogicTokenStream again = test::Tokenizer(text, encoding);
      ASSERT_EQ(Read(again, false, &random), expected) << "put back and read again: " << shown;
    }
  }
}

}  // namespace
}  // namespace fzy
