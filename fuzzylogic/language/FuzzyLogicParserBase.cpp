#include "fuzzylogic/language/FuzzyLogicParserBase.h"

#include <algorithm>
#include <array>

#include "fuzzylogic/framework/Properties.h"
#include "fuzzylogic/language/detail/ParserFace.h"
#include "fuzzylogic/language/detail/ReadingNotes.h"
#include "fuzzylogic/language/detail/ReadingWarnings.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy {
namespace {

using TArguments = std::array<TFzyFloat, 4>;

/// A shape function for one number of arguments, for sets of either model.
struct TShapeFunction {
  template <class Make>
  TShapeFunction(std::u16string_view name, int arguments, detail::TShapeForm form,
                 const TMessage& expected, Make make)
      : Name(name),
        Arguments(arguments),
        Form(form),
        Expected(&expected),
        MakeSet(make),
        MakeIntf(make) {}

  std::u16string_view Name;
  int Arguments;
  detail::TShapeForm Form;
  const TMessage* Expected;
  void (*MakeSet)(TFuzzySet& set, int num, const TArguments& a);
  void (*MakeIntf)(IFuzzySet& set, int num, const TArguments& a);
};

using enum detail::TShapeForm;

const std::array<TShapeFunction, 7> ShapeFunctions = {{
    {u"pi", 2, Reach, SPIArgsExpected,
     [](auto& set, int num, const TArguments& a) { set.CreatePIFunctionValues(num, a[0], a[1]); }},
    {u"pi", 3, Center, SPIArgsExpected,
     [](auto& set, int num, const TArguments& a) {
       set.CreatePIFunctionValues(num, a[0], a[1], a[2]);
     }},
    {u"tri", 3, Middle, STriArgsExpected,
     [](auto& set, int, const TArguments& a) {
       set.CreateTriangleFunctionValues(a[0], a[1], a[2]);
     }},
    {u"s", 2, Ends, SCurveArgsExpected,
     [](auto& set, int num, const TArguments& a) {
       set.CreateCurveValues(num, a[0], a[1], a[1], true);
     }},
    {u"z", 2, Ends, SCurveArgsExpected,
     [](auto& set, int num, const TArguments& a) {
       set.CreateCurveValues(num, a[0], a[1], a[1], false);
     }},
    {u"beta", 3, Reach, SBetaArgsExpected,
     [](auto& set, int num, const TArguments& a) {
       set.CreateBetaCurveFunctionValues(num, a[0], a[1], a[2]);
     }},
    {u"beta", 4, Reach, SBetaArgsExpected,
     [](auto& set, int num, const TArguments& a) {
       set.CreateBetaCurveFunctionValues(num, a[0], a[1], a[2], a[3]);
     }},
}};

/// The shape function that a call names, by its name and its arguments, which must be numbers.
const TShapeFunction& FindShape(TCustomFuzzyLogicParser& parser, const TString& funcName,
                                const Ref<IFuzzyStreamTokenList>& list) {
  constexpr const char* method = "CalcFuzzyFunction";
  const auto named = [&](const TShapeFunction& function) {
    return function.Name == funcName.View();
  };
  const auto known = std::find_if(ShapeFunctions.begin(), ShapeFunctions.end(), named);
  if (known == ShapeFunctions.end()) parser.ParseError(method, SUnknownFunctionName, {funcName});
  const int count = list ? list->GetValueCount() : 0;
  if (!parser.VerifyAll(list, {fstInteger, fstFloat})) {
    int wrong = 0;
    while (IsOfKind(*list->Get(wrong), {fstInteger, fstFloat})) ++wrong;
    parser.ParseError(method, SFzyArgTypeWrong, {funcName, TString("numeric")}, list->Get(wrong));
  }
  const auto function = std::find_if(known, ShapeFunctions.end(), [&](const TShapeFunction& entry) {
    return named(entry) && entry.Arguments == count;
  });
  if (function == ShapeFunctions.end())
    parser.ParseError(method, SFzyArgNumWrong, {funcName, known->Expected->Get()});
  return *function;
}

TArguments ArgumentsOf(IFuzzyStreamTokenList& list) {
  TArguments arguments{};
  for (int i = 0; i < list.GetValueCount(); ++i)
    arguments[static_cast<std::size_t>(i)] = list.Get(i)->GetNumber();
  return arguments;
}

constexpr std::size_t LongestShownText = 255;
constexpr std::size_t ShownEnd = 128;

}  // namespace

TCustomFuzzyLogicParser::TCustomFuzzyLogicParser(TComponent* owner)
    : TFuzzyTextParser(owner),
      FFace(new detail::TParserFace(*this)),
      FNotes(std::make_unique<detail::TReadingNotes>(*this)) {}

Ref<IFuzzyParser> TCustomFuzzyLogicParser::GetInterface() { return FFace; }

