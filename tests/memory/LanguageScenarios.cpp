#include "fuzzylogic/common/PostFix.h"
#include "fuzzylogic/common/StringStream.h"
#include "tests/memory/Model.h"

namespace fzy::test {
namespace {

constexpr TPromise Usable = TPromise::Usable;

/// What a parser reads, by name. A term of it may stay after an error.
struct TNamedText {
  const char* Name;
  const char* Text;
};

constexpr TNamedText Terms[] = {
    {"points", "(term warm ((0 0) (1.5 1) (30 0)))"},
    {"list", "(term warm \"a comment of its own\" ((0 0) (15 1) (30 0)))"},
    {"call", "(term warm (beta 10 20 3))"},
    {"expression", "(term warm mild\\ and\\ dry or very cold\\ and\\ wet)"},
    {"fault", "(term warm (tri 0 15"},
    {"unknown_call", "(term warm (trapezoid 0 15))"},
};

constexpr TNamedText Expressions[] = {
    {"name", "mild\\ and\\ dry"},
    {"number", "12.25"},
    {"hedge", "very mild\\ and\\ dry"},
    {"and", "cold\\ and\\ wet and mild\\ and\\ dry"},
    {"group", "[cold\\ and\\ wet or not mild\\ and\\ dry] and-product very cold\\ and\\ wet"},
    {"operator", "mild\\ and\\ dry ^ 2 +X 3"},
    {"call", "(tri 0 15 30) or 7"},
    {"points", "((0 1) (10 0)) or mild\\ and\\ dry"},
    {"variable", "?one or ?two"},
    {"nothing", ""},
    {"unknown", "very lukewarm"},
    {"unmatched", "[very mild\\ and\\ dry"},
    {"circle", "not ?circle"},
};

template <class Scene>
struct TLanguage : TModel<Scene> {
  TLanguage() {
    this->OnlyTerms = true;
    this->Fuzzy.GetVariables()->SetText("one=very mild\\ and\\ dry\ntwo=not ?one\ncircle=?circle");
  }
};

template <class Scene>
void AddReading(TScenarios& all, const std::string& model) {
  using F = TLanguage<Scene>;
  std::vector<TCase<F>> cases;
  for (const TNamedText& term : Terms)
    cases.push_back({"term_" + std::string(term.Name),
                     [text = TString(term.Text)](F& f) {
                       f.Text =
                           MessageOf([&] { f.Parser.ParseFuzzySet(f.Variable, text, nullptr); });
                     },
                     Usable});
  for (const TNamedText& expression : Expressions) {
    cases.push_back(
        {"eval_" + std::string(expression.Name), [text = TString(expression.Text)](F& f) {
           typename Scene::TSet result{};
           std::string shown =
               MessageOf([&] { result = f.Parser.EvalFuzzyExpression(f.Variable, text); });
           if (result) shown += Tell(Engine(result));
           f.Text = shown;
         }});
    cases.push_back(
        {"crisp_" + std::string(expression.Name), [text = TString(expression.Text)](F& f) {
           typename Scene::TSet result{};
           double crisp = 0;
           const std::string message =
               MessageOf([&] { crisp = f.Parser.EvalFuzzyExpression(f.Variable, text, result); });
           f.Text = message + Number(crisp);
         }});
  }
  const auto withText = [](F& f) {
    f.Fuzzy.SetStrings(
        "(deffuzzy temperature \"outside\" (range 0 40) (units \"degrees C\") (values (term cold "
        "(z "
        "0 10)) (term mild ((0 0) (10 1) (15 0))) (term fine \"a comment\" mild or very cold)))");
    f.Variable = Variables(f.Fuzzy)[0];
    f.Cold = Sets(f.Variable)[0];
    f.Mild = Sets(f.Variable).back();
  };
  // clang-format off
  for (const bool full : {false, true}) {
    cases.push_back({full ? "print_fully" : "print", [](F& f) { f.Text = f.Parser.PrettyPrint(f.Variable).Utf8(); }, TPromise::Nothing,
                     [=](F& f) { withText(f), f.Parser.SetFullPrecision(full); }});
  }
  for (TCase<F>& one : std::vector<TCase<F>>{
           {"print_points", [](F& f) { f.Text = f.Parser.PrettyPrint(f.Variable).Utf8(); }},
           {"print_set", [](F& f) { f.Text = f.Parser.PrettyPrint(f.Cold, false).Utf8() + f.Parser.PrettyPrint(f.Mild, true).Utf8(); }, TPromise::Nothing, withText},
           {"print_refused", [](F& f) { f.Text = MessageOf([&] { f.Parser.PrettyPrint(f.Variable); }); }, TPromise::Nothing, [](F& f) { f.Mild->SetDefined(true); f.Variable->SetName("?what"); }},
           {"parse", [](F& f) { f.Parser.Parse("(deffuzzy tip (range 0 10) (values (term low (z 0 10))))", nullptr); }, Usable},
           {"variable", [](F& f) { Scene::Read(f.Parser, "(deffuzzy tip \"a comment\" (values (term low (z 0 1))))"); }, Usable},
           {"faulty", [](F& f) { f.Text = MessageOf([&] { Scene::Read(f.Parser, "(deffuzzy tip (range 3 x"); }); }, Usable},
           {"faulty_name", [](F& f) { f.Text = MessageOf([&] { Scene::Read(f.Parser, "(deffuzzy (a list) (range 3 x))"); }); }, Usable},
           {"encoded", [](F& f) { Scene::Read(f.Parser, "(deffuzzy tip (values (term low ((0 1) (1 0)))))", TEncoding::UTF16BigEndian()); }, Usable},
           {"unique_name", [](F& f) { f.Text = f.Parser.GetUniqueName().Utf8(); }},
       })
    cases.push_back(std::move(one));
  // clang-format on
  AddCases<F>(all, model + "_language", std::move(cases));
}

/// Tokens of all kinds, in lists.
struct TTokens {
  TTokens() {
    for (const char* text : {"a word that is long", "another word"}) List->Add(Word(text));
  }
  static Ref<IFuzzyStreamToken> Word(const TString& text) {
    const Ref<IFuzzyStreamToken> token = TFuzzyStreamToken::Create();
    token->SetText(text);
    token->SetDataType(KindOf(fstAtom));
    return token;
  }
  static std::unique_ptr<TFuzzyLogicTokenStream> Stream(const TString& text) {
    return std::make_unique<TFuzzyLogicTokenStream>(
        std::make_unique<TKelStringStream>(text, nullptr), nullptr);
  }
  std::string Show() const { return List->ToString().Utf8() + Token->ToString().Utf8() + Result; }

