#pragma once

#include "fuzzylogic/language/FuzzyLogicParserBase.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy::detail {

/// A parser as the counted model holds it. It outlives the parser; then it answers no query.
class TParserFace final : public TInterfaced<IFuzzyParser>, public IComponentReference {
 public:
  explicit TParserFace(TCustomFuzzyLogicParser& parser) noexcept : FParser(&parser) {}
  void Detach() noexcept { FParser = nullptr; }

  HResult QueryInterface(const TGuid& id, void** result) override {
    if (id == IComponentReference::Id && FParser) {
      *result = static_cast<IComponentReference*>(this);
      AddRef();
      return S_Ok;
    }
    if (FParser || id == IInterface::Id)
      return TInterfaced<IFuzzyParser>::QueryInterface(id, result);
    *result = nullptr;
    return E_NoInterface;
  }
  std::int32_t AddRef() noexcept override { return TInterfaced<IFuzzyParser>::AddRef(); }
  std::int32_t Release() noexcept override { return TInterfaced<IFuzzyParser>::Release(); }
  TComponent* GetComponent() override { return FParser; }

  TFzyFloat EvalFuzzyExpression(const Ref<IFuzzyVariable>& variable, const TString& expression,
                                Ref<IFuzzySet>& fuzzySet) override {
    return Parser().EvalFuzzyExpression(variable, expression, fuzzySet);
  }
  Ref<IFuzzySet> EvalFuzzyExpression(const Ref<IFuzzyVariable>& variable,
                                     const TString& expression) override {
    return Parser().EvalFuzzyExpression(variable, expression);
  }
  Ref<IFuzzySet> ParseFuzzySet(const Ref<IFuzzyVariable>& variable, const TString& text,
                               const TEncoding* encoding) override {
    return Parser().ParseFuzzySet(variable, text, encoding);
  }
  Ref<IFuzzyVariable> ParseFuzzyVariableIntf(const TString& text,
                                             const TEncoding* encoding) override {
    return Parser().ParseFuzzyVariableIntf(text, encoding);
  }
  TString PrettyPrint(const Ref<IFuzzySet>& fuzzySet, bool asDefinition) override {
    return Parser().PrettyPrint(fuzzySet, asDefinition);
  }
  TString PrettyPrint(const Ref<IFuzzyVariable>& fuzzyVariable) override {
    return Parser().PrettyPrint(fuzzyVariable);
  }

 private:
  TCustomFuzzyLogicParser& Parser() const {
    if (!FParser) throw EFzyException(SParserUnassigned);
    return *FParser;
  }

  TCustomFuzzyLogicParser* FParser;
};

}  // namespace fzy::detail