HResult TCustomFuzzyLogicParser::QueryInterface(const TGuid& id, void** result) {
  return FFace->QueryInterface(id, result);
}

void TCustomFuzzyLogicParser::DefineProperties(TFiler& filer) {
  TFuzzyTextParser::DefineProperties(filer);
  filer.DefineLink(
      "FuzzyLogic", [this] { return FFuzzyLogic; },
      [this](TCustomFuzzyLogic* value) { SetFuzzyLogic(value); });
}

TCustomFuzzyLogicParser::~TCustomFuzzyLogicParser() {
  FFace->Detach();
  Destroying();
  TCustomFuzzyLogicParser::SetFuzzyLogic(nullptr);
}

/// A parse that is still running keeps the memory, but nobody tells of the component's end any
/// more.
void TCustomFuzzyLogicParser::Leave() {
  FFace->Detach();
  TFuzzyTextParser::Leave();
  TCustomFuzzyLogicParser::SetFuzzyLogic(nullptr);
}

void TCustomFuzzyLogicParser::SetFuzzyLogic(TCustomFuzzyLogic* value) {
  if (Is(csDestroying)) value = nullptr;  // nobody would tell of the component's end any more
  if (value == FFuzzyLogic) return;
  if (value) value->FreeNotification(this);  // first, as it may find no memory
  if (FFuzzyLogic) FFuzzyLogic->RemoveFreeNotification(this);
  FFuzzyLogic = value;
}

void TCustomFuzzyLogicParser::Notification(TComponent* component, TOperation operation) {
  TFuzzyTextParser::Notification(component, operation);
  if (operation == opRemove && FFuzzyLogic && component == FFuzzyLogic) SetFuzzyLogic(nullptr);
}

const TReadingFault* TCustomFuzzyLogicParser::GetFault() const noexcept {
  return FNotes->Fault() ? &*FNotes->Fault() : nullptr;
}

const std::vector<TReadingWarning>& TCustomFuzzyLogicParser::GetWarnings() const noexcept {
  return FNotes->Warnings();
}

bool TCustomFuzzyLogicParser::GetDiagnostics() const noexcept { return FNotes->Enabled; }
void TCustomFuzzyLogicParser::SetDiagnostics(bool value) noexcept { FNotes->Enabled = value; }

void TCustomFuzzyLogicParser::Parse(const TString& text, const TEncoding* /*encoding*/) {
  const detail::TReading reading(*this, false);
  if (!FFuzzyLogic) throw EFzyParseException(SFuzzyLogicNotSet);
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

void TCustomFuzzyLogicParser::ParseError(const TString& method, const TMessage& message,
                                         const Ref<IFuzzyStreamToken>& word) {
  FNotes->NoteError(message, word);
  ParseError(method, message.Get());
}

void TCustomFuzzyLogicParser::ParseError(const TString& method, const TMessage& format,
                                         std::initializer_list<TFormatArg> args,
                                         const Ref<IFuzzyStreamToken>& word) {
  FNotes->NoteError(format, word);
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
  const TShapeFunction& function = FindShape(*this, funcName, list);
  if (!fuzzySet) return;
  const TPin pinned(fuzzySet);
  const TFuzzySet& set = *fuzzySet;
  const TArguments arguments = ArgumentsOf(*list);
  function.MakeSet(*fuzzySet, ShapePoints(), arguments);
  if (!set.IsFreed()) detail::WarnOfShape(*FNotes, funcName, function.Form, list, arguments, set);
}

void TCustomFuzzyLogicParser::CalcFuzzyFunction(const TString& funcName,
                                                const Ref<IFuzzyStreamTokenList>& list,
                                                Ref<IFuzzySet>& fuzzySet) {
  const TShapeFunction& function = FindShape(*this, funcName, list);
  // A handler may reset the reference that was given.
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
  const Ref<IFuzzySet> set = fuzzySet;
  if (!set) return;
  const TArguments arguments = ArgumentsOf(*list);
  function.MakeIntf(*set, ShapePoints(), arguments);
  const auto* own = dynamic_cast<const TFuzzySet*>(set.Get());
  if (own) detail::WarnOfShape(*FNotes, funcName, function.Form, list, arguments, *own);
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

Ref<IFuzzySet> TCustomFuzzyLogicParser::CalcFuzzyFunction(const Ref<IFuzzySet>& fuzzySet,
                                                          const TString& funcName,
                                                          const Ref<IFuzzyStreamTokenList>& list) {
  const TPin self(this);
  Ref<IFuzzySet> result = fuzzySet;
  bool handled = false;
  FireEvent(FOnCalcFuzzyIntfFunction, this, funcName, list, result, handled);
  if (!handled) CalcFuzzyFunction(funcName, list, result);
  return result;
}

}  // namespace fzy
