#include "session/store_folder.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "session/store_system.h"
#include "support/session_fixture.h"

namespace velumar {
namespace {

namespace fs = std::filesystem;

// Every name below a folder with the bytes of the file or the target of the link.
std::map<std::string, std::string> Everything(const fs::path& folder) {
  std::map<std::string, std::string> all;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    std::string& what = all[entry.path().string()];
    if (entry.is_symlink()) what = "-> " + fs::read_symlink(entry.path()).string();
    if (entry.is_regular_file()) what += ReadFile(entry.path());
  }
  return all;
}

struct StoreFolderTest : SessionFixture {
  StoreFolderTest() {
    Store("ABC", DailyBars(40));
    Store("XYZ", DailyBars(50));
  }

  static void Write(const fs::path& file, const std::string& text) {
    fs::create_directories(file.parent_path());
    WriteFile(file, text);
  }

  // What a run of an earlier version leaves: no mark, but the writer's lock.
  void MakeEarlierStore() {
    CopyIndexes();
    Choose("ABC", "D", MadeDate(20));
    ASSERT_TRUE(working_store.Prepare());
    Write(at / "MSSmart" / "chart.mwc", "x");
  }

  std::string Refusal(const std::string& folder) {
    try {
      const StoreFolder claimed(folder, data);
      return "";
    } catch (const StoreError& error) {
      return error.what();
    }
  }

