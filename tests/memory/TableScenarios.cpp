#include <array>
#include <numeric>
#include <set>

#include "fuzzylogic/interfaces/KelStringHashTable.h"
#include "fuzzylogic/interfaces/StringList.h"
#include "tests/memory/Scenario.h"
#include "tests/support/Refusal.h"

namespace fzy::test {
namespace {

const TString Long = "a text that has memory of its own";

TString Line(int number) { return "line=of the list " + TString(std::to_string(number)); }

/// Handlers that are too large to be kept without memory.
struct TLoad {
  std::array<char, 64> Bytes{};
};

using TList = TStringList<IInterface>;

template <class Strings>
struct TLines {
  TLines() {
    for (const int i : {3, 1, 2}) List.Add(Line(i));
    for (const int i : {5, 4, 6, 7, 8}) Other.AddObject(Line(i), &Other);
  }
  static std::string Show(const Strings& list) {
    std::string text = list.GetText().Utf8();
    for (int i = 0; i < list.GetCount(); ++i) text += list.GetObject(i) ? 'o' : '-';
    if constexpr (std::is_same_v<Strings, TList>) text += list.GetSorted() ? "sorted" : "";
    return text + (list.GetCaseSensitive() ? "A" : "a") + (list.IsUpdating() ? "updating" : "");
  }
  std::string Show() const { return Show(List) + '|' + Show(Other) + '|' + Result; }

  Strings List, Other;
  std::string Result;
};

template <class Strings>
void AddLines(TScenarios& all, const std::string& group) {
  // clang-format off
  AddCases<TLines<Strings>>(all, group, {
      {"add", [](auto& f) { f.List.Add(Long); }},
      {"add_strings", [](auto& f) { f.List.AddStrings(f.Other); }},
      {"add_itself", [](auto& f) { f.List.AddStrings(f.List); }},
      {"insert", [](auto& f) { f.List.Insert(1, Long); }},
      {"set", [](auto& f) { f.List.SetString(1, Long); }},
      {"exchange", [](auto& f) { f.List.Exchange(0, 2); }},
      {"delete", [](auto& f) { f.List.Delete(1); }},
      {"clear", [](auto& f) { f.List.Clear(); }},
      {"text", [](auto& f) { f.Result = f.List.GetText().Utf8(); }},
      {"set_text", [](auto& f) { f.List.SetText(Long + u"\r\n" + Long + u"\r" + Long + u"\n\n" + Long); }},
      {"find", [](auto& f) { f.Result = std::to_string(f.List.IndexOf(Line(2)) + f.List.IndexOfName("LINE")) + f.List.GetValue("line").Utf8(); }},
      {"set_value", [](auto& f) { f.List.SetValue("line", Long); }},
      {"add_value", [](auto& f) { f.List.SetValue("another", Long); }},
      {"case", [](auto& f) { f.List.SetCaseSensitive(!f.List.GetCaseSensitive()); }},
      {"assign", [](auto& f) { f.List.Assign(&f.Other); }},
      {"error", [](auto& f) { f.Result = MessageOf([&] { f.List.Insert(77, Long); }); }},
  });
  // clang-format on
}

/// The same list with handlers, sorted or not.
struct TToldLines : TLines<TList> {
  TToldLines() {
    List.SetOnChange([this, load = TLoad()](TObject*) { ++Changes; });
    List.SetOnChanging([this, load = TLoad()](TObject*) { ++Changes; });
  }
  int Changes = 0;
};

class TThing final : public TInterfaced<IInterface> {};
using TTable = TKelStringHashTable<IInterface>;
using TTexts = TKelHashTable<TString, TString>;

struct TTables {
  TTables() {
    for (int i = 0; i < 3; ++i) Table.Add(Line(i), new TThing), Texts.Add(Line(i), Line(10 + i));
    for (int i = 2; i < 6; ++i) Other.Add(Line(i), new TThing);
    Lines.SetText("one line of the list\nanother line of the list");
  }
  static std::string Show(const TTable& table) {
    std::set<std::string> entries;  // a table may have grown, and have another order then
    for (const auto& [key, value] : table.ToArray())
      entries.insert(key.Utf8() + (value ? ";" : "!"));
    return std::accumulate(entries.begin(), entries.end(), std::to_string(table.GetCount()));
  }
  std::string Show() const {
    std::string text =
        Show(Table) + '\n' + Show(Other) + '\n' + Lines.GetText().Utf8() + Result.Utf8();
    for (int i = 0; i < 3; ++i) {
      TString value;
      text += Texts.ContainsKey(Line(i), value) ? value.Utf8() + ';' : "!";
    }
    text += std::to_string(Texts.GetCount());
    return text;
  }