  Ref<TFuzzyStreamTokenList> List = TFuzzyStreamTokenList::Create();
  Ref<IFuzzyStreamToken> Token = Word("a token");
  std::string Result;
};

}  // namespace

void AddLanguageScenarios(TScenarios& all) {
  AddReading<TScene>(all, "owned");
  AddReading<TCountedScene>(all, "counted");
  // clang-format off
  AddCases<TTokens>(all, "tokens", {
      {"scan", [](auto& f) {
         const auto stream = TTokens::Stream("(a \"string of some length\" 12 -3.5e4 ?variable ; a comment\n [b c] & | ~ a\\ long\\ word)) z");
         std::string result;
         for (Ref<IFuzzyStreamToken> token; token = stream->NextToken(), token->GetDataType() != KindOf(fstNone);)
           result += token->GetText().Utf8() + token->GetWhitespace().Utf8();
         f.Result = result + stream->ToString().Utf8();
       }},
      {"put_back", [](auto& f) {
         const auto stream = TTokens::Stream("(head of a construct) and more");
         std::string result = stream->Head().Utf8();
         const Ref<IFuzzyStreamToken> token = stream->NextToken();
         for (int i = 0; i < 3; ++i) stream->PutBackToken(token);
         result += stream->GetCurrentToken()->GetText().Utf8();
         stream->MoveToNextConstruct();
         f.Result = result + stream->NextToken()->GetText().Utf8();
       }},
      {"unbalanced", [](auto& f) { f.Result = MessageOf([] { TTokens::Stream("(a \"string")->NextToken(); }); }},
      {"text", [](auto& f) { f.Token->SetText(Long); }},
      {"space", [](auto& f) { f.Token->SetWhitespace(Long); }},
      {"tag", [](auto& f) { f.Token->SetTag(77); }},
      {"add", [](auto& f) { f.List->Add(f.Token); }},
      {"insert", [](auto& f) { f.List->Insert(1, f.Token); }},
      {"append", [](auto& f) { f.List->Append(f.List->Clone()); }},
      {"append_itself", [](auto& f) { f.List->Append(f.List); }},
      {"assign", [](auto& f) { const auto list = TFuzzyStreamTokenList::Create(); list->Add(f.Token); list->Add(TTokens::Word(Long)); f.List->Assign(list); }},
      {"nest", [](auto& f) { const auto list = TFuzzyStreamTokenList::Create(); list->Add(f.Token); const auto token = TFuzzyStreamToken::Create(); token->SetList(list); f.List->Add(token); }},
      {"deep", [](auto& f) {
         Ref<IFuzzyStreamTokenList> list = TFuzzyStreamTokenList::Create();
         for (int i = 0; i < 20; ++i) {
           const auto outer = TFuzzyStreamTokenList::Create();
           const auto token = TFuzzyStreamToken::Create();
           token->SetList(list);
           for (int j = 0; j < 3; ++j) outer->Add(token);
           list = outer;
         }
         f.Result = std::to_string(list->GetValueCount());
       }},
      {"clone", [](auto& f) { f.Result = f.Token->Clone()->ToString().Utf8() + f.List->Clone()->ToString().Utf8(); }},
      {"assign_token", [](auto& f) { f.Token->Assign(*TTokens::Word(Long)); }},
      {"error", [](auto& f) { f.Result = MessageOf([&] { f.List->Delete(77); }); }},
  });
  // clang-format on
}

}  // namespace fzy::test
