#include <map>
#include <sstream>

#include <gtest/gtest.h>

#include "fuzzylogic/interfaces/KelStringHashTable.h"
#include "tests/support/Random.h"
#include "tests/support/Refusal.h"

namespace fzy {
namespace {

using test::MessageOf;
using TTable = TKelStringHashTable<IInterface>;
using TNumbers = TKelHashTable<int, int>;
using TAction = std::function<void()>;
using THash = std::function<int(int)>;

/// Hashes poorly until there is a seed, and counts how often keys had to be compared.
struct TWeakComparer : TKeyComparer<int> {
  explicit TWeakComparer(THash hash) : Hash(std::move(hash)) {}
  bool Equals(const int& a, const int& b) const override { return ++Compared, a == b; }
  std::int32_t GetHashCode(const int& key, const THashSeed& seed) const override {
    Seeded = seed != THashSeed{};
    return Seeded ? TKeyComparer<int>::GetHashCode(key, seed) : Hash(key);
  }
  THash Hash;
  mutable int Compared = 0, Seeded = 0;
};

/// The keys in the table's order, which is the same by every way to them.
template <class Table>
std::string Keys(const Table& table) {
  std::ostringstream keys;
  const auto entries = table.ToArray();
  auto at = table.GetKeys().begin();
  int i = 0;
  for (const auto& [key, value] : entries) {
    keys << key << ' ';
    EXPECT_TRUE(*at == key && table.GetKeyByIndex(i) == key && table.Get(key) == value);
    ++i, ++at;
  }
  EXPECT_EQ(table.GetCount(), i);
  while (--i >= 0) EXPECT_TRUE(table.GetItemByIndex(i) == entries.at(static_cast<size_t>(i)).Value);
  return keys.str();
}

// clang-format off
TEST(Table, KeepsAndTellsWhatAPlainMapDoes) {
  test::TRandom random;
  SCOPED_TRACE(random.Trace());
  TNumbers table(std::make_shared<TWeakComparer>([](int i) { return i % 3 ? i : -(i % 11); }));
  std::map<int, int> plain;
  std::string told, expected, refusal;
  int capacity = 0, blocks = 0;
  const auto text = [](char sign, int item) { return sign + std::to_string(item) + " "; };
  const auto log = [&](TObject*, int i, auto action) { told += text("+-x"[int(action)], i); };
  table.SetOnKeyNotify(log), table.SetOnValueNotify(log);
  table.SetOnChange([&](TObject*) { told += "! "; });
  for (int step = 100; step < 20'000; ++step) {  // a value; keys are below
    const int count = table.GetCount(), key = random.Below(50), huge = (1 << 28) + 1;
    const int n = random.OneIn(9) ? huge << random.Below(3) : random.Below(count + 9) - 3;
    const bool found = plain.count(key) != 0;
    int old = found ? plain[key] : 0, was = old;
    const auto refuse = [&](const char* message) { refusal = message; };
    const auto reserve = [&](int m) { for (capacity = m ? 4 : 0; capacity < m;) capacity *= 2; };
    const auto grow = [&] { if (count >= capacity / 4 * 3) reserve(std::max(4, 2 * capacity)); };
    const auto enter = [&](const char* change) {
      expected = (found ? text('-', old) : text('+', key)) + text('+', plain[key] = step) + change;
    };
    const auto leave = [&](char sign, const char* change) {
      expected = (plain.erase(key) ? text(sign, key) + text(sign, old) : "") + change;
    };
    const TAction operations[] = {  // on the plain map, then on the table
      [&] { grow(), found ? refuse("The key is there already") : enter("! "), table.Add(key, step); },
      [&] { found ? void() : grow(), enter("! "), was = table.Put(key, step); },
      [&] { found ? enter("") : refuse("There is no such item"), table.SetItem(key, step); },
      [&] { count ? leave('-', "! ") : refuse("The table is empty"), was = table.Remove(key); },
      [&] { leave('x', found ? "! " : ""), was = table.ExtractPair(key).Value; },
      [&] {
        n < count || n >= huge ? refuse("The argument is beyond what is allowed") : reserve(n), table.SetCapacity(n);
      },
      [&] { reserve(count + 1), table.TrimExcess(); },
      [&] { plain.clear(), reserve(0), expected = "! ", table.Clear(); },
      [&] { ++blocks, table.BeginUpdate(); },
      [&] { expected = blocks && !--blocks ? "! " : "", table.EndUpdate(); },
      [&] { refuse("There is no item with index -2"), table.GetPairByIndex(-2); }};
    told = expected = refusal = "";
    const int what = random.OneIn(500) ? 7 : "0000011122333445556899:"[random.Below(23)] - '0';
    const std::string message = MessageOf(operations[what]);
    EXPECT_TRUE(message == refusal && was == old && table.GetCapacity() == capacity) << message;
    EXPECT_EQ(told, blocks ? "" : expected);
    for (const auto& [there, value] : plain) EXPECT_EQ(table.Get(there), value);
    EXPECT_EQ(table.ToArray().size(), plain.size());
    ASSERT_TRUE(Keys(table).empty() == plain.empty() && !HasFailure()) << step << ", " << what;
  }
}

TEST(Table, OrdersEntriesByTheirSlots) {
  TNumbers table(std::make_shared<TWeakComparer>([](int key) { return key - 1; }));
  std::string log;
  for (int room : {4, 4, 8}) {
    for (int key : {3, 7, 8}) table.Put(key, key);  // 7 and 8 are displaced beyond the end at first
    table.SetCapacity(room), log += Keys(table), table.Remove(7 - room), log += Keys(table) + "|";
  }
  EXPECT_EQ(log, "8 3 7 8 7 |8 7 3 8 7 |8 3 7 8 3 7 |");
}

TEST(Table, WithstandsKeysThatCollide) {
  const THash run = [](int key) { return key % 10'000; };
  const std::tuple<THash, int, std::function<void(TNumbers&)>, int> cases[] = {
      {[](int) { return 7; }, 6000, [](auto&) {}, 1}, {run, 6000, [](auto&) {}, 0},
      {run, 6000, [](auto& t) { t.Add(10'000, 0); }, 1},
      {run, 6000, [](auto& t) { t.ContainsKey(10'000), t.Remove(1); }, 1},
      {run, 6000, [](auto& t) { t.Remove(0), t.Remove(1); }, 1},
      {run, 8192, [](auto& t) { t.ContainsKey(10'000), t.Remove(1); }, 0}};  // full
  for (const auto& [hash, count, step, seeded] : cases) {
    const auto comparer = std::make_shared<TWeakComparer>(hash);
    TNumbers table(comparer);
    for (int i = 0; i < count; ++i) table.Add(i, i);
    table.SetCapacity(count), step(table), Keys(table);
    EXPECT_TRUE(comparer->Seeded == seeded && comparer->Compared < 1'000'000);
  }
  TTable tables[2];
  for (int i = 0; i < 512'000; ++i) {
    const TString key(std::to_string(i));
    for (TTable& t : tables) if (i < 900 || (HashText(key, {}) & 4095) < 16) t.Add(key, nullptr);
    if (i == 900) { EXPECT_EQ(Keys(tables[0]), Keys(tables[1])); }
  }
  EXPECT_NE(Keys(tables[0]), Keys(tables[1]));
  EXPECT_EQ(HashText(u"warm1", {}), 0x3F407A71966DD1CCU);
  int alike = 0;  // of keys that differ in the highest bits alone
  for (std::int64_t i = 0; i < 1024; ++i)
    alike += (TKeyComparer<std::int64_t>().GetHashCode(i << 44, {}) & 1023) == 0;
  EXPECT_LT(alike, 10);
}

/// A counted value that may act at its end, or an object with a published text.
struct TThing final : TPersistent, TInterfaced<IInterface> {
  explicit TThing(TAction end = [] {}) : End(std::move(end)) {}
  ~TThing() override { End(); }
  TString ClassName() const override { return "TThing"; }
  void DefineProperties(TFiler& filer) override {
    filer.DefineField("Text", Text);
  }
  TAction End;
  TString Text;
};

TEST(Table, ExchangesKeysWithTexts) {
  TTable table;
  TStrings list, copy;
  TThing page;
  std::string all, log;
  table.SetOnChange([&](TObject*) { log += std::to_string(table.GetCount()); });
  table.Add("old", nullptr), list.SetText("Low\nlow\nTemp\nlow");
  const auto keys = table.Indices();
  log += MessageOf([&] { table.Assign(&list); }) + MessageOf([&] { keys->GetCurrent(); });
  while (keys->HasMore()) keys->Next(), all += keys->GetCurrent().Utf8() + " ";
  log += MessageOf([&] { keys->Next(); }) + MessageOf([&] { page.Assign(&page); });
  EXPECT_EQ(all, Keys(table));
  copy.Assign(&table), table.AssignTo(&page);
  EXPECT_TRUE(copy.GetText() == page.Text && copy[1] == table.GetKeyByIndex(1));
  for (const char* append : {"copy", "copy", "copy", "", ""}) {
    const TString name = table.GetUniqueName("Temp", append);
    log += "|" + name.Utf8() + "|", table.Add(name, nullptr);
  }
  EXPECT_EQ(log, "13The key is there alreadyThere is no item with index 0There is no item with index 3"
                 "There is no assignment from TThing to TThing|Temp copy|4|Temp  copy (1)|5|Temp   copy (2)|6"
                 "|Temp |7|Temp  |8");
}

TEST(Table, StaysWholeWhateverHandlersAndValuesDo) {
  using TStep = std::function<void(TTable&)>;
  TTable source;
  source.Add("x", nullptr), source.Add("y", nullptr);
  const TStep steps[] = {
      [](TTable& t) { t.Add("c", nullptr); }, [](TTable& t) { t.Put("a", nullptr); },
      [](TTable& t) { t.SetItem("a", nullptr); }, [](TTable& t) { t.Remove("a"); },
      [](TTable& t) { t.ExtractPair("b"); }, [](TTable& t) { t.Clear(); },
      [&](TTable& t) { t.Assign(&source); }, [](TTable& t) { TStrings s; t.Assign(&s); }};
  const TStep handlers[] = {
      [](TTable&) { throw EConvertError("told"); }, [](TTable& t) { t.Clear(); },
      [](TTable& t) { for (const char* key : {"1", "2", "3", "4"}) t.Put(key, nullptr); },
      [](TTable& t) { t.Put("a", nullptr), t.Remove("b"); }, [](TTable& t) { t.Free(); }};
  for (int run = 0; run < 8 * 5 * 3; ++run) {
    auto* table = new TTable;
    TPin pin(table);
    int released = 0, told = 0;
    const auto back = [&, table] { ++released, table->SetCapacity(64), table->TrimExcess(); };
    for (const char* key : {"a", "b"}) table->Add(key, new TThing(back));
    const auto tell = [&](auto&&...) { if (told++ == run % 3) handlers[run / 3 % 5](*table); };
    table->SetOnKeyNotify(tell), table->SetOnValueNotify(tell), table->SetOnChange(tell);
    const std::string message = MessageOf([&] { steps[run / 15](*table); });
    EXPECT_EQ(message, told > run % 3 && run / 3 % 5 == 0 ? "told" : "");
    told = 9, table->Put("last", new TThing(back)), Keys(*table);
    EXPECT_EQ(told, 12);
    table->Free(), pin = TPin();
    EXPECT_EQ(released, 3);
  }
  TKelDictionary<int, Ref<IInterface>> plain;
  for (int i : {1, 2, 3}) plain.Add(i, new TThing([&] { plain.Remove(0), plain.Add(0, nullptr); }));
}

}  // namespace
}  // namespace fzy
