#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/sandbox.h"

namespace velumar {
namespace {

// What a replay answers is what the figures of its ledger are; a run that begins anew empties the
// ledger, and what nothing is found for keeps its value.
TEST(ReplayFigures, AreThoseOfTheLedger) {
  Sandbox box;
  std::string csv = "date,open,high,low,close\n";
  for (int day = 1; day <= 28; ++day) {
    const std::string price = std::to_string(100 + day);
    csv += std::to_string(20000100 + day) + "," + price + "," + price + "," + price + "," + price +
           "\n";
  }
  ASSERT_EQ(box.Run({"import", box.File("ABC_D.csv", csv), box.At("data")}).code, 0);
  const auto replay =
      box.Run({"replay", box.At("data"), "ABC", "D", "20000110", "--store", box.At("store"),
               "--ledger", box.At("l.mdb"), "--date-pattern", "dd/MM/yyyy"},
              "figures\nlong 3\nnext\noffset-long 2\nfigures\n");
  ASSERT_EQ(replay.code, 0) << replay.err;
  std::istringstream lines(replay.out);
  std::vector<nlohmann::json> answers;
  for (std::string line; std::getline(lines, line);) answers.push_back(nlohmann::json::parse(line));
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

  const auto again = box.Run({"replay", box.At("data"), "ABC", "D", "20000110", "--store",
                              box.At("store"), "--ledger", box.At("l.mdb")},
                             "long 1\nfigures\nreturn\nstart\nfigures\n");
  std::istringstream more(again.out);
  std::string last;
  for (std::string line; std::getline(more, line);) last = line;
  const auto kept = nlohmann::json::parse(last);
  EXPECT_EQ(kept["rows"], 0);
  EXPECT_EQ(kept["ResLongAmount"], "1");
  EXPECT_EQ(kept["ResSymbol"], "ABC");
}

}  // namespace
}  // namespace velumar
