#include <gtest/gtest.h>

#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/StringList.h"

namespace fzy {
namespace {

TEST(StringList, SplitsTextAtEveryKindOfLineEnd) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},           {"a", "a\n"},
      {"a\n", "a\n"},     {"a\rb\r\nc\nd", "a\nb\nc\nd\n"},
      {"\n\n", "\n\n"},   {"a\n\r\nb", "a\n\nb\n"},
      {"\r\r\n", "\n\n"}, {" a \n\tb", " a \n\tb\n"}};
  for (const auto& [text, lines] : cases) {
    TStringList list;
    list.Add("old");
    list.SetText(text);
    EXPECT_EQ(list.GetText(), lines);
    list.SetText(list.GetText());
    EXPECT_EQ(list.GetText(), lines);
  }
}

TEST(StringList, FindsNamesAndValuesByItsCaseRule) {
  TStringList list;
  list.SetText("plain\nName=Cold\n=none\nname=a=b\nName=again");
  EXPECT_EQ(list.IndexOfName("name"), 3);
  EXPECT_EQ(list.GetValue("name"), "a=b");
  EXPECT_EQ(list.GetValue(""), "none");
  EXPECT_EQ(list.IndexOfName("plain"), -1);
  EXPECT_EQ(list.IndexOf("name=cold"), -1);
  list.SetCaseSensitive(false);
  EXPECT_EQ(list.IndexOfName("NAME"), 1) << "the first";
  EXPECT_EQ(list.IndexOf("name=cold"), 1);
  list.SetValue("NAME", "Warm");
  list.SetValue("new", "");
  EXPECT_EQ(list.GetText(), "plain\nNAME=Warm\n=none\nname=a=b\nName=again\nnew=\n");
  EXPECT_EQ(list.GetValue("missing"), "");
}

TEST(StringList, KeepsObjectsWithTheirLines) {
  TStringList list;
  TStringList copy;
  list.AddObject("a=1", &copy);
  list.Add("b");
  list.AddObject("c", &list);
  list.SetValue("a", "2");
  list.Delete(1);
  copy.Assign(&list);
  copy.Assign(&copy);
  EXPECT_EQ(copy.GetText(), "a=2\nc\n");
  EXPECT_EQ(copy.GetObject(0), &copy);
  EXPECT_EQ(copy.GetObject(1), &list);
  EXPECT_THROW(copy.GetString(-1), EListError);
  EXPECT_THROW(copy.Delete(2), EListError);
}

}  // namespace
}  // namespace fzy
