#include "base/dates.h"
#include "cli/sandbox.h"
#include "cli/text_table.h"

namespace velumar {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

TEST(Program, ExitsWith2AfterInvalidArguments) {
  Sandbox box;
  for (const std::vector<std::string>& line :
       std::vector<std::vector<std::string>>{{"dump", "a", "b", "70000"},
                                             {"import", "a", "b", "--symbol", " "},
                                             {"import", "a", "b", "--date-format", "%Y"},
                                             {"import", "a"},
                                             {"import", "a", "b", "--scale", "3"},
                                             {"import", "a", "b", "--json"},
                                             {"import", "a", "b", "--last", "--split-by-year"},
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
  EXPECT_THAT(answer.err, HasSubstr("YOURS"));
  std::filesystem::current_path(here);
}

TEST(TextTable, AlignsUnicodeAndHidesControlCharacters) {
  TextTable table({{"name"}, {"n", TextTable::kRight}});
  table.AddRow({"Zürich", "5"});
  table.AddRow({"a\x1b[1m\xC2\x9B.", "1000"});
  table.AddRow({"\xC2\x9F\xC2\xA0\xC2",
                "1"});  // the last control character, a no-break space, half a character
  EXPECT_EQ(table.Text(),
            "name        n\n"
            "Zürich      5\n"
            "a?[1m?.  1000\n"
            "?\xC2\xA0\xC2         1\n");
}

TEST(Program, FailsIfItsOutputCannotBeWritten) {
  Sandbox box;
  IndexCache cache;
  std::istringstream in;
  std::ostringstream out, err;
  CliContext context{cache, in, out, err};
  const std::string data = box.ImportDays("data");
  out.setstate(std::ios::badbit);
  EXPECT_EQ(RunCli({"list", data}, context), 1);
  EXPECT_THAT(err.str(), HasSubstr("could not write"));
}

// An archived run of two orders, and a current run of one.
class LedgerCommand : public testing::Test {
 protected:
  LedgerCommand() {
    const std::string data = box.ImportDays("data", ".125");
    const auto replay = box.Run(
        {"replay", data, "ABC", "D", "20000110", "--store", box.At("store"), "--ledger", ledger},
        "long 3\nnext\noffset-long 2\nreturn\nstart\nshort 1\n");
    EXPECT_EQ(replay.code, 0) << replay.err;
  }
  Sandbox::Answer Print(std::vector<std::string> options) {
    options.insert(options.begin(), {"ledger", ledger, "--date-pattern", "dd/MM/yyyy"});
    return box.Run(options);
  }

  Sandbox box;
  std::string ledger = box.At("l.mdb");
};

TEST_F(LedgerCommand, PrintsRowsRunsAndOrders) {
  const auto current = Print({"--csv"}).Lines();
  ASSERT_EQ(current.size(), 2U);
  EXPECT_THAT(current[0], StartsWith("Profile,Symbol,SymbolInterval,ActDate,ActTime,MarketPrice,"));
  EXPECT_THAT(current[1], HasSubstr("ABC,-1,09/01/2000,00:00:00,109.13,Short,"));
  const auto rows = nlohmann::json::parse(Print({"--json", "--run", "1"}).out);
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[1]["Position"], "Offset Long");
  EXPECT_EQ(rows[1]["LRealised"], "1.99") << "the average has two decimals";

  const auto runs = nlohmann::json::parse(Print({"--runs", "--json"}).out);
  ASSERT_EQ(runs.size(), 1U);
  EXPECT_EQ(runs[0]["Rows"], "2");
  EXPECT_EQ(Print({"--csv", "--session", "2"}).out, Print({"--csv"}).out);
  const auto orders = Print({"--orders", "--session", "1"}).Lines();
  ASSERT_EQ(orders.size(), 3U);
  EXPECT_THAT(orders[2], StartsWith("2,2000-01-10,00:00:00,ABC,Offset Long,2,110.13,1,"));
}

TEST_F(LedgerCommand, RefusesUnknownRunsAndFiles) {
  EXPECT_THAT(Print({"--run", "9"}).err, HasSubstr("no run has the number 9"));
  EXPECT_THAT(Print({"--session", "9"}).err, HasSubstr("no session has the number 9"));
  EXPECT_THAT(box.Run({"ledger", box.At("none.mdb")}).err, HasSubstr("none.mdb"));
}

// The path contains "SET", which means a stock market.
class ReplayCommand : public testing::Test {
 protected:
  Sandbox::Answer Replay(const std::vector<std::string>& options, const std::string& commands) {
    std::vector<std::string> arguments{"replay",   data,      "ABC",          "D",
                                       "20000110", "--store", box.At("store")};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return box.Run(arguments, commands);
  }

  Sandbox box;
  std::string data = box.ImportDays("SET");
  std::vector<std::string> ledger{"--ledger", box.At("l.mdb"), "--date-pattern", "dd/MM/yyyy"};
};

TEST_F(ReplayCommand, SetTextsReplaceTheMarketsPresets) {
  const auto replay = Replay(
      {"--set", "Form1.txtContractValue=70", "--set", "Form1.txtProfitperContract=3", "--set",
       "Form1.txtcomm=0.5", "--set", "Form1.txtInitPorfolio=333,333.33", "--set", "Form3.Combo2=1"},
      "long 100\n");
  ASSERT_EQ(replay.code, 0) << replay.err;
  const nlohmann::json last = replay.Objects().back();
  EXPECT_EQ(last["InitMargin"], 70);
  EXPECT_EQ(last["ProfitPerContract"], 3);
  EXPECT_EQ(last["Commission"], 100 * 109 * 0.005);
  EXPECT_EQ(last["Balance"], 333333) << "whole money after an order";
  EXPECT_EQ(last["RefreshDelay"], 1000);
}

TEST_F(ReplayCommand, EndsAtAnEndlessCommand) {
  const auto replay = Replay({}, "dance\nnext\n" + std::string(1 << 20, 'n'));
  EXPECT_EQ(replay.code, 1);
  EXPECT_THAT(replay.err, HasSubstr("longer than 16384 bytes"));
  EXPECT_EQ(replay.Objects().size(), 3U) << "one answer each: begin, an error, next";
}

// What one answer says is not said again by the next one.
TEST_F(ReplayCommand, AnAnswerKeepsNothingOfTheOneBefore) {
  const auto replay =
      Replay(ledger,
             "pause\nlong 1\nnext\nstart\nnext\nfigures\nplan colour=red\nplan setup=gap\nfeed -1\n"
             "play\nnext\nreturn\nset Form1.Combo1 NONE\nstart\nprev\n");
  ASSERT_EQ(replay.code, 0) << replay.err;
  const auto answers = replay.Objects();
  const std::pair<std::size_t, const char*> said[] = {{2, "row"},       {2, "result"}, {4, "error"},
                                                      {6, "ResSymbol"}, {7, "error"},  {9, "error"},
                                                      {14, "messages"}};
  for (const auto& [at, field] : said) {
    EXPECT_FALSE(answers.at(at).value(field, nlohmann::json()).empty()) << at << replay.out;
    EXPECT_TRUE(answers.at(at + 1).value(field, nlohmann::json()).empty()) << at << replay.out;
  }
  EXPECT_EQ(answers.at(11)["BarIndex"], answers[8]["BarIndex"].get<int>() + 1)
      << "commands are read again after a pause";
}

TEST_F(ReplayCommand, BarsThatARunLackedAreNotFedInTheNextOne) {
  const auto answers = Replay(ledger, "feed 500\nreturn\nstart\n").Objects();
  ASSERT_EQ(answers.size(), 4U);
  EXPECT_GT(answers[1]["BarIndex"], answers[0]["BarIndex"]);
  EXPECT_EQ(answers[3]["BarIndex"], answers[0]["BarIndex"]);
}

TEST_F(ReplayCommand, AnswersTheFiguresOfItsLedger) {
  const auto replay = Replay(ledger, "figures\nlong 3\nnext\noffset-long 2\nfigures\n");
  ASSERT_EQ(replay.code, 0) << replay.err;
  const auto answers = replay.Objects();
  ASSERT_EQ(answers.size(), 6U);
  EXPECT_EQ(answers[1]["ResSymbol"], "");
  EXPECT_FALSE(answers[2].contains("ResSymbol"));
  const auto printed =
      box.Run({"figures", box.At("l.mdb"), "--json", "--date-pattern", "dd/MM/yyyy"});
  auto figures = nlohmann::json::parse(printed.out);
  figures.erase("statistics");
  EXPECT_EQ(figures["ResLongProfitLoss"], "2");
  for (const auto& [field, text] : figures.items()) EXPECT_EQ(answers[5][field], text) << field;

  const nlohmann::json again = Replay(ledger, "long 1\nreturn\nstart\nfigures\n").Objects().back();
  EXPECT_EQ(again["rows"], 0) << "the figures of a run start with its first order";
  EXPECT_EQ(again["ResLongAmount"], "0");
}

const std::string kHeader = "date,time,open,high,low,close,volume,openinterest\n";

TEST(Import, AndDumpKeepEveryFloat) {
  Sandbox box;
  const auto file = box.File(
      "EDGE_D.csv",
      kHeader +
          "20200102,0,1.1754944e-38,1.7014117e+38,-1.7014117e+38,-1.1754944e-38,16777217,0\n"
          "20200103,0,0.1,3.4,0.30000001,1e-7,123456789,2147483648\n"
          "20210104,0,-5,-1,-9,-3.5,1e+20,0.00012207031\n");
  ASSERT_EQ(box.Run({"import", file, box.At("data")}).code, 0);
  EXPECT_EQ(box.Run({"dump", box.At("data"), "EDGE", "D"}).out,
            kHeader +
                "20200102,0,1.1754944e-38,1.7014117e+38,-1.7014117e+38,-1.1754944e-38,16777216,0\n"
                "20200103,0,0.1,3.4,0.3,1e-07,123456792,2147483648\n"
                "20210104,0,-5,-1,-9,-3.5,1e+20,0.00012207031\n");
}

TEST(Import, WarnsOfContradictoryPricesAndIgnoredTimes) {
  Sandbox box;
  const auto file = box.File("ODD_D.csv", kHeader +
                                              "20200102,160000,1,2,1,1,0,0\n"
                                              "20200103,160000,1,2,1.5,2,0,0\n"
                                              "20200106,160000,5,2,1,2,0,0\n");
  const auto answer = box.Run({"import", file, box.At("data")});
  EXPECT_EQ(answer.err,
            file + ": 2 bars have contradictory prices, imported unchanged (first on line 3)\n" +
                file + ": 3 bars have a time, ignored because the series is daily\n");
}

// A failed import changes no byte of the directory, and creates none.
TEST(Import, WritesNothingAfterAnError) {
  Sandbox box;
  const auto data = box.At("data");
  const std::string row = "20200102,0,1,1,1,1,0,0\n";
  box.Run({"import", box.File("GOOD_D.csv", kHeader + row), data});
  std::filesystem::create_directory(box.At("FOLDER_D.csv"));
  box.File("EMPTY_D.csv", "");
  box.File("BAD_D.csv", kHeader + row + "20200103,0,1,1,1,1e39,0,0\n");
  const auto before = FilesOf(data);
  for (const auto& [name, complaint] :
       std::vector<std::pair<std::string, std::string>>{{"BAD_D.csv", "line 3"},
                                                        {"NONE_D.csv", "No such file or directory"},
                                                        {"FOLDER_D.csv", "folder"},
                                                        {"EMPTY_D.csv", "empty"}}) {
    for (const std::string& directory : {data, box.At("new")}) {
      const auto answer = box.Run({"import", box.At(name), directory});
      EXPECT_EQ(answer.code, 1) << name;
      EXPECT_EQ(answer.out, "");
      EXPECT_THAT(answer.err, HasSubstr(box.At(name)));
      EXPECT_THAT(answer.err, HasSubstr(complaint));
    }
  }
  EXPECT_EQ(FilesOf(data), before);
  EXPECT_FALSE(std::filesystem::exists(box.At("new")));
}

// Files that can be decided are imported, whatever becomes of the others.
TEST(Import, TakesFilesAndFoldersAndNamesWhatIsUndecided) {
  Sandbox box;
  const auto data = box.At("data");
  const std::string day = "20200102,0,1,1,1,1,0,0\n";
  std::filesystem::create_directory(box.At("prices"));
  box.File("prices/ABC_D.csv", kHeader + day);
  box.File("prices/readme.md", "no prices");
  std::string minutes = kHeader;
  for (int minute = 10; minute < 40; ++minute) {
    minutes += "20200102,09" + std::to_string(minute) + "00,1,1,1,1,0,0\n";
  }
  box.File("prices/MIN.csv", minutes);
  const auto bad = box.File("BAD_D.csv", "x\n");
  const auto preview = box.Run({"import", box.At("prices"), bad, data, "--dry-run"});
  EXPECT_EQ(preview.code, 2);
  EXPECT_THAT(preview.out,
              HasSubstr("ABC_D.csv  ABC            D  20200102  20200102     1  ready"));
  EXPECT_THAT(preview.out, HasSubstr("  10 minutes: 3 bars\n"));
  EXPECT_FALSE(std::filesystem::exists(data));
  const auto json =
      nlohmann::json::parse(box.Run({"import", box.At("prices"), "--dry-run", "--json"}).out);
  EXPECT_EQ(json["files"][1]["questions"][0]["option"], "--interval 5, 10, 15, 30, 60 or D");
  EXPECT_THAT(box.Run({"import", box.At("prices"), "--dry-run", "--explain"}).out,
              HasSubstr("column 6 \"close\": close"));

  const auto answer = box.Run({"import", box.At("prices"), bad, data});
  EXPECT_EQ(answer.code, 2);
  EXPECT_EQ(answer.out, "ABC D: 1 bar, 20200102 to 20200102\n");
  EXPECT_THAT(answer.err, HasSubstr("MIN.csv: The bars are 1 minute apart. Set --interval 5, "));
  EXPECT_THAT(answer.err, HasSubstr("BAD_D.csv: "));
  EXPECT_EQ(box.Run({"import", bad, data}).code, 1);
}

TEST(Import, ReportsWhatItStoredNextToWhatItRefused) {
  Sandbox box;
  const auto data = box.At("data");
  const std::string header = "Ticker,Date,Close\n";
  std::string text = header + "ABC,20200102,1\n";
  for (const char* date : {"20200106", "20200113", "20200120", "20200127"}) {
    text += "WEEKS," + std::string(date) + ",1\n";
  }
  const auto file = box.File("all.csv", text);
  const auto answer = box.Run({"import", file, data});
  EXPECT_EQ(answer.code, 1);
  EXPECT_EQ(answer.out, "ABC D: 1 bar, 20200102 to 20200102\n");
  EXPECT_THAT(answer.err, HasSubstr(file + ": WEEKS: the bars are weekly; only "));
  EXPECT_THAT(box.Run({"import", file, "--dry-run"}).out,
              HasSubstr(": WEEKS: the bars are weekly"));

  std::string first = header;
  std::string second = header + "NEW,20200102,1\n";
  for (int i = 0; i < 40'000; ++i) {
    const std::string date = std::to_string(DaysLater(19000101, i));
    (i < 20'000 ? first : second) += "LONG," + date + ",1\n";
  }
  second += text.substr(text.find("WEEKS"));
  box.Run({"import", box.File("long.csv", first), data});
  const auto open = box.Run({"import", box.File("long.csv", second), data});
  EXPECT_EQ(open.code, 2) << "whatever comes after the question";
  EXPECT_EQ(open.out, "NEW D: 1 bar, 20200102 to 20200102\n");
  EXPECT_THAT(open.err, HasSubstr("long.csv: LONG: With the stored bars"));
  EXPECT_THAT(box.Run({"update", data}).err, HasSubstr("LONG")) << "the question is still open";
}

TEST(Import, ClearsItsProgressBeforeItPrints) {
  Sandbox box;
  IndexCache cache;
  std::istringstream in;
  std::ostringstream terminal;
  CliContext context{cache, in, terminal, terminal, true};
  const auto file = box.File("ABC_D.csv", "date,close\n20200102,1\n");
  EXPECT_EQ(RunCli({"import", file, box.At("data")}, context), 0);
  EXPECT_THAT(terminal.str(), testing::StartsWith("\rABC_D.csv: "));
  EXPECT_THAT(terminal.str(), HasSubstr("\x1b[K" + file + ": has one price"));
}

TEST(Import, IsBroughtUpToDate) {
  Sandbox box;
  const auto data = box.At("data");
  const auto row = [](int day) { return std::to_string(20200100 + day) + ",0,1,1,1,1,0,0\n"; };
  std::filesystem::create_directory(box.At("prices"));
  box.File("prices/ABC_D.csv", kHeader + row(2) + row(3));
  box.Run({"import", box.At("prices"), data});
  EXPECT_EQ(box.Run({"update", data}).out, "nothing new\n");
  box.File("prices/ABC_D.csv", kHeader + row(2) + "20200103,0,2,2,2,2,0,0\n" + row(6) + row(7));
  box.File("prices/XYZ_D.csv", kHeader + row(2));
  EXPECT_EQ(box.Run({"update", data}).out,
            "ABC D: 2 new bars, 1 changed, 20200102 to 20200107\n"
            "XYZ D: 1 bar, 20200102 to 20200102\n");
  box.File("prices/ABC_D.csv", kHeader + "rubbish\n");
  box.File("prices/XYZ_D.csv", kHeader + row(2) + row(3));
  const auto half = box.Run({"update", data});
  EXPECT_EQ(half.code, 1) << half.err;
  EXPECT_THAT(half.out, HasSubstr("XYZ D: 1 new bar"));
  box.File("prices/ABC_D.csv", kHeader + row(2));
  box.File("prices/XYZ_D.csv", kHeader + row(2) + "20200103,0,3,3,3,3,0,0\n");
  EXPECT_THAT(box.Run({"update", data}).out, HasSubstr("XYZ D: 0 new bars, 1 changed"));
  const auto missing = box.Run({"update", box.At("none")});
  EXPECT_EQ(missing.code, 1);
  EXPECT_THAT(missing.err, HasSubstr(box.At("none") + ": there is no such directory"));
}

}  // namespace
}  // namespace velumar
