#include <charconv>
#include <string>

#include "bench/Memory.h"

// Definition texts read into a model, in three forms and several sizes: bytes of text a second, the
// peak of memory beyond what the model keeps, and a plain pass over the same text that only splits
// it and converts its numbers. Texts of 100 MB need a few GB of memory and are read only when
// FUZZYLOGIC_BENCH_LARGE is set.

namespace fzy::bench {
namespace {

std::string ManyVariables(std::size_t size) {
  std::string text;
  for (int i = 0; text.size() < size; ++i) {
    text += "(deffuzzy temperature" + std::to_string(i) +
            " \"of the air\" (range 0 100) (units celsius)\n"
            "  (values (term cold ((0 1) (20.5 1) (40.25 0)))\n"
            "          (term warm (tri 20 50 80))))\n";
  }
  return text;
}

std::string ManyTerms(std::size_t size) {
  std::string text = "(deffuzzy temperature (range 0 100) (values\n";
  for (int i = 0; text.size() < size; ++i)
    text += "  (term warm" + std::to_string(i) + " ((0 1) (20.5 1) (40.25 0)))\n";
  return text + "))\n";
}

std::string ManyPoints(std::size_t size) {
  std::string text = "(deffuzzy temperature (range 0 1000000000) (values (term warm (\n";
  for (int i = 0; text.size() < size; ++i)
    text += "  (" + std::to_string(i) + ".5 0." + std::to_string(10 + i % 89) + ")\n";
  return text + "))))\n";
}

/// A pass over the text that splits it into words and converts those that are numbers.
double PlainPass(const std::string& text) {
  double sum = 0;
  const char* at = text.data();
  const char* const end = at + text.size();
  const auto ends = [](char c) { return c <= ' ' || c == '(' || c == ')' || c == '"'; };
  while (at != end) {
    const char* word = at;
    while (at != end && !ends(*at)) ++at;
    double number = 0;
    if (at != word && std::from_chars(word, at, number).ec == std::errc()) sum += number;
    if (at != end) ++at;
  }
  return sum;
}

template <std::string (*MakeText)(std::size_t)>
void Parse(benchmark::State& state) {
  const std::string utf8 = MakeText(static_cast<std::size_t>(state.range(0)) * 1000);
  const TString text(utf8);
  CompareText(
      state, static_cast<double>(utf8.size()),
      [&](TTextTimer& timer) {
        TFuzzyLogic fuzzy;
        fuzzy.SetAutoTerms(state.range(1) != 0);
        TKelFuzzyLogicParser parser;
        parser.SetFuzzyLogic(&fuzzy);
        timer([&] { parser.Parse(text, nullptr); });
        Require(fuzzy.GetItems()->GetCount() > 0, "parse");
      },
      [&](TTextTimer& timer) { timer([&] { benchmark::DoNotOptimize(PlainPass(utf8)); }); });
}

/// Sizes in kB, without and with automatic terms.
void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"kB", "auto"})->UseManualTime()->Unit(benchmark::kMillisecond);
  for (const int autoTerms : {0, 1}) {
    for (const int size : {10, 1'000, 10'000, 20'000}) benchmark->Args({size, autoTerms});
    if (std::getenv("FUZZYLOGIC_BENCH_LARGE")) benchmark->Args({100'000, autoTerms});
  }
}
BENCHMARK(Parse<ManyVariables>)->Name("Parse/variables")->Apply(Sizes);
BENCHMARK(Parse<ManyTerms>)->Name("Parse/terms")->Apply(Sizes);
BENCHMARK(Parse<ManyPoints>)->Name("Parse/points")->Apply(Sizes);

}  // namespace
}  // namespace fzy::bench
