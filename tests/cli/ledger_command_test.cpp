#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/sandbox.h"

namespace velumar {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// A run of two orders that went to the archive, and one order of the run behind it.
class LedgerCommand : public testing::Test {
 protected:
  LedgerCommand() {
    std::string csv = "date,open,high,low,close\n";
    for (int day = 1; day <= 28; ++day) {
      const std::string price = std::to_string(100 + day) + ".125";
      csv += std::to_string(20000100 + day) + "," + price + "," + price + "," + price + "," +
             price + "\n";
    }
    EXPECT_EQ(box.Run({"import", box.File("ABC_D.csv", csv), box.At("data")}).code, 0);
    const auto replay = box.Run({"replay", box.At("data"), "ABC", "D", "20000110", "--store",
                                 box.At("store"), "--ledger", ledger},
                                "long 3\nnext\noffset-long 2\nreturn\nstart\nshort 1\n");
    EXPECT_EQ(replay.code, 0) << replay.err;
  }
  // The printed ledger, with dates as this trader writes them.
  Sandbox::Answer Print(std::vector<std::string> options) {
    options.insert(options.begin(), {"ledger", ledger, "--date-pattern", "dd/MM/yyyy"});
    return box.Run(options);
  }

  Sandbox box;
  std::string ledger = box.At("l.mdb");
};

TEST_F(LedgerCommand, PrintsTheRowsNowAndThoseOfAnArchivedRun) {
  const auto now = LinesOf(Print({"--csv"}).out);
  ASSERT_EQ(now.size(), 2U);
  EXPECT_THAT(now[0], StartsWith("Profile,Symbol,SymbolInterval,ActDate,ActTime,MarketPrice,"));
  EXPECT_THAT(now[1], HasSubstr("ABC,-1,09/01/2000,00:00:00,109.13,Short,"));
  EXPECT_EQ(LinesOf(Print({"--csv", "--run", "1"}).out).size(), 3U);

  const auto rows = nlohmann::json::parse(Print({"--json", "--run", "1"}).out);
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[1]["Position"], "Offset Long");
  EXPECT_EQ(rows[1]["LRealised"], "1.99") << "the average is kept to two decimals";
  EXPECT_THAT(Print({}).out, HasSubstr("Short"));
}

TEST_F(LedgerCommand, PrintsRunsAndOrders) {
  const auto runs = nlohmann::json::parse(Print({"--runs", "--json"}).out);
  ASSERT_EQ(runs.size(), 1U);
  EXPECT_EQ(runs[0]["Id"], "1");
  EXPECT_EQ(runs[0]["Symbol"], "ABC");
  EXPECT_EQ(runs[0]["Rows"], "2");
  const auto orders = LinesOf(Print({"--orders", "--run", "1"}).out);
  ASSERT_EQ(orders.size(), 3U);
  EXPECT_THAT(orders[2], StartsWith("2,2000-01-10,00:00:00,ABC,Offset Long,2,110.13,1,"));
}

TEST_F(LedgerCommand, RefusesWhatThereIsNot) {
  const auto unknown = Print({"--run", "9"});
  EXPECT_EQ(unknown.code, 1);
  EXPECT_THAT(unknown.err, HasSubstr("no archived run has the number 9"));
  const auto missing = box.Run({"ledger", box.At("none.mdb")});
  EXPECT_EQ(missing.code, 1);
  EXPECT_THAT(missing.err, HasSubstr("none.mdb"));
  EXPECT_NE(Print({"--csv", "--json"}).code, 0);
}

}  // namespace
}  // namespace velumar
