#include "fuzzylogic/language/FuzzyLogicParserBase.h"

#include <algorithm>
#include <array>

#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy {
namespace {

using TArguments = std::array<TFzyFloat, 4>;

/// A shape function for one number of arguments.
struct TShapeFunction {
  std::u16string_view Name;
  int Arguments;
  void (*Make)(TFuzzySet& set, int num, const TArguments& a);
  const TMessage* Expected;
};

const std::array<TShapeFunction, 7> ShapeFunctions = {{
    {u"pi", 2,
     [](TFuzzySet& set, int num, const TArguments& a) {
       set.CreatePIFunctionValues(num, a[0], a[1]);
     },
     &SPIArgsExpected},
    {u"pi", 3,
     [](TFuzzySet& set, int num, const TArguments& a) {
       set.CreatePIFunctionValues(num, a[0], a[1], a[2]);
     },
     &SPIArgsExpected},
    {u"tri", 3,
     [](TFuzzySet& set, int, const TArguments& a) {
       set.CreateTriangleFunctionValues(a[0], a[1], a[2]);
     },
     &STriArgsExpected},
    {u"s", 2,
     [](TFuzzySet& set, int num, const TArguments& a) {
       set.CreateCurveValues(num, a[0], a[1], a[1], true);
     },
     &SCurveArgsExpected},
    {u"z", 2,
     [](TFuzzySet& set, int num, const TArguments& a) {
       set.CreateCurveValues(num, a[0], a[1], a[1], false);
     },
     &SCurveArgsExpected},
    {u"beta", 3,
     [](TFuzzySet& set, int num, const TArguments& a) {
       set.CreateBetaCurveFunctionValues(num, a[0], a[1], a[2]);
     },
     &SBetaArgsExpected},
    {u"beta", 4,
     [](TFuzzySet& set, int num, const TArguments& a) {
       set.CreateBetaCurveFunctionValues(num, a[0], a[1], a[2], a[3]);
     },
     &SBetaArgsExpected},
}};

constexpr std::size_t LongestShownText = 255;
constexpr std::size_t ShownEnd = 128;

}  // namespace

TCustomFuzzyLogicParser::~TCustomFuzzyLogicParser() {
  Destroying();
  TCustomFuzzyLogicParser::SetFuzzyLogic(nullptr);
}

/// A parse that is still running keeps the memory, but nobody tells of the component's end any
/// more.
void TCustomFuzzyLogicParser::Leave() {
  TFuzzyTextParser::Leave();
  TCustomFuzzyLogicParser::SetFuzzyLogic(nullptr);
}

void TCustomFuzzyLogicParser::SetFuzzyLogic(TCustomFuzzyLogic* value) {
  if (value == FFuzzyLogic) return;
  if (FFuzzyLogic) FFuzzyLogic->RemoveFreeNotification(this);
  FFuzzyLogic = value;
  if (FFuzzyLogic) FFuzzyLogic->FreeNotification(this);
}

void TCustomFuzzyLogicParser::Notification(TComponent* component, TOperation operation) {
  TFuzzyTextParser::Notification(component, operation);
  if (operation == opRemove && FFuzzyLogic && component == FFuzzyLogic) SetFuzzyLogic(nullptr);
}

void TCustomFuzzyLogicParser::Parse(const TString& text, const TEncoding* /*encoding*/) {
  if (!FFuzzyLogic) throw EFzyParseException(SFuzzyLogicNotSet);
  const TPin self(this);
  FireEvent(FOnParsing, this);
  ParseFuzzyLogic(text, nullptr);
  FireEvent(FOnParsed, this);
}

void TCustomFuzzyLogicParser::ParseError(const TString& method, const TString& msg, TString text,
                                         int lineNumber) {
  if (text.size() > LongestShownText)
    text = text.Slice(0, ShownEnd) + "... \r\n" + text.Slice(text.size() - ShownEnd);
  throw EFzyParseException(SFzyParseError, {msg, method, TString(std::to_string(lineNumber)), text},
                           lineNumber);
}

void TCustomFuzzyLogicParser::ParseError(const TString& method, const TString& msg) {
  // The text first: asking for the line may read a token.
  TString text = GetParsedText();
  const int lineNumber = GetLineNumber();
  ParseError(method, msg, std::move(text), lineNumber);
  throw EFzyParseException(msg, lineNumber);  // in case a descendant's report returned
}

void TCustomFuzzyLogicParser::ParseError(const TString& method, const TString& format,
                                         std::initializer_list<TFormatArg> args) {
  ParseError(method, FormatText(format, args));
}

bool TCustomFuzzyLogicParser::VerifyAll(const Ref<IFuzzyStreamTokenList>& list,
                                        TFuzzyStreamTokenTypes allowedTypes) const {
  for (int i = 0; list && i < list->GetValueCount(); ++i) {
    if (!IsOfKind(*list->Get(i), allowedTypes)) return false;
  }
  return true;
}

void TCustomFuzzyLogicParser::CalcFuzzyFunction(const TString& funcName,
                                                const Ref<IFuzzyStreamTokenList>& list,
                                                TFuzzySet*& fuzzySet) {
  constexpr const char* method = "CalcFuzzyFunction";
  const auto named = [&](const TShapeFunction& function) {
    return function.Name == funcName.View();
  };
  const auto known = std::find_if(ShapeFunctions.begin(), ShapeFunctions.end(), named);
  if (known == ShapeFunctions.end()) ParseError(method, SUnknownFunctionName, {funcName});
  if (!VerifyAll(list, {fstInteger, fstFloat}))
    ParseError(method, SFzyArgTypeWrong, {funcName, TString("numeric")});
  const int count = list->GetValueCount();
  const auto function = std::find_if(known, ShapeFunctions.end(), [&](const TShapeFunction& entry) {
    return named(entry) && entry.Arguments == count;
  });
  if (function == ShapeFunctions.end())
    ParseError(method, SFzyArgNumWrong, {funcName, known->Expected->Get()});
  if (!fuzzySet) return;
  TArguments arguments{};
  for (int i = 0; i < count; ++i)
    arguments[static_cast<std::size_t>(i)] = list->Get(i)->GetNumber();
  function->Make(*fuzzySet, FFuzzyLogic ? FFuzzyLogic->GetNumFunctionValues() : 7, arguments);
}

TFuzzySet* TCustomFuzzyLogicParser::CalcFuzzyFunction(TFuzzySet* fuzzySet, const TString& funcName,
                                                      const Ref<IFuzzyStreamTokenList>& list) {
  const TPin self(this);
  const TPin given(fuzzySet);
  bool handled = false;
  FireEvent(FOnCalcFuzzyFunction, this, funcName, list, fuzzySet, handled);
  const TPin replaced(fuzzySet);
  if (!handled) CalcFuzzyFunction(funcName, list, fuzzySet);
  return fuzzySet && fuzzySet->IsFreed() ? nullptr : fuzzySet;
}

}  // namespace fzy
