#include <limits>

#include <gtest/gtest.h>

#include "fuzzylogic/vocabulary/FuzzyExceptions.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy {
namespace {

// Programs show these texts and some compare them, two blanks and odd colons included.
TEST(Messages, HaveTheirTexts) {
  const std::pair<const TMessage*, const char*> cases[] = {
      {&SFuzzySetEmpty, "Invalid operation: \"%s\".  Fuzzy set is empty"},
      {&SInvalidFuzzySetName, "Invalid fuzzy set name, \"%s\" is a reserved word"},
      {&SInvalidFuzzyVarName, "Invalid fuzzy variable name, \"%s\""},
      {&SMissingFuzzyVariable, "Missing fuzzy linguistic variable"},
      {&SMax3XValues, "Invalid x value.  Maximum of 3 values with same X value: %.4f"},
      {&SInvalidFuzzyOperation, "Invalid fuzzy operation: \"%s:"},
      {&SInvalidXRangeIndex, "Invalid index argument to GetXRange.  Index = %d"},
      {&SInvalidRangeArguments,
       "Invalid range arguments.  Left (%.4f) is greater than right (%.4f)"},
      {&SParserUnassigned, "Parser not assigned.  Cannot parse"},
      {&SFzyParseError, "Parsing Error, %s in %s at line %s: \"%s\""},
      {&SFzyArgNumWrong, "Number of arguments for function, %s, incorrect.  Expected \"%s\""},
      {&SFzyArgMinNumWrong,
       "Minimum number of arguments for function, %s, incorrect.  Expected %d or more"},
      {&SFzyArgTypeWrong, "Data Types of arguments for function, %s, incorrect.  Expected %s"},
      {&SPIArgsExpected, R"("Left Right Center" or "Range Center")"},
      {&STriArgsExpected, R"("Left Middle Right")"},
      {&SCurveArgsExpected, R"("Left Right Inflection_Point")"},
      {&SBetaArgsExpected,
       R"("Range Center Inflection_Point" or "Range Center Inflection_Point Weight")"},
      {&SFuzzyLogicNotSet, "Fuzzy Logic component must be specified to parse"},
      {&SFuzzyLogicNotTFuzzyLogic, "FuzzyLogic property must be of type TFuzzyLogic or descendant"},
      {&SFuzzyLogicNotTIFuzzyLogic,
       "FuzzyLogic property must be of type TIFuzzyLogic or descendant"},
      {&SUnknownFuzzySetName, "Unknown Fuzzy Set name: \"%s\""},
      {&SUnknownFuzzyVarName, "Unknown Fuzzy Variable name: \"%s\""},
      {&SUnknownFunctionName, "Unknown function name: \"%s\""},
      {&SLowFuzzyTerm, "low"},
      {&SMediumFuzzyTerm, "medium"},
      {&SHighFuzzyTerm, "high"},
      {&SFzyMissingName, "Missing name"},
      {&SFzyExpectedFuzzySet, "Expected \"( term\""},
      {&SFzyExpectedFuzzyDefinition, "Expected \"( deffuzzy\""},
      {&SFzyMissingOpenParens, "Expected \"(\""},
      {&SFzyMissingCloseParens, "Expected \")\""},
      {&SFzyExpectedNumber, "Expected number"},
      {&SFzyExpectedKeyword, "Missing keyword.  Expected \"%s\""},
      {&SFzyMissingOperand, "Missing fuzzy operand to be modified by hedge: %s"},
      {&SFzyUndefinedVariable, "fuzzy variable is not defined"},
      {&SFzyInvalidToken, "Invalid item in fuzzy expression: %s"},
      {&SFzyInvalidValuePair, "Invalid X/Y value pair: %s"},
      {&SFzyUnexpectedToken, "Unexpected token: \"%s\""}};
  for (const auto& [message, text] : cases) EXPECT_EQ(message->Get(), text);
}

TEST(Exceptions, CarryTheFinalTextAndTheLine) {
  try {
    throw EFzyParseException(SFzyParseError, {"reading", "größe", "7", "("}, 7);
  } catch (const EKelException& error) {
    EXPECT_STREQ(error.what(), "Parsing Error, reading in größe at line 7: \"(\"");
    const auto* parse = dynamic_cast<const EFzyParseException*>(&error);
    ASSERT_TRUE(parse && dynamic_cast<const EFzyException*>(&error));
    EXPECT_EQ(parse->GetLineNumber(), 7);
  }
  EXPECT_EQ(EFzyParseException("100%s").GetMessage(), "100%s") << "a plain message is no format";
}

TEST(Exceptions, RefuseWhatIsNoNumber) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_NO_THROW(RequireNumber(-infinity, "x"));
  EXPECT_THROW(RequireNumber(nan, "x"), EFzyException);
  EXPECT_NO_THROW(RequireFinite(std::numeric_limits<double>::max(), "x"));
  for (const double value : {infinity, -infinity, nan})
    EXPECT_THROW(RequireFinite(value, "x"), EFzyException);
}

}  // namespace
}  // namespace fzy
