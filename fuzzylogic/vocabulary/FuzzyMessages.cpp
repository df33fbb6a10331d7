#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy {

TMessage SFuzzySetEmpty{u"Invalid operation: \"%s\".  Fuzzy set is empty"};
TMessage SInvalidFuzzySetName{u"Invalid fuzzy set name, \"%s\" is a reserved word"};
TMessage SInvalidFuzzyVarName{u"Invalid fuzzy variable name, \"%s\""};
TMessage SMissingFuzzyVariable{u"Missing fuzzy linguistic variable"};
TMessage SMax3XValues{u"Invalid x value.  Maximum of 3 values with same X value: %.4f"};
TMessage SInvalidFuzzyOperation{u"Invalid fuzzy operation: \"%s:"};
TMessage SInvalidXRangeIndex{u"Invalid index argument to GetXRange.  Index = %d"};
TMessage SInvalidRangeArguments{
    u"Invalid range arguments.  Left (%.4f) is greater than right (%.4f)"};
TMessage SParserUnassigned{u"Parser not assigned.  Cannot parse"};
TMessage SFzyParseError{u"Parsing Error, %s in %s at line %s: \"%s\""};
TMessage SFzyArgNumWrong{u"Number of arguments for function, %s, incorrect.  Expected \"%s\""};
TMessage SFzyArgMinNumWrong{
    u"Minimum number of arguments for function, %s, incorrect.  Expected %d or more"};
TMessage SFzyArgTypeWrong{u"Data Types of arguments for function, %s, incorrect.  Expected %s"};
TMessage SPIArgsExpected{u"\"Left Right Center\" or \"Range Center\""};
TMessage STriArgsExpected{u"\"Left Middle Right\""};
TMessage SCurveArgsExpected{u"\"Left Right Inflection_Point\""};
TMessage SBetaArgsExpected{
    u"\"Range Center Inflection_Point\" or \"Range Center Inflection_Point Weight\""};
TMessage SFuzzyLogicNotSet{u"Fuzzy Logic component must be specified to parse"};
TMessage SFuzzyLogicNotTFuzzyLogic{
    u"FuzzyLogic property must be of type TFuzzyLogic or descendant"};
TMessage SFuzzyLogicNotTIFuzzyLogic{
    u"FuzzyLogic property must be of type TIFuzzyLogic or descendant"};
TMessage SUnknownFuzzySetName{u"Unknown Fuzzy Set name: \"%s\""};
TMessage SUnknownFuzzyVarName{u"Unknown Fuzzy Variable name: \"%s\""};
TMessage SUnknownFunctionName{u"Unknown function name: \"%s\""};
TMessage SLowFuzzyTerm{u"low"};
TMessage SMediumFuzzyTerm{u"medium"};
TMessage SHighFuzzyTerm{u"high"};

TMessage SFzyMissingName{u"Missing name"};
TMessage SFzyExpectedFuzzySet{u"Expected \"( term\""};
TMessage SFzyExpectedFuzzyDefinition{u"Expected \"( deffuzzy\""};
TMessage SFzyMissingOpenParens{u"Expected \"(\""};
TMessage SFzyMissingCloseParens{u"Expected \")\""};
TMessage SFzyExpectedNumber{u"Expected number"};
TMessage SFzyExpectedKeyword{u"Missing keyword.  Expected \"%s\""};
TMessage SFzyMissingOperand{u"Missing fuzzy operand to be modified by hedge: %s"};
TMessage SFzyUndefinedVariable{u"fuzzy variable is not defined"};
TMessage SFzyInvalidToken{u"Invalid item in fuzzy expression: %s"};
TMessage SFzyInvalidValuePair{u"Invalid X/Y value pair: %s"};
TMessage SFzyUnexpectedToken{u"Unexpected token: \"%s\""};

TMessage SFzyNoText{u"No definition text is being read"};
TMessage SFzyUnmatchedBracket{u"Unmatched \"%s\" in fuzzy expression"};
TMessage SFzyCircularVariable{u"Fuzzy variable refers to itself: %s"};
TMessage SFzyNestedVariables{u"Fuzzy variables refer to each other more than %d deep: ?%s"};
TMessage SFzyExpressionTooLarge{
    u"The fuzzy expression is too large: its sets would take more than %d characters of names"};
TMessage SFzyNameNotWritable{u"The name \"%s\" cannot be written in a definition text"};

TMessage SFzyNotANumber{u"Invalid operation: \"%s\".  Not a number"};
TMessage SFzyNotFinite{u"Invalid operation: \"%s\".  Not a finite number"};
TMessage SFzySetMissing{u"Invalid operation: \"%s\".  No fuzzy set given"};
TMessage SFzyInvalidArgument{u"Invalid operation: \"%s\".  Invalid argument: %d"};
TMessage SFzyMatchingsMissing{u"Invalid operation: \"%s\".  %d premises but %d matchings"};
TMessage SFzyNotAPointList{u"A membership point belongs to a point list only, not to a %s"};

}  // namespace fzy
