#include <filesystem>
#include <random>

#include "cli/sandbox.h"
#include "cli/text_table.h"

namespace velumar {
namespace {

TEST(Program, EndsWith2AfterBadArguments) {
  Sandbox box;
  const std::vector<std::vector<std::string>> lines = {
      {},
      {"fly"},
      {"list"},
      {"list", "a", "b"},
      {"dump", "a", "b"},
      {"dump", "a", "b", "week"},
      {"dump", "a", "b", "70000"},
      {"import", "a"},
      {"import", "a", "b", "--interval", "7"},
      {"import", "a", "b", "--interval", ""},
      {"import", "a", "b", "--symbol", " "},
      {"import", "a", "b", "--date-format", "%Y"},
  };
  for (const auto& line : lines) {
    const auto answer = box.Run(line);
    EXPECT_EQ(answer.code, 2) << testing::PrintToString(line);
    EXPECT_EQ(answer.out, "");
    EXPECT_NE(answer.err, "");
  }
}

TEST(Program, HelpsWithEachCommand) {
  Sandbox box;
  for (const std::string command : {"import", "list", "dump"}) {
    const auto answer = box.Run({command, "--help"});
    EXPECT_EQ(answer.code, 0);
    EXPECT_THAT(answer.out, testing::HasSubstr("DIR"));
    EXPECT_THAT(box.Run({"--help"}).out, testing::HasSubstr(command));
  }
  EXPECT_THAT(box.Run({"--version"}).out, testing::MatchesRegex("velumar-cli .+\n"));
}

TEST(Program, SaysWhatIsMissing) {
  Sandbox box;
  for (const std::string command : {"list", "dump"}) {
    std::vector<std::string> line = {command, box.At("none")};
    if (command == "dump") line.insert(line.end(), {"X", "D"});
    const auto answer = box.Run(line);
    EXPECT_EQ(answer.code, 1);
    EXPECT_EQ(answer.out, "");
    EXPECT_THAT(answer.err, testing::HasSubstr(box.At("none")));
  }
  const auto csv = box.File("MINE_D.csv", "date,open,high,low,close\n20200102,1,1,1,1\n");
  box.Run({"import", csv, box.At("list")});
  EXPECT_EQ(box.Run({"dump", box.At("list"), "MINE", "D"}).code, 0);
  for (const auto& [symbol, interval] : {std::pair("YOURS", "D"), std::pair("MINE", "5")}) {
    const auto answer = box.Run({"dump", box.At("list"), symbol, interval});
    EXPECT_EQ(answer.code, 1);
    EXPECT_THAT(answer.err, testing::HasSubstr(symbol));
  }
}

TEST(Program, TakesADirectoryNamedLikeACommand) {
  Sandbox box;
  const auto csv = box.File("MINE_D.csv", "date,open,high,low,close\n20200102,1,1,1,1\n");
  const auto here = std::filesystem::current_path();
  std::filesystem::current_path(box.At(""));
  EXPECT_EQ(box.Run({"import", csv, "list"}).code, 0);
  EXPECT_EQ(box.Run({"list", "list"}).out,
            "symbol  name  interval  fields  file  bars     first      last\n"
            "MINE    MINE         D       7     1     1  20200102  20200102\n");
  std::filesystem::current_path(here);
}

// A store that is refused before the run is an error, not a box that nobody sees.
TEST(Program, ReplaysIntoNoFolderOfTheUsers) {
  Sandbox box;
  const auto csv = box.File("MINE_D.csv", "date,open,high,low,close\n20200102,1,1,1,1\n");
  box.Run({"import", csv, box.At("data")});
  box.File("data/Simulate/F1.DAT", "mine");
  const std::vector<std::string> replay = {"replay", box.At("data"), "MINE", "D", "20200102"};
  const auto before = box.Files();
  for (const std::string store : {"", "data", "data/Simulate"}) {
    std::vector<std::string> line = replay;
    if (!store.empty()) line.insert(line.end(), {"--store", box.At(store)});
    const auto answer = box.Run(line);
    EXPECT_EQ(answer.code, 1) << store;
    EXPECT_EQ(answer.out, "") << store;
    EXPECT_THAT(answer.err, testing::HasSubstr("can't be the working store")) << store;
    EXPECT_EQ(box.Files(), before) << store;
  }
}

// Bytes of real files changed at random: any answer will do, as long as there is one.
TEST(Program, SurvivesDamagedDirectories) {
  Sandbox box;
  const std::string rows = "20200102,0,1,1,1,1,0,0\n20200103,0,1,1,1,1,0,0\n";
  const auto csv = box.File("csv/A_D.csv", "date,time,open,high,low,close,volume,oi\n" + rows);
  for (const std::string symbol : {"A", "B", "C"}) {
    box.Run({"import", csv, box.At("data"), "--symbol", symbol});
  }
  const auto sound = box.Files();
  std::mt19937_64 random(11);
  for (int round = 0; round < 100; ++round) {
    for (auto [name, bytes] : sound) {
      if (!name.starts_with("data")) continue;
      for (int i = 0; i < 3; ++i) bytes[random() % bytes.size()] = static_cast<char>(random());
      if (random() % 4 == 0) bytes.resize(random() % bytes.size());
      box.File(name, bytes);
    }
    for (const auto& line : {std::vector<std::string>{"list", box.At("data"), "--json"},
                             {"list", box.At("data")},
                             {"dump", box.At("data"), "B", "D"},
                             {"import", csv, box.At("data")}}) {
      const auto answer = box.Run(line);
      EXPECT_TRUE(answer.code == 0 || (answer.code == 1 && !answer.err.empty()));
    }
  }
}

TEST(TextTable, AlignsUnicodeAndHidesControlCharacters) {
  TextTable table({{"name"}, {"n", TextTable::kRight}});
  table.AddRow({"Zürich", "5"});
  table.AddRow(
      {"a\x1b[1mb\xC2\x9B"
       "c",
       "1000"});
  table.AddRow({"", ""});
  EXPECT_EQ(table.Text(),
            "name         n\n"
            "Zürich       5\n"
            "a?[1mb?c  1000\n"
            "\n");
}

}  // namespace
}  // namespace velumar