  fs::path at = store;  // the store below the data directory
  fs::path others = scratch.Path() / "others";
};

TEST_F(StoreFolderTest, RefusesWhatIsNotAStoreAndTouchesNothing) {
  Write(others / "F1.DAT", "bars of another program");
  const std::string foreign = "no run has put there";
  const fs::path mark = StoreFolder::kMark;
  const std::tuple<const char*, std::string, std::function<void()>, std::string> cases[] = {
      {"a link to a folder", store, [&] { fs::create_directory_symlink(others, at); }, "a link"},
      {"typed with a closing separator", store + "\\",
       [&] { fs::create_directory_symlink(others, at); }, "a link"},
      {"a link to nothing", store, [&] { fs::create_directory_symlink("gone", at); }, "a link"},
      {"a file", store, [&] { Write(at, "mine"); }, "a file"},
      {"a note", store, [&] { Write(at / "note.txt", "mine"); },
       "1 file (note.txt) that " + foreign},
      {"a copy of the directory", store,
       [&] { fs::copy(data, scratch.Sub("copy")), fs::rename(scratch.Sub("copy"), at); },
       "4 files (EMASTER, F1.DAT, F2.DAT, ...)"},
      {"an earlier store with a folder", store,
       [&] { MakeEarlierStore(), fs::create_directory(at / "mine"); }, foreign},
      {"an earlier store with a link", store,
       [&] { MakeEarlierStore(), fs::create_symlink(others / "F1.DAT", at / "F2.DAT"); }, foreign},
      {"one series with bars of its own", store,
       [&] {
         StoreSecurity(store, {"ABC", "ABC name", -1}, {MadeBar(3, 19991231)}, cache);
       },
       foreign},
      {"a mark that is a link", store,
       [&] { fs::create_directory(at), fs::create_symlink(others / "F1.DAT", at / mark); }, "link"},
      {"the data", data, [&] { Write(data / mark, ""); }, "is the market"},
      {"the data by another way", data + "/../data/.", [&] { Write(data / mark, ""); },
       "is the market"},
      {"above the data", scratch.Text(), [&] { Write(scratch.Path() / mark, ""); },
       "contains the market"},
      {"deep below the data and missing", store + "/deeper", [] {}, "deep inside"},
  };
  for (const auto& [what, folder, make, word] : cases) {
    SCOPED_TRACE(what);
    make();
    const auto before = Everything(scratch.Path());
    EXPECT_THAT(Refusal(folder), HasSubstr(word));
    EXPECT_EQ(Everything(scratch.Path()), before);
    fs::remove_all(at);
    fs::remove(data / mark);
    fs::remove(scratch.Path() / mark);
  }
  for (char name = 'a'; name < 'i'; ++name) {  // listed before the chart files or after them
    MakeEarlierStore();
    fs::create_directory(at / std::string(1, name));
    EXPECT_THAT(Refusal(store), HasSubstr(foreign)) << name;
    fs::remove_all(at);
  }
}

TEST_F(StoreFolderTest, TakesWhatIsItsOwn) {
  const std::pair<const char*, std::function<void()>> cases[] = {
      {"missing", [] {}},
      {"empty", [&] { fs::create_directory(at); }},
      {"marked", [&] { Write(at / StoreFolder::kMark, ""), Write(at / "anything", "x"); }},
      {"of an earlier version, with copies of ours",
       [&] {
         MakeEarlierStore();
         Write(fs::path(data) / "MASTER.BAK", "x");
         Write(at / "MASTER.BAK", "x");
       }},
      {"before its first bar", [&] { CopyIndexes(); }},
  };
  for (const auto& [what, make] : cases) {
    make();
    EXPECT_EQ(Refusal(store), "") << what;
    EXPECT_TRUE(fs::is_regular_file(at / StoreFolder::kMark)) << what;
    fs::remove_all(at);
  }
  EXPECT_EQ(Refusal(scratch.Sub("two/levels")), "");
  fs::remove_all(data);
  EXPECT_THAT(Refusal(store), HasSubstr("No such file"));
  EXPECT_FALSE(fs::exists(data));
}

TEST_F(StoreFolderTest, FollowsNoLinkInsideAndCopiesNoHugeFile) {
  Write(others / "F9.DAT", "bars");
  Write(others / "chart.mwc", "mine");
  Write(fs::path(data) / "mssmart" / "chart.mwc", "new");
  Write(fs::path(data) / "velumar-imports.json", "{}");
  Write(fs::path(data) / "mssmart" / "other.mwc", "new");
  Write(fs::path(data) / "mssmart" / "huge.mwc", "");
  fs::resize_file(fs::path(data) / "mssmart" / "huge.mwc", (64 << 20) + 1);
  Write(at / StoreFolder::kMark, "");
  fs::create_symlink(others / "F9.DAT", at / "F9.DAT");
  fs::create_symlink(others / "F9.DAT", at / "MASTER");
  fs::create_hard_link(others / "chart.mwc", at / "EMASTER");
  fs::create_directory_symlink(others, at / "folder");
  ASSERT_EQ(mkfifo((at / "pipe").c_str(), 0600), 0);
  const auto before = Everything(others);
  const auto fill = [&] {
    const StoreFolder claimed(store, data);
    claimed.Clear();
    claimed.CopyIndexes();
    claimed.CopyChartFiles();
  };
  fs::create_directory_symlink(others, at / "MSSmart");
  fill();
  EXPECT_EQ(Everything(others), before);
  EXPECT_FALSE(fs::is_symlink(at / "F9.DAT"));
  EXPECT_FALSE(fs::exists(at / "pipe"));
  EXPECT_TRUE(fs::is_symlink(at / "folder"));
  EXPECT_FALSE(fs::is_symlink(at / "MASTER"));
  fs::remove(at / "MSSmart");
  fs::create_directory(at / "MSSmart");
  fs::create_symlink(others / "chart.mwc", at / "MSSmart" / "chart.mwc");
  fs::create_hard_link(others / "chart.mwc", at / "MSSmart" / "other.mwc");
  fill();
  EXPECT_EQ(Everything(others), before);
  EXPECT_EQ(FilesOf(store + "/MSSmart")["other.mwc"], "new");
  EXPECT_FALSE(fs::exists(at / "MSSmart" / "huge.mwc"));
  EXPECT_FALSE(fs::exists(at / "velumar-imports.json"));
  // Another folder in its place since the claim.
  const StoreFolder claimed(store, data);
  fs::rename(at, scratch.Path() / "moved");
  Write(at / "note.txt", "mine");
  EXPECT_THROW(claimed.Clear(), StoreError);
  EXPECT_TRUE(fs::exists(at / "note.txt"));
}

TEST_F(StoreFolderTest, OneProgramHoldsItUntilItDies) {
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  if (child == 0) {
    const StoreFolder claimed(store, data);
    if (write(ready[1], "x", 1) == 1) pause();
    _exit(0);
  }
  char byte = 0;
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  EXPECT_THAT(Refusal(store),
              HasSubstr("in use by session_tests (process " + std::to_string(child) + ")"));
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  Choose("ABC", "D");
  ASSERT_TRUE(working_store.Claim());
  session.DataDir = store;
  EXPECT_FALSE(working_store.Claim()) << "a store is no market data";
  EXPECT_THAT(Refusal(store), HasSubstr("in use by")) << "the old run keeps its hold";
}

}  // namespace
}  // namespace velumar
