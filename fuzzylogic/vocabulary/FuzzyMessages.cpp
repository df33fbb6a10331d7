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

TMessage SFzyAdviseSpelling{u"Did you mean \"%s\"?"};
TMessage SFzyAdviseBlanks{u"Put blanks around an operator: %s"};
TMessage SFzyAdviseGroup{u"Group by square brackets: [%s]"};
TMessage SFzyAdviseLeadingGroup{u"Put what stands in front of it into square brackets: [(...)] %s"};
TMessage SFzyAdvisePoint{u"A point has two numbers: (x degree)"};
TMessage SFzyAdvisePointList{u"A list of points has brackets of its own: ((x degree) (x degree))"};
TMessage SFzyAdviseDecimal{u"Write a decimal point: %s"};
TMessage SFzyAdviseComma{u"Separate numbers by blanks alone"};
TMessage SFzyAdviseTwoNumbers{u"%s takes two numbers: (%s left right)"};
TMessage SFzyAdviseBeta{u"beta takes three or four numbers: (beta reach center half-width weight)"};
TMessage SFzyAdviseShapes{u"The shapes are %s"};
TMessage SFzyAdviseOrder{u"Put the numbers in order: (%s)"};
TMessage SFzyAdviseWidth{u"Write two different numbers"};
TMessage SFzyAdviseUnclosed{u"A \")\" is missing: \"(%s\" in line %d is still open"};
TMessage SFzyAdviseSurplus{u"There is a \")\" too many, here or before"};
TMessage SFzyAdviseTermBrackets{u"A term stands in brackets: (term %s ...)"};
TMessage SFzyAdviseClauseBrackets{u"Put it into brackets: (%s ...)"};
TMessage SFzyAdviseTermPlace{u"Terms stand within (values ...)"};
TMessage SFzyAdviseName{u"A name is a word without quotes: %s"};
TMessage SFzyAdviseNumberName{u"A name is a word, not a number"};
TMessage SFzyAdviseOneWord{u"A name is one word: %s"};
TMessage SFzyAdviseUnits{u"Put several words into quotes"};
TMessage SFzyAdviseTermsAbove{u"A term can name those above it: %s"};
TMessage SFzyAdviseNoTerms{u"No term stands above it that it could name"};
TMessage SFzyAdviseItself{u"A term cannot be made of itself"};
TMessage SFzyAdviseAutoTerm{
    u"Automatic terms are made after the text is read: define the term above"};
TMessage SFzyAdviseSign{u"Write \"%s\" instead of it"};
TMessage SFzyAdviseComment{u"A string behind the name is the comment: put \"\" before it"};
TMessage SFzyAdviseHedge{u"A hedge stands before a term, a number or a group"};
TMessage SFzyAdviseOperator{u"An operator stands between two terms, numbers or groups"};
TMessage SFzyAdviseSquareClose{u"Add a \"]\" behind it"};
TMessage SFzyAdviseSquareOpen{u"Take it away, or put a \"[\" before it"};
TMessage SFzyAdviseQuote{u"End the string by a quote; within a string write \\\""};
TMessage SFzyAdviseNamedText{u"In the text of ?%s: %s"};
TMessage SFzyAdviseChangeText{u"Change the text of ?%s"};
TMessage SFzyAdviseEarlyRange{u"Write range before values"};
TMessage SFzyAdviseWiderRange{u"Widen the range, or take another number"};
TMessage SFzyAdviseMissingRange{u"Write (range least greatest) before values"};
TMessage SFzyAdviseMissingOperator{
    u"Write one, such as \"and\"; as it stands only what comes last counts"};
TMessage SFzyAdviseAutoTerms{u"Write (range least greatest), or turn the automatic terms off"};

TMessage SFzyWarnEmptyRange{u"The range from %s to %s is empty"};
TMessage SFzyWarnLateRange{u"The range stands behind terms that were read within %s to %s"};
TMessage SFzyWarnArgumentOrder{u"The numbers of %s are out of order"};
TMessage SFzyWarnMovedPoint{u"%s lies outside the range from %s to %s and was moved"};
TMessage SFzyWarnMissingOperator{u"No operator stands between \"%s\" and \"%s\""};
TMessage SFzyWarnLongName{u"The name of the term is \"%s\" alone; \"%s\" became part of its body"};
TMessage SFzyWarnAutoTerms{
    u"The automatic terms of %s span %s to %s, because its text sets no range"};

TMessage SFzyNotANumber{u"Invalid operation: \"%s\".  Not a number"};
TMessage SFzyNotFinite{u"Invalid operation: \"%s\".  Not a finite number"};
TMessage SFzySetMissing{u"Invalid operation: \"%s\".  No fuzzy set given"};
TMessage SFzyInvalidArgument{u"Invalid operation: \"%s\".  Invalid argument: %d"};
TMessage SFzyMatchingsMissing{u"Invalid operation: \"%s\".  %d premises but %d matchings"};
TMessage SFzyNotAPointList{u"A membership point belongs to a point list only, not to a %s"};

}  // namespace fzy
