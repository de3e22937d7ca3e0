#include <filesystem>

#include "cli/sandbox.h"
#include "cli/text_table.h"

namespace velumar {
namespace {

TEST(Program, EndsWith2AfterBadArguments) {
  Sandbox box;
  for (const std::vector<std::string>& line :
       std::vector<std::vector<std::string>>{{"fly"},
                                             {"dump", "a", "b"},
                                             {"dump", "a", "b", "70000"},
                                             {"import", "a", "b", "--interval", "7"},
                                             {"import", "a", "b", "--symbol", " "},
                                             {"import", "a", "b", "--date-format", "%Y"}}) {
    const auto answer = box.Run(line);
    EXPECT_EQ(answer.code, 2) << testing::PrintToString(line);
    EXPECT_EQ(answer.out, "");
    EXPECT_NE(answer.err, "");
  }
}

TEST(Program, SaysWhatIsMissing) {
  Sandbox box;
  const auto csv = box.File("MINE_D.csv", "date,open,high,low,close\n20200102,1,1,1,1\n");
  box.Run({"import", csv, box.At("data")});
  for (const auto& [line, missing] : std::vector<std::pair<std::vector<std::string>, std::string>>{
           {{"list", box.At("none")}, box.At("none")},
           {{"dump", box.At("data"), "YOURS", "D"}, "YOURS"},
           {{"dump", box.At("data"), "MINE", "5"}, "MINE"}}) {
    const auto answer = box.Run(line);
    EXPECT_EQ(answer.code, 1);
    EXPECT_EQ(answer.out, "");
    EXPECT_THAT(answer.err, testing::HasSubstr(missing));
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

// It is an error, and not a box that nobody sees.
TEST(Program, ReplaysIntoNoFolderOfTheUsers) {
  Sandbox box;
  const auto csv = box.File("MINE_D.csv", "date,open,high,low,close\n20200102,1,1,1,1\n");
  box.Run({"import", csv, box.At("data")});
  box.File("data/Simulate/F1.DAT", "mine");
  const auto before = box.Files();
  std::vector<std::string> line = {"replay", box.At("data"), "MINE", "D", "20200102"};
  for (int i = 0; i < 2; ++i) {
    const auto answer = box.Run(line);
    EXPECT_EQ(answer.code, 1);
    EXPECT_EQ(answer.out, "");
    EXPECT_THAT(answer.err, testing::HasSubstr("can't be the working store"));
    EXPECT_EQ(box.Files(), before);
    line.insert(line.end(), {"--store", box.At("data")});
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
