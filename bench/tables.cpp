#include <optional>
#include <unordered_map>

#include "bench/Support.h"

// Keyed tables beside `std::unordered_map` with the same keys: adding, finding, missing and
// removing, for short and for long keys; a walk over all positions; and keys that were made to
// collide beside ordinary ones. Keys are looked for in another order than they were added.

namespace fzy::bench {
namespace {

using TTable = TKelHashTable<TString, int>;
using TMap = std::unordered_map<TString, int>;
using TKeys = std::vector<TString>;

TKeys MakeKeys(int count, bool isLong, const std::string& prefix = "term") {
  TKeys keys;
  for (int i = 0; i < count; ++i)
    keys.push_back(prefix + std::string(isLong ? 30 : 0, 'x') + std::to_string(100'000 + i));
  return keys;
}

/// Keys that in a table of 32768 slots belong to the first hundreds of them.
TKeys HostileKeys(int count) {
  TKeys keys;
  for (int i = 0; static_cast<int>(keys.size()) < count; ++i) {
    TString key = "term" + std::to_string(i);
    if ((HashText(key, THashSeed{}) & 0x7FFF) < 256) keys.push_back(std::move(key));
  }
  return keys;
}

/// Makes a table with the keys, unless it has some.
template <class Table>
void Fill(std::optional<Table>& table, const TKeys& keys) {
  if (table && table->begin() != table->end()) return;
  table.emplace();
  for (const TString& key : keys) {
    if constexpr (std::is_same_v<Table, TMap>)
      table->emplace(key, 1);
    else
      table->Add(key, 1);
  }
}

/// Both tables, filled with the keys of a benchmark's arguments.
struct TTables {
  explicit TTables(const benchmark::State& state)
      : Count(static_cast<int>(state.range(0))),
        Keys(MakeKeys(Count, state.range(1) != 0)),
        Absent(MakeKeys(Count, state.range(1) != 0, "node")),
        Shuffled(Keys) {
    std::shuffle(Shuffled.begin(), Shuffled.end(), std::mt19937(20));
    Refill();
  }
  void Refill() {
    Fill(Ours, Keys);
    Fill(Floor, Keys);
  }

  int Count;
  TKeys Keys, Absent, Shuffled;
  std::optional<TTable> Ours;
  std::optional<TMap> Floor;
};

void Add(benchmark::State& state) {
  TTables tables(state);
  const auto tidy = [&] {
    tables.Ours.reset();
    tables.Floor.reset();
  };
  tidy();
  Compare(
      state, tables.Count, [&] { Fill(tables.Ours, tables.Keys); },
      [&] { Fill(tables.Floor, tables.Keys); }, tidy);
}

template <bool IsHit>
void Find(benchmark::State& state) {
  TTables tables(state);
  const TKeys& keys = IsHit ? tables.Shuffled : tables.Absent;
  std::int64_t found = 0;
  const auto ours = [&] {
    int value = 0;
    for (const TString& key : keys) found += tables.Ours->TryGetValue(key, value);
  };
  const auto floor = [&] {
    for (const TString& key : keys) found -= tables.Floor->count(key) != 0;
  };
  Compare(state, tables.Count, ours, floor);
  Require(found == 0, "find");
}

void Remove(benchmark::State& state) {
  TTables tables(state);
  const auto ours = [&] {
    for (const TString& key : tables.Shuffled) tables.Ours->Remove(key);
  };
  const auto floor = [&] {
    for (const TString& key : tables.Shuffled) tables.Floor->erase(key);
  };
  Compare(state, tables.Count, ours, floor, [&] {
    Require(tables.Ours->IsEmpty() != tables.Floor->empty(), "remove");
    tables.Refill();
  });
}

void Walk(benchmark::State& state) {
  TTables tables(state);
  std::int64_t sum = 0;
  const auto ours = [&] {
    for (int i = 0; i < tables.Count; ++i) sum += tables.Ours->GetItemByIndex(i);
  };
  const auto floor = [&] {
    for (const auto& entry : *tables.Floor) sum -= entry.second;
  };
  Compare(state, tables.Count, ours, floor);
  Require(sum == 0, "walk");
}

/// Keys that collide beside as many ordinary ones, both added to our table.
void Hostile(benchmark::State& state) {
  constexpr int count = 20'000;
  const TKeys hostile = HostileKeys(count), ordinary = MakeKeys(count, false);
  std::optional<TTable> table;
  Compare(
      state, count, [&] { Fill(table, hostile); }, [&] { Fill(table, ordinary); },
      [&] { table.reset(); });
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"keys", "long"})->UseManualTime()->Unit(benchmark::kMillisecond);
  benchmark->ArgsProduct({{1'000, 30'000, 1'000'000}, {0, 1}});
}
BENCHMARK(Add)->Apply(Sizes);
BENCHMARK(Find<true>)->Name("Find/hit")->Apply(Sizes);
BENCHMARK(Find<false>)->Name("Find/miss")->Apply(Sizes);
BENCHMARK(Remove)->Apply(Sizes);
BENCHMARK(Walk)->Apply(Sizes);
BENCHMARK(Hostile)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace fzy::bench
