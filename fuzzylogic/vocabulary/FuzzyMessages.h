#pragma once

#include "fuzzylogic/framework/Message.h"

namespace fzy {

// Every text that the fuzzy subjects show a user. Each may be replaced (see `TMessage`); the
// comment gives the default.

/// "Invalid operation: "%s".  Fuzzy set is empty"
extern TMessage SFuzzySetEmpty;
/// "Invalid fuzzy set name, "%s" is a reserved word"
extern TMessage SInvalidFuzzySetName;
/// "Invalid fuzzy variable name, "%s""
extern TMessage SInvalidFuzzyVarName;
/// "Missing fuzzy linguistic variable"
extern TMessage SMissingFuzzyVariable;
/// "Invalid x value.  Maximum of 3 values with same X value: %.4f"
extern TMessage SMax3XValues;
/// "Invalid fuzzy operation: "%s:"
extern TMessage SInvalidFuzzyOperation;
/// "Invalid index argument to GetXRange.  Index = %d"
extern TMessage SInvalidXRangeIndex;
/// "Invalid range arguments.  Left (%.4f) is greater than right (%.4f)"
extern TMessage SInvalidRangeArguments;
/// "Parser not assigned.  Cannot parse"
extern TMessage SParserUnassigned;
/// "Parsing Error, %s in %s at line %s: "%s""
extern TMessage SFzyParseError;
/// "Number of arguments for function, %s, incorrect.  Expected "%s""
extern TMessage SFzyArgNumWrong;
/// "Minimum number of arguments for function, %s, incorrect.  Expected %d or more"
extern TMessage SFzyArgMinNumWrong;
/// "Data Types of arguments for function, %s, incorrect.  Expected %s"
extern TMessage SFzyArgTypeWrong;
/// ""Left Right Center" or "Range Center""
extern TMessage SPIArgsExpected;
/// ""Left Middle Right""
extern TMessage STriArgsExpected;
/// ""Left Right Inflection_Point""
extern TMessage SCurveArgsExpected;
/// ""Range Center Inflection_Point" or "Range Center Inflection_Point Weight""
extern TMessage SBetaArgsExpected;
/// "Fuzzy Logic component must be specified to parse"
extern TMessage SFuzzyLogicNotSet;
/// "FuzzyLogic property must be of type TFuzzyLogic or descendant"
extern TMessage SFuzzyLogicNotTFuzzyLogic;
/// "FuzzyLogic property must be of type TIFuzzyLogic or descendant"
extern TMessage SFuzzyLogicNotTIFuzzyLogic;
/// "Unknown Fuzzy Set name: "%s""
extern TMessage SUnknownFuzzySetName;
/// "Unknown Fuzzy Variable name: "%s""
extern TMessage SUnknownFuzzyVarName;
/// "Unknown function name: "%s""
extern TMessage SUnknownFunctionName;
/// "low", "medium", "high": the names of the automatic terms
extern TMessage SLowFuzzyTerm;
extern TMessage SMediumFuzzyTerm;
extern TMessage SHighFuzzyTerm;

// Reader and evaluator of definition texts.

/// "Missing name"
extern TMessage SFzyMissingName;
/// "Expected "( term""
extern TMessage SFzyExpectedFuzzySet;
/// "Expected "( deffuzzy""
extern TMessage SFzyExpectedFuzzyDefinition;
/// "Expected "(""
extern TMessage SFzyMissingOpenParens;
/// "Expected ")""
extern TMessage SFzyMissingCloseParens;
/// "Expected number"
extern TMessage SFzyExpectedNumber;
/// "Missing keyword.  Expected "%s""
extern TMessage SFzyExpectedKeyword;
/// "Missing fuzzy operand to be modified by hedge: %s"
extern TMessage SFzyMissingOperand;
/// "fuzzy variable is not defined"
extern TMessage SFzyUndefinedVariable;
/// "Invalid item in fuzzy expression: %s"
extern TMessage SFzyInvalidToken;
/// "Invalid X/Y value pair: %s"
extern TMessage SFzyInvalidValuePair;
/// "Unexpected token: "%s""
extern TMessage SFzyUnexpectedToken;

/// "No definition text is being read"
extern TMessage SFzyNoText;
/// "Unmatched "%s" in fuzzy expression"
extern TMessage SFzyUnmatchedBracket;
/// "Fuzzy variable refers to itself: %s"
extern TMessage SFzyCircularVariable;
/// "Fuzzy variables refer to each other more than %d deep: ?%s"
extern TMessage SFzyNestedVariables;
/// "The fuzzy expression is too large: its sets would take more than %d characters of names"
extern TMessage SFzyExpressionTooLarge;
/// "The name "%s" cannot be written in a definition text"
extern TMessage SFzyNameNotWritable;

// What the library refuses because it would leave the numbers or reach outside an object.

/// "Invalid operation: "%s".  Not a number"
extern TMessage SFzyNotANumber;
/// "Invalid operation: "%s".  Not a finite number"
extern TMessage SFzyNotFinite;
/// "Invalid operation: "%s".  No fuzzy set given"
extern TMessage SFzySetMissing;
/// "Invalid operation: "%s".  Invalid argument: %d"
extern TMessage SFzyInvalidArgument;
/// "Invalid operation: "%s".  %d premises but %d matchings"
extern TMessage SFzyMatchingsMissing;
/// "A membership point belongs to a point list only, not to a %s"
extern TMessage SFzyNotAPointList;

}  // namespace fzy
