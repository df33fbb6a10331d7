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

// Advice on what a text has wrong; `TReadingFault` and `TReadingWarning` carry it.

/// "Did you mean "%s"?"
extern TMessage SFzyAdviseSpelling;
/// "Put blanks around an operator: %s"
extern TMessage SFzyAdviseBlanks;
/// "Group by square brackets: [%s]"
extern TMessage SFzyAdviseGroup;
/// "Put what stands in front of it into square brackets: [(...)] %s"
extern TMessage SFzyAdviseLeadingGroup;
/// "A point has two numbers: (x degree)"
extern TMessage SFzyAdvisePoint;
/// "A list of points has brackets of its own: ((x degree) (x degree))"
extern TMessage SFzyAdvisePointList;
/// "Write a decimal point: %s"
extern TMessage SFzyAdviseDecimal;
/// "Separate numbers by blanks alone"
extern TMessage SFzyAdviseComma;
/// "%s takes two numbers: (%s left right)"
extern TMessage SFzyAdviseTwoNumbers;
/// "beta takes three or four numbers: (beta reach center half-width weight)"
extern TMessage SFzyAdviseBeta;
/// "The shapes are %s"
extern TMessage SFzyAdviseShapes;
/// "Put the numbers in order: (%s)"
extern TMessage SFzyAdviseOrder;
/// "Write two different numbers"
extern TMessage SFzyAdviseWidth;
/// "A ")" is missing: "(%s" in line %d is still open"
extern TMessage SFzyAdviseUnclosed;
/// "There is a ")" too many, here or before"
extern TMessage SFzyAdviseSurplus;
/// "A term stands in brackets: (term %s ...)"
extern TMessage SFzyAdviseTermBrackets;
/// "Put it into brackets: (%s ...)"
extern TMessage SFzyAdviseClauseBrackets;
/// "Terms stand within (values ...)"
extern TMessage SFzyAdviseTermPlace;
/// "A name is a word without quotes: %s"
extern TMessage SFzyAdviseName;
/// "A name is a word, not a number"
extern TMessage SFzyAdviseNumberName;
/// "A name is one word: %s"
extern TMessage SFzyAdviseOneWord;
/// "Put several words into quotes"
extern TMessage SFzyAdviseUnits;
/// "A term can name those above it: %s"
extern TMessage SFzyAdviseTermsAbove;
/// "No term stands above it that it could name"
extern TMessage SFzyAdviseNoTerms;
/// "A term cannot be made of itself"
extern TMessage SFzyAdviseItself;
/// "Automatic terms are made after the text is read: define the term above"
extern TMessage SFzyAdviseAutoTerm;
/// "Write "%s" instead of it"
extern TMessage SFzyAdviseSign;
/// "A string behind the name is the comment: put "" before it"
extern TMessage SFzyAdviseComment;
/// "A hedge stands before a term, a number or a group"
extern TMessage SFzyAdviseHedge;
/// "An operator stands between two terms, numbers or groups"
extern TMessage SFzyAdviseOperator;
/// "Add a "]" behind it"
extern TMessage SFzyAdviseSquareClose;
/// "Take it away, or put a "[" before it"
extern TMessage SFzyAdviseSquareOpen;
/// "End the string by a quote; within a string write \""
extern TMessage SFzyAdviseQuote;
/// "In the text of ?%s: %s"
extern TMessage SFzyAdviseNamedText;
/// "Change the text of ?%s"
extern TMessage SFzyAdviseChangeText;
/// "Write range before values"
extern TMessage SFzyAdviseEarlyRange;
/// "Widen the range, or take another number"
extern TMessage SFzyAdviseWiderRange;
/// "Write (range least greatest) before values"
extern TMessage SFzyAdviseMissingRange;
/// "Write one, such as "and"; as it stands only what comes last counts"
extern TMessage SFzyAdviseMissingOperator;
/// "Write (range least greatest), or turn the automatic terms off"
extern TMessage SFzyAdviseAutoTerms;

// What is read silently and was hardly meant.

/// "The range from %s to %s is empty"
extern TMessage SFzyWarnEmptyRange;
/// "The range stands behind terms that were read within %s to %s"
extern TMessage SFzyWarnLateRange;
/// "The numbers of %s are out of order"
extern TMessage SFzyWarnArgumentOrder;
/// "%s lies outside the range from %s to %s and was moved"
extern TMessage SFzyWarnMovedPoint;
/// "No operator stands between "%s" and "%s""
extern TMessage SFzyWarnMissingOperator;
/// "The name of the term is "%s" alone; "%s" became part of its body"
extern TMessage SFzyWarnLongName;
/// "The automatic terms of %s span %s to %s, because its text sets no range"
extern TMessage SFzyWarnAutoTerms;

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
