#include "cli/sandbox.h"
#include "cli/text_table.h"

namespace velumar {
namespace {

TEST(Program, ExitsWith2AfterInvalidArguments) {
  Sandbox box;
  for (const std::vector<std::string>& line :
       std::vector<std::vector<std::string>>{{"dump", "a", "b"},
                                             {"dump", "a", "b", "70000"},
                                             {"import", "a", "b", "--symbol", " "},
                                             {"import", "a", "b", "--date-format", "%Y"},
                                             {"ledger", "a", "--run", "0"},
                                             {"ledger", "a", "--csv", "--json"},
                                             {"replay", "a", "b", "D", "20070231"},
                                             {"replay", "a", "b", "D", "20070201", "--set", "x"}}) {
    const auto answer = box.Run(line);
    EXPECT_EQ(answer.code, 2) << testing::PrintToString(line);
    EXPECT_EQ(answer.out, "");
    EXPECT_NE(answer.err, "");
  }
}

TEST(Program, AcceptsADirectoryNamedLikeACommandAndNamesWhatIsMissing) {
  Sandbox box;
  const auto here = std::filesystem::current_path();
  std::filesystem::current_path(box.At(""));
  box.ImportDays("list");
  EXPECT_EQ(box.Run({"list", "list"}).out,
            "symbol  name  interval  fields  file  bars     first      last\n"
            "ABC     ABC          D       7     1    28  20000101  20000128\n");
  const auto answer = box.Run({"dump", "list", "YOURS", "D"});
  EXPECT_EQ(answer.code, 1);
  EXPECT_THAT(answer.err, testing::HasSubstr("YOURS"));
  std::filesystem::current_path(here);
}

TEST(TextTable, AlignsUnicodeAndHidesControlCharacters) {
  TextTable table({{"name"}, {"n", TextTable::kRight}});
  table.AddRow({"Zürich", "5"});
  table.AddRow({"a\x1b[1m\xC2\x9B.", "1000"});
  EXPECT_EQ(table.Text(),
            "name        n\n"
            "Zürich      5\n"
            "a?[1m?.  1000\n");
}

}  // namespace
}  // namespace velumar