  TTable Table, Other;
  TTexts Texts;
  TStrings Lines;
  TString Result;
};

struct TToldTables : TTables {
  TToldTables() {
    Table.SetOnKeyNotify([load = TLoad()](TObject*, const TString&, auto) {});
    Table.SetOnValueNotify([load = TLoad()](TObject*, const Ref<IInterface>&, auto) {});
    Table.SetOnChange([load = TLoad()](TObject*) {});
    Texts.SetOnKeyNotify([load = TLoad()](TObject*, const TString&, auto) {});
    Texts.SetOnValueNotify([load = TLoad()](TObject*, const TString&, auto) {});
  }
};

template <class Tables>
void AddTables(TScenarios& all, const std::string& group) {
  // clang-format off
  AddCases<Tables>(all, group, {
      {"add", [](auto& f) { f.Table.Add(Long, new TThing); }},
      {"add_more", [](auto& f) { for (int i = 0; i < 5; ++i) f.Table.PutItem(Line(20 + i), new TThing); }, TPromise::Usable},
      {"replace", [](auto& f) { f.Table.AddOrSetValue(Line(1), new TThing); }},
      {"put", [](auto& f) { f.Texts.Put(Line(1), Long); }},
      {"put_new", [](auto& f) { f.Texts.Put(Long, Long); }},
      {"set", [](auto& f) { f.Texts.SetItem(Line(1), Long); }},
      {"remove", [](auto& f) { f.Result = f.Texts.Remove(Line(1)); }},
      {"remove_one", [](auto& f) { f.Table.Remove(Line(1)); }},
      {"extract", [](auto& f) { f.Result = f.Texts.ExtractPair(Line(1)).Value; }},
      {"clear", [](auto& f) { f.Table.Clear(); }},
      {"capacity", [](auto& f) { f.Table.SetCapacity(100); }},
      {"trim", [](auto& f) { f.Table.TrimExcess(); }, TPromise::Nothing, [](auto& f) { f.Table.SetCapacity(100); }},
      {"assign", [](auto& f) { f.Table.Assign(&f.Other); }, TPromise::Rebuilt},
      {"assign_lines", [](auto& f) { f.Table.Assign(&f.Lines); }, TPromise::Rebuilt},
      {"to_lines", [](auto& f) { f.Lines.Assign(&f.Table); }},
      {"walk", [](auto& f) {
         std::string result;
         for (const TString& key : f.Table.GetKeys()) result += key.Utf8();
         for (const TString& value : f.Texts.GetValues()) result += value.Utf8();
         const Ref<IStringIterator> keys = f.Table.Indices();
         while (keys->HasMore()) result += keys->Next().Utf8();
         f.Result = result + f.Texts.GetPairByIndex(1).Value.Utf8() + f.Table.GetKeyByIndex(2).Utf8();
       }},
      {"unique_name", [](auto& f) { f.Result = f.Table.GetUniqueName(Line(1), "copy"); }},
      {"errors", [](auto& f) { f.Result = MessageOf([&] { f.Table.Add(Line(1), nullptr); }) + MessageOf([&] { f.Table.GetItem(Long); }); }},
      {"make", [](auto& f) { const TKelEnumerable<TPair<TString, TString>>& entries = f.Texts; const TKelDictionary<TString, TString> copy(entries); f.Result = std::to_string(copy.GetCount()); }},
  });
  // clang-format on
}

}  // namespace

void AddTableScenarios(TScenarios& all) {
  AddLines<TStrings>(all, "strings");
  AddLines<TList>(all, "string_list");
  // clang-format off
  AddCases<TToldLines>(all, "told_string_list", {
      {"add", [](auto& f) { f.List.AddObject(Long, nullptr, new TThing); }},
      {"insert", [](auto& f) { f.List.Insert(1, Long); }},
      {"delete", [](auto& f) { f.List.Delete(1); }},
      {"clear", [](auto& f) { f.List.Clear(); }},
      {"data", [](auto& f) { f.List.PutData(1, new TThing); }},
      {"sort", [](auto& f) { f.List.Sort(); }},
      {"keep_sorted", [](auto& f) { f.List.SetSorted(true); }},
      {"sort_by", [](auto& f) { f.List.Sort([load = TLoad()](auto&, int a, int b) { return a - b; }); }},
      {"capacity", [](auto& f) { f.List.SetCapacity(77); }},
      {"assign", [](auto& f) { f.List.Assign(&f.Other); }},
      {"set_text", [](auto& f) { f.List.SetText(Long + u"\r\n" + Long); }},
      {"add_in_order", [](auto& f) { f.List.Add(Long); }, TPromise::Nothing, [](auto& f) { f.List.SetSorted(true); }},
      {"assign_in_order", [](auto& f) { f.List.Assign(&f.Other); }, TPromise::Nothing, [](auto& f) { f.List.SetSorted(true); }},
      {"case_in_order", [](auto& f) { f.List.SetCaseSensitive(true); }, TPromise::Nothing, [](auto& f) { f.List.SetSorted(true); }},
      {"find_in_order", [](auto& f) { f.Result = std::to_string(f.List.IndexOf(Line(2))); }, TPromise::Nothing, [](auto& f) { f.List.SetSorted(true); }},
  });
  // clang-format on
  AddTables<TTables>(all, "table");
  AddTables<TToldTables>(all, "told_table");
}

}  // namespace fzy::test
