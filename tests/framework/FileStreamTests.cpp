#include <chrono>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "fuzzylogic/framework/FileStream.h"
#include "fuzzylogic/framework/Strings.h"
#include "tests/support/Forms.h"

namespace fzy {
namespace {

/// What cannot be stored.
struct TUnstorable final : TPersistent {
  TString ClassName() const override { return "no name"; }
};

/// A folder of its own, which goes with the test.
class TFileTest : public testing::Test {
 public:
  TFileTest() { std::filesystem::create_directory(Folder); }
  ~TFileTest() override { std::filesystem::remove_all(Folder); }
  std::string Read(const std::filesystem::path& path) const {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::ptrdiff_t Files() const {
    return std::distance(std::filesystem::directory_iterator(Folder), {});
  }

  const std::filesystem::path Folder =
      std::filesystem::temp_directory_path() /
      ("stored_form_" + std::to_string(reinterpret_cast<std::uintptr_t>(this)) + "_" +
       std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
  const std::filesystem::path File = Folder / "gear.form";
};

TEST_F(TFileTest, IsReplacedAsAWholeOrNotAtAll) {
  TStrings lines, other;
  lines.Add("old");
  StoreForm(File, {&lines});
  const std::string old = Read(File);
  LoadForm(File, {&other});
  EXPECT_EQ(other.GetText(), "old\n");

  for (int i = 0; i < 100'000; ++i) lines.Add("so much that a part is written before the end");
  std::filesystem::permissions(File, std::filesystem::perms::owner_all);
  TUnstorable unstorable;
  EXPECT_THROW(StoreForm(File, {&lines, &unstorable}), EConvertError);
  {
    TFileReplacer file(File);
    file.Write("half");
  }
  EXPECT_EQ(Read(File), old);
  EXPECT_EQ(Files(), 1) << "nothing is left behind";

  std::filesystem::create_symlink(File, Folder / "link");
  StoreForm(Folder / "link", {&lines});
  EXPECT_EQ(Read(File), test::Stored({&lines}));
  EXPECT_TRUE(std::filesystem::is_symlink(Folder / "link"));
  EXPECT_EQ(std::filesystem::status(File).permissions(), std::filesystem::perms::owner_all);
}

TEST_F(TFileTest, TellsOfWhatCannotBeReadOrWritten) {
  TStrings lines;
  EXPECT_THROW(StoreForm(Folder, {&lines}), EStreamError);
  EXPECT_THROW(StoreForm(Folder / "none" / "x", {&lines}), EStreamError);
  EXPECT_THROW(LoadForm(Folder, {&lines}), EStreamError);
  EXPECT_THROW(LoadForm(Folder / "none", {&lines}), EStreamError);
  EXPECT_THROW(TMemoryStream().TStream::Write("x"), EStreamError);
  EXPECT_EQ(Files(), 0);
}

}  // namespace
}  // namespace fzy
