#include <array>
#include <charconv>
#include <string>

#include "bench/Memory.h"

// Stored forms of many variables, of many sets, of many points and of much text, loaded and stored,
// in several sizes: bytes of the form a second, the peak of memory beyond what stays, and a plain
// pass over the same form that splits it into words and converts its numbers (and, for storing,
// writes both to a text again). Forms of 100 MB are made only when FUZZYLOGIC_BENCH_LARGE is set.

namespace fzy::bench {
namespace {

constexpr std::size_t FormBytesASet = 300;

void AddSet(TFuzzyVariable& variable, int number) {
  TFuzzySet* set = variable.GetItems()->Add(TString("warm" + std::to_string(number)));
  Fill(*set, TPoints{{0, 1}, {20.5 + number % 10, 1}, {40.25, 0}});
}

void ManyVariables(TFuzzyLogic& fuzzy, std::size_t size) {
  for (std::size_t i = 0; i < size / (2 * FormBytesASet + 200); ++i) {
    TFuzzyVariable* variable = fuzzy.GetItems()->Add(TString("temperature" + std::to_string(i)));
    variable->SetMaximum(100);
    for (const int number : {1, 2}) AddSet(*variable, number);
  }
}

void ManySets(TFuzzyLogic& fuzzy, std::size_t size) {
  TFuzzyVariable* variable = fuzzy.GetItems()->Add("temperature");
  variable->SetMaximum(100);
  for (std::size_t i = 0; i < size / FormBytesASet; ++i) AddSet(*variable, static_cast<int>(i));
}

void ManyPoints(TFuzzyLogic& fuzzy, std::size_t size) {
  TFuzzyVariable* variable = fuzzy.GetItems()->Add("temperature");
  variable->SetMaximum(1e9);
  TPoints points;
  for (std::size_t i = 0; i < size / 40; ++i) {
    const auto x = static_cast<double>(i);
    points.push_back({x + 0.123456789, static_cast<double>(i % 89) / 89});
  }
  Fill(*variable->GetItems()->Add("warm"), points);
}

void MuchText(TFuzzyLogic& fuzzy, std::size_t size) {
  TString text;
  while (text.size() < size)
    text += u"a \"line\" of text in a comment, 1.5 times as long as \u00E9\n";
  fuzzy.GetItems()->Add("temperature")->SetComment(text);
}

/// A pass over the form that splits it into words and converts those that are numbers; with `copy`
/// it writes all of them there.
double PlainPass(const std::string& form, std::string* copy) {
  double sum = 0;
  const char* at = form.data();
  const char* const end = at + form.size();
  const auto ends = [](char c) { return c <= ' ' || c == '(' || c == ')' || c == '"'; };
  while (at != end) {
    const char* word = at;
    while (at != end && !ends(*at)) ++at;
    double number = 0;
    const bool isNumber = at != word && std::from_chars(word, at, number).ec == std::errc();
    if (isNumber) sum += number;
    if (copy && isNumber) {
      std::array<char, 32> digits{};
      copy->append(digits.data(),
                   std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
    } else if (copy) {
      copy->append(word, at);
    }
    if (at != end && copy) copy->push_back(*at);
    if (at != end) ++at;
  }
  return sum;
}

/// Takes bytes and counts them.
class TSink final : public TStream {
 public:
  std::size_t Read(char*, std::size_t) override { return 0; }
  void Write(std::string_view bytes) override { Count += bytes.size(); }
  std::size_t Count = 0;
};

using TMakeModel = void (*)(TFuzzyLogic& fuzzy, std::size_t size);

template <TMakeModel MakeModel>
void MakeForm(benchmark::State& state, TFuzzyLogic& fuzzy, std::string& form) {
  fuzzy.SetAutoTerms(false);
  MakeModel(fuzzy, static_cast<std::size_t>(state.range(0)) * 1000);
  TMemoryStream stream;
  StoreForm(stream, {&fuzzy});
  form = stream.GetBytes();
}

template <TMakeModel MakeModel>
void Load(benchmark::State& state) {
  TFuzzyLogic original;
  std::string form;
  MakeForm<MakeModel>(state, original, form);
  CompareText(
      state, static_cast<double>(form.size()),
      [&](TTextTimer& timer) {
        TFuzzyLogic fuzzy;
        TMemoryStream stream(form);
        timer([&] { LoadForm(stream, {&fuzzy}); });
        Require(EqualProperties(fuzzy, original), "load");
      },
      [&](TTextTimer& timer) {
        timer([&] { benchmark::DoNotOptimize(PlainPass(form, nullptr)); });
      });
}

template <TMakeModel MakeModel>
void Store(benchmark::State& state) {
  TFuzzyLogic fuzzy;
  std::string form;
  MakeForm<MakeModel>(state, fuzzy, form);
  CompareText(
      state, static_cast<double>(form.size()),
      [&](TTextTimer& timer) {
        TSink sink;
        timer([&] { StoreForm(sink, {&fuzzy}); });
        Require(sink.Count == form.size(), "store");
      },
      [&](TTextTimer& timer) {
        std::string copy;
        copy.reserve(2 * form.size());
        timer([&] { benchmark::DoNotOptimize(PlainPass(form, &copy)); });
      });
}

/// Sizes in kB, about.
void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("kB")->UseManualTime()->Unit(benchmark::kMillisecond);
  for (const int size : {10, 1'000, 10'000}) benchmark->Arg(size);
  if (std::getenv("FUZZYLOGIC_BENCH_LARGE")) benchmark->Arg(100'000);
}
BENCHMARK(Load<ManyVariables>)->Name("Load/variables")->Apply(Sizes);
BENCHMARK(Load<ManySets>)->Name("Load/sets")->Apply(Sizes);
BENCHMARK(Load<ManyPoints>)->Name("Load/points")->Apply(Sizes);
BENCHMARK(Load<MuchText>)->Name("Load/text")->Apply(Sizes);
BENCHMARK(Store<ManyVariables>)->Name("Store/variables")->Apply(Sizes);
BENCHMARK(Store<ManySets>)->Name("Store/sets")->Apply(Sizes);
BENCHMARK(Store<ManyPoints>)->Name("Store/points")->Apply(Sizes);
BENCHMARK(Store<MuchText>)->Name("Store/text")->Apply(Sizes);

}  // namespace
}  // namespace fzy::bench
