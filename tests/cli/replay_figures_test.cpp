#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/sandbox.h"

namespace velumar {
namespace {

// Twenty-eight daily bars, in a folder whose name holds a market's word.
std::string StockDirectory(Sandbox& box) {
  std::string csv = "date,open,high,low,close\n";
  for (int day = 1; day <= 28; ++day) {
    const std::string price = std::to_string(100 + day);
    csv += std::to_string(20000100 + day) + "," + price + "," + price + "," + price + "," + price +
           "\n";
  }
  const std::string directory = box.At("SET");
  EXPECT_EQ(box.Run({"import", box.File("ABC_D.csv", csv), directory}).code, 0);
  return directory;
}

std::vector<nlohmann::json> Answers(const std::string& out) {
  std::istringstream lines(out);
  std::vector<nlohmann::json> answers;
  for (std::string line; std::getline(lines, line);) answers.push_back(nlohmann::json::parse(line));
  return answers;
}

TEST(ReplayCommand, TextsThatAreSetOutlastTheMarketsPresets) {
  Sandbox box;
  const auto replay = box.Run(
      {"replay", StockDirectory(box), "ABC", "D", "20000110", "--store", box.At("store"), "--set",
       "Form1.txtContractValue=70", "--set", "Form1.txtProfitperContract=3", "--set",
       "Form1.txtcomm=0.5", "--set", "Form1.txtInitPorfolio=333,333.33", "--set", "Form3.Combo2=1"},
      "long 100\n");
  ASSERT_EQ(replay.code, 0) << replay.err;
  const nlohmann::json last = Answers(replay.out).back();
  EXPECT_EQ(last["InitMargin"], 70);
  EXPECT_EQ(last["ProfitPerContract"], 3);
  EXPECT_EQ(last["Commission"], 100 * 109 * 0.005);
  EXPECT_EQ(last["Balance"], 333333) << "whole money after an order";
  EXPECT_EQ(last["RefreshDelay"], 1000);
}

TEST(ReplayCommand, EndsAtACommandWithoutEnd) {
  Sandbox box;
  const auto replay =
      box.Run({"replay", StockDirectory(box), "ABC", "D", "20000110", "--store", box.At("store")},
              "next\n" + std::string(1 << 20, 'n'));
  EXPECT_EQ(replay.code, 1);
  EXPECT_THAT(replay.err, testing::HasSubstr("longer than 16384 bytes"));
  EXPECT_EQ(Answers(replay.out).size(), 2U) << "begin and next";
}

// What a replay answers is what the figures of its ledger are; those of a run begin with its first
// order.
TEST(ReplayFigures, AreThoseOfTheLedger) {
  Sandbox box;
  const std::string data = StockDirectory(box);
  const auto replay = box.Run({"replay", data, "ABC", "D", "20000110", "--store", box.At("store"),
                               "--ledger", box.At("l.mdb"), "--date-pattern", "dd/MM/yyyy"},
                              "figures\nlong 3\nnext\noffset-long 2\nfigures\n");
  ASSERT_EQ(replay.code, 0) << replay.err;
  const std::vector<nlohmann::json> answers = Answers(replay.out);
  ASSERT_EQ(answers.size(), 6U);
  EXPECT_EQ(answers[1]["ResSymbol"], "");
  EXPECT_FALSE(answers[2].contains("ResSymbol"));
  EXPECT_EQ(answers[5]["ResLongProfitLoss"], "2");
  const auto printed =
      box.Run({"figures", box.At("l.mdb"), "--json", "--date-pattern", "dd/MM/yyyy"});
  const auto figures = nlohmann::json::parse(printed.out);
  int compared = 0;
  for (const auto& [field, text] : figures.items()) {
    if (!text.is_string()) continue;
    EXPECT_EQ(answers[5][field], text) << field;
    ++compared;
  }
  EXPECT_EQ(compared, 14);

  const auto again = box.Run({"replay", data, "ABC", "D", "20000110", "--store", box.At("store"),
                              "--ledger", box.At("l.mdb")},
                             "long 1\nfigures\nreturn\nstart\nfigures\n");
  const nlohmann::json anew = Answers(again.out).back();
  EXPECT_EQ(anew["rows"], 0);
  EXPECT_EQ(anew["ResLongAmount"], "0");
  EXPECT_EQ(anew["ResSymbol"], "");
}

}  // namespace
}  // namespace velumar
