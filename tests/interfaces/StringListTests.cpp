#include <algorithm>
#include <limits>
#include <tuple>

#include <gtest/gtest.h>

#include "fuzzylogic/interfaces/StringList.h"
#include "tests/support/Random.h"
#include "tests/support/Refusal.h"

namespace fzy {
namespace {

using test::MessageOf;
using TList = TStringList<IInterface>;
using TStep = std::function<void(TList&)>;

/// An object or a counted interface; those alive are counted, and it may act at its end.
struct TThing : TObject, TInterfaced<IInterface> {
  explicit TThing(std::function<void()> end = [] {}) : End(std::move(end)) { ++Live; }
  ~TThing() override { --Live, End(); }
  TString ClassName() const override { return "TThing"; }
  std::function<void()> End;
  static inline int Live = 0;
};

std::string Texts(const TStrings& list) {
  std::string texts = list.GetText().Utf8();
  std::replace(texts.begin(), texts.end(), '\n', ' ');
  return texts;
}

// clang-format off
TEST(StringList, ChangesAndTells) {
  const struct {
    const char* Text;
    TStep Step;
    std::string Expected, Message = {};  // the texts, then the texts when each event was told
  } cases[] = {
      {"b\nc", [](TList& l) { l.Insert(2, "a"); }, "b c a |b c <b c a >"},
      {"b\nc", [](TList& l) { l.Insert(3, "a"); }, "b c |", "There is no item with index 3"},
      {"b", [](TList& l) { l.PutData(1, nullptr); }, "b |", "There is no item with index 1"},
      {"", [](TList& l) { l.Clear(), l.Sort(), l.SetSorted(true); }, "|"},
      {"B\na", [](TList& l) { l.SetSorted(true), l.Add("b"), l.Sort(); }, "a B |B a <a B >"},
      {"B\na", [](TList& l) { l.SetSorted(true), l.SetCaseSensitive(true); }, "B a |B a <a B >a B <B a >"},
      {"b\na", [](TList& l) {
         l.SetOnChanging([&](TObject*) { l.SetOnChanging(nullptr), l.SetSorted(true); }), l.Add("0");
       }, "0 a b |a b >0 a b >"},
      {"a\nb", [](TList& l) { l.AddStrings(l), l.Delete(0); }, "b a b |a b <a b a b >a b a b <b a b >"},
      {"a\nbb", [](TList& l) { l.Sort([](auto& s, int i, int) { return s[i] == "bb" ? -1 : 1; }); }, "bb a |a bb <bb a >"},
      {"a\nb", [](TList& l) { l.Sort([&](auto&, int, int) { return l.Delete(0), 0; }); }, "b |a b <a b <b >b >"},
  };
  // clang-format on
  for (const auto& [text, step, expected, message] : cases) {
    TList list;
    std::string events;
    list.SetText(text);
    list.SetOnChanging([&](TObject*) { events += Texts(list) + '<'; });
    list.SetOnChange([&](TObject*) { events += Texts(list) + '>'; });
    EXPECT_EQ(MessageOf([&] { step(list); }), message);
    EXPECT_EQ(Texts(list) + "|" + events, expected);
  }
}

TEST(StringList, KeepsEntriesTogetherAsAPlainListDoes) {
  using TEntry = std::tuple<std::string, TObject*, Ref<IInterface>>;
  test::TRandom random;
  SCOPED_TRACE(random.Trace());
  const TEntry blank{"i", nullptr, nullptr};
  TThing things[5];
  TList list, twin;
  std::vector<TEntry> plain;
  bool sorted = false, exact = false;
  const auto less = [&](const TEntry& left, const TEntry& right) {
    std::string a = std::get<0>(left), b = std::get<0>(right);
    for (std::string* text : {&a, &b})
      if (!exact) std::transform(text->begin(), text->end(), text->begin(), ::tolower);
    return a < b;
  };
  for (int step = 0; step < 4000; ++step) {
    const char* const texts[] = {"a", "A", "ab", "aB", "B", "b", "", "c=1", "C", "Zz"};
    const TString text = texts[random.Below(10)];
    TObject* const object = &things[random.Below(5)];
    const Ref<IInterface> data = new TThing;
    const TEntry entry{text.Utf8(), object, data};
    auto place = plain.end();
    if (sorted) place = std::lower_bound(plain.begin(), place, entry, less);
    const bool found = std::any_of(plain.begin(), plain.end(), [&](const TEntry& other) {
      return !less(other, entry) && !less(entry, other);
    });
    EXPECT_EQ(list.IndexOf(text) >= 0, found);
    const int count = list.GetCount(), i = random.Below(count + 1), j = random.Below(count + 1);
    const int what = i == count || j == count ? 0 : count > 30 ? 6 : random.Below(11);
    const auto at = plain.begin() + i;
    const auto sort = [&] { std::stable_sort(plain.begin(), plain.end(), less); };
    // The same for the plain list and for the list.
    const std::pair<std::function<void()>, std::function<void()>> operations[] = {
        {[&] { plain.insert(place, entry); }, [&] { list.AddObject(text, object, data); }},
        {[&] { std::swap(*at, plain.begin()[j]); }, [&] { list.Exchange(i, j); }},
        {[&] { std::get<0>(*at) = text.Utf8(); }, [&] { list.SetString(i, text); }},
        {[&] { plain.insert(at, blank); }, [&] { list.Insert(i, "i"); }},
        {[&] { std::get<1>(*at) = object; }, [&] { list.SetObject(i, object); }},
        {[&] { std::get<2>(*at) = data; }, [&] { list.PutData(i, data); }},
        {[&] { plain.erase(at); }, [&] { list.Delete(i); }},
        {sort, [&] { list.Sort(); }},
        {[] {}, [&] { twin.Assign(&list), list.SetSorted(false), list.Assign(&twin); }},
        {[&] { exact = !exact, sorted ? sort() : void(); }, [&] { list.SetCaseSensitive(exact); }},
        {[&] { (sorted = !sorted) ? sort() : void(); },
         [&] { list.SetDuplicates(static_cast<TDuplicates>(random.Below(3))); }}};
    const TDuplicates mode = list.GetDuplicates();
    const bool twice = what == 0 && sorted && found && mode != dupAccept;
    std::string refusal =
        sorted && what > 0 && what < 4 ? "A sorted list keeps an order of its own" : "";
    if (twice && mode == dupError) refusal = "The list has this text already";
    if (refusal.empty() && !twice) operations[what].first();
    EXPECT_EQ(MessageOf(operations[what].second), refusal);
    list.SetSorted(sorted);
    std::vector<TEntry> now;
    for (int k = 0; k < list.GetCount(); ++k)
      now.emplace_back(list[k].Utf8(), list.GetObject(k), list.GetData(k));
    ASSERT_TRUE(now == plain) << "step " << step << ", operation " << what;
  }
}

TEST(StringList, StaysWholeWhateverItsHandlersDo) {
  // clang-format off
  const TStep steps[] = {
      [](TList& l) { l.Add("x"), l.Insert(2, "x"); }, [](TList& l) { l.SetSorted(true); },
      [](TList& l) { l.Exchange(0, 2); }, [](TList& l) { l.PutData(2, new TThing); },
      [](TList& l) { l.Delete(2); }, [](TList& l) { l.SetText("x\ny"); }};
  const TStep handlers[] = {
      [](TList&) { throw EConvertError("told"); }, [](TList& l) { l.Clear(); },
      [](TList& l) { l.SetSorted(true); }, [](TList& l) { l.Free(); }};
  // clang-format on
  for (int run = 0; run < 6 * 4 * 2; ++run) {
    auto* list = new TList(true);
    const TPin pin(list);
    for (const char* text : {"c", "b", "a"}) list->AddObject(text, new TThing, new TThing);
    const auto once = [&](TObject*) {
      list->SetOnChanging(nullptr), list->SetOnChange(nullptr);
      handlers[run / 2 % 4](*list);
    };
    run % 2 ? list->SetOnChanging(once) : list->SetOnChange(once);
    MessageOf([&] { steps[run / 8](*list); });
    EXPECT_FALSE(list->IsUpdating() || list->GetOnChange());
    for (int i = 1; list->GetSorted() && i < list->GetCount(); ++i)
      EXPECT_LT((*list)[i - 1], (*list)[i]);
    list->Free();
  }
  EXPECT_EQ(TThing::Live, 0);
}

TEST(StringList, LetsGoOfWhatItHoldsOnceItIsWhole) {
  std::string capacities;
  {
    TList list(true), other(true);
    const auto back = [&] { list.Delete(list.Add("back")); };
    for (int i = 0; i < 5; ++i) {
      list.AddObject("old", new TThing(back), new TThing(back));
      capacities += std::to_string(list.GetCapacity());
    }
    for (const int capacity : {4, -1, (1 << 28) + 1, std::numeric_limits<int>::max()})
      EXPECT_EQ(MessageOf([&] { list.SetCapacity(capacity); }),
                "The list cannot have capacity " + std::to_string(capacity));
    other.Assign(&list);  // shares the interfaces, but not what only one can free
    EXPECT_TRUE(!other.GetObject(1) && other.GetData(1) == list.GetData(1));
    capacities += std::to_string(other.GetCapacity());
    other.Clear();
    list.PutData(3, nullptr);
    list.Delete(0);
    EXPECT_EQ(Texts(list), "old old old old ");
  }
  EXPECT_EQ(TThing::Live, 0);
  EXPECT_EQ(capacities, "124485");
}

}  // namespace
}  // namespace fzy
