#include "cli/sandbox.h"

namespace velumar {
namespace {

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
  const auto replay = Replay({}, "next\n" + std::string(1 << 20, 'n'));
  EXPECT_EQ(replay.code, 1);
  EXPECT_THAT(replay.err, testing::HasSubstr("longer than 16384 bytes"));
  EXPECT_EQ(replay.Objects().size(), 2U) << "begin and next";
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
  EXPECT_EQ(figures.size(), 14U);
  EXPECT_EQ(figures["ResLongProfitLoss"], "2");
  for (const auto& [field, text] : figures.items()) EXPECT_EQ(answers[5][field], text) << field;

  // The figures of a run start with its first order.
  const nlohmann::json again = Replay(ledger, "long 1\nreturn\nstart\nfigures\n").Objects().back();
  EXPECT_EQ(again["rows"], 0);
  EXPECT_EQ(again["ResLongAmount"], "0");
}

}  // namespace
}  // namespace velumar
