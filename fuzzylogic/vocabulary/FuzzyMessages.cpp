#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy {

constinit TMessage SFuzzySetEmpty{u"Invalid operation: \"%s\".  Fuzzy set is empty"};
constinit TMessage SInvalidFuzzySetName{u"Invalid fuzzy set name, \"%s\" is a reserved word"};
constinit TMessage SInvalidFuzzyVarName{u"Invalid fuzzy variable name, \"%s\""};
constinit TMessage SMissingFuzzyVariable{u"Missing fuzzy linguistic variable"};
constinit TMessage SMax3XValues{u"Invalid x value.  Maximum of 3 values with same X value: %.4f"};
constinit TMessage SInvalidFuzzyOperation{u"Invalid fuzzy operation: \"%s:"};
constinit TMessage SInvalidXRangeIndex{u"Invalid index argument to GetXRange.  Index = %d"};
constinit TMessage SInvalidRangeArguments{
    u"Invalid range arguments.  Left (%.4f) is greater than right (%.4f)"};
constinit TMessage SParserUnassigned{u"Parser not assigned.  Cannot parse"};
constinit TMessage SFzyParseError{u"Parsing Error, %s in %s at line %s: \"%s\""};
constinit TMessage SFzyArgNumWrong{
    u"Number of arguments for function, %s, incorrect.  Expected \"%s\""};
constinit TMessage SFzyArgMinNumWrong{
    u"Minimum number of arguments for function, %s, incorrect.  Expected %d or more"};
constinit TMessage SFzyArgTypeWrong{
    u"Data Types of arguments for function, %s, incorrect.  Expected %s"};
constinit TMessage SPIArgsExpected{u"\"Left Right Center\" or \"Range Center\""};
constinit TMessage STriArgsExpected{u"\"Left Middle Right\""};
constinit TMessage SCurveArgsExpected{u"\"Left Right Inflection_Point\""};
constinit TMessage SBetaArgsExpected{
    u"\"Range Center Inflection_Point\" or \"Range Center Inflection_Point Weight\""};
constinit TMessage SFuzzyLogicNotSet{u"Fuzzy Logic component must be specified to parse"};
constinit TMessage SFuzzyLogicNotTFuzzyLogic{
    u"FuzzyLogic property must be of type TFuzzyLogic or descendant"};
constinit TMessage SFuzzyLogicNotTIFuzzyLogic{
    u"FuzzyLogic property must be of type TIFuzzyLogic or descendant"};
constinit TMessage SUnknownFuzzySetName{u"Unknown Fuzzy Set name: \"%s\""};
constinit TMessage SUnknownFuzzyVarName{u"Unknown Fuzzy Variable name: \"%s\""};
constinit TMessage SUnknownFunctionName{u"Unknown function name: \"%s\""};
constinit TMessage SLowFuzzyTerm{u"low"};
constinit TMessage SMediumFuzzyTerm{u"medium"};
constinit TMessage SHighFuzzyTerm{u"high"};

constinit TMessage SFzyMissingName{u"Missing name"};
constinit TMessage SFzyExpectedFuzzySet{u"Expected \"( term\""};
constinit TMessage SFzyExpectedFuzzyDefinition{u"Expected \"( deffuzzy\""};
constinit TMessage SFzyMissingOpenParens{u"Expected \"(\""};
constinit TMessage SFzyMissingCloseParens{u"Expected \")\""};
constinit TMessage SFzyExpectedNumber{u"Expected number"};
constinit TMessage SFzyExpectedKeyword{u"Missing keyword.  Expected \"%s\""};
constinit TMessage SFzyMissingOperand{u"Missing fuzzy operand to be modified by hedge: %s"};
constinit TMessage SFzyUndefinedVariable{u"fuzzy variable is not defined"};
constinit TMessage SFzyInvalidToken{u"Invalid item in fuzzy expression: %s"};
constinit TMessage SFzyInvalidValuePair{u"Invalid X/Y value pair: %s"};
constinit TMessage SFzyUnexpectedToken{u"Unexpected token: \"%s\""};

constinit TMessage SFzyNoText{u"No definition text is being read"};
constinit TMessage SFzyExpressionRefused{u"Fuzzy expressions are not read by this parser"};
constinit TMessage SFzyPrintingRefused{u"Definition text is not written by this parser"};

constinit TMessage SFzyNotANumber{u"Invalid operation: \"%s\".  Not a number"};
constinit TMessage SFzyNotFinite{u"Invalid operation: \"%s\".  Not a finite number"};
constinit TMessage SFzySetMissing{u"Invalid operation: \"%s\".  No fuzzy set given"};
constinit TMessage SFzyInvalidArgument{u"Invalid operation: \"%s\".  Invalid argument: %d"};
constinit TMessage SFzyMatchingsMissing{
    u"Invalid operation: \"%s\".  %d premises but %d matchings"};
constinit TMessage SFzyNotAPointList{
    u"A membership point belongs to a point list only, not to a %s"};

}  // namespace fzy
