#include "cli/sandbox.h"

namespace velumar {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

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
  EXPECT_EQ(Print({"--csv", "--run", "1"}).Lines().size(), 3U);
  const auto rows = nlohmann::json::parse(Print({"--json", "--run", "1"}).out);
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[1]["Position"], "Offset Long");
  EXPECT_EQ(rows[1]["LRealised"], "1.99") << "the average has two decimals";

  const auto runs = nlohmann::json::parse(Print({"--runs", "--json"}).out);
  ASSERT_EQ(runs.size(), 1U);
  EXPECT_EQ(runs[0]["Symbol"], "ABC");
  EXPECT_EQ(runs[0]["Rows"], "2");
  const auto orders = Print({"--orders", "--run", "1"}).Lines();
  ASSERT_EQ(orders.size(), 3U);
  EXPECT_THAT(orders[2], StartsWith("2,2000-01-10,00:00:00,ABC,Offset Long,2,110.13,1,"));
}

TEST_F(LedgerCommand, RefusesUnknownRunsAndFiles) {
  EXPECT_THAT(Print({"--run", "9"}).err, HasSubstr("no archived run has the number 9"));
  EXPECT_THAT(box.Run({"ledger", box.At("none.mdb")}).err, HasSubstr("none.mdb"));
}

}  // namespace
}  // namespace velumar
