#include "results/result_figures.h"

#include <map>

#include "results/figure_texts.h"
#include "results/portfolio_chart.h"

namespace velumar {
namespace {

class ResultFiguresTest : public testing::Test {
 protected:
  ResultFiguresTest() { LedgerOpen(ledger, ":memory:"); }

  // An entry if amount is above 0, otherwise an offset that realised points.
  void Order(const std::string& moment, bool is_long, double amount, double points,
             double balance_point, double portfolio) {
    std::vector<LedgerValue> row(22, LedgerValue(0.0));
    row[1] = "ABC";
    row[2] = 5.0;
    row[3] = moment.substr(0, 10);
    row[4] = moment.substr(11);
    row[is_long ? 8 : 14] = amount;
    row[is_long ? 9 : 15] = amount > 0 ? 0.0 : 1.0;
    row[is_long ? 12 : 18] = points;
    row[19] = balance_point;
    row[20] = 100.0;
    row[21] = portfolio;
    LedgerInsertOrder(ledger, row, {});
  }
  std::map<std::string_view, std::string> Labels() {
    std::map<std::string_view, std::string> labels;
    for (const ResultFigureText& text : ResultFigureTexts(LoadResultFigures(ledger))) {
      labels[text.field] = text.text;
    }
    return labels;
  }

  LedgerConnection ledger{[](std::string_view iso) { return "<" + std::string(iso) + ">"; }};
};

TEST_F(ResultFiguresTest, CountTheRowsOfTheRunOnly) {
  EXPECT_EQ(Labels()["ResPortfolio"], "");
  EXPECT_EQ(Labels()["ResTotalComm"], "0");
  Order("2007-01-25 16:30:00", true, 2, 0, 0, 1500000);
  Order("2007-01-24 10:00:00", false, 3, 0, 0, 1);
  Order("2007-01-25 16:30:00", true, 0, -7.25, -7.25, 1492750.5);
  const std::map<std::string_view, std::string> expected{
      {"ResSymbol", "ABC"},
      {"ResInterval", "5"},
      {"ResStartDate", "<2007-01-24>"},
      {"ResStartTime", "10:00:00"},
      {"ResEndDate", "<2007-01-25>"},
      {"ResEndTime", "16:30:00"},
      {"ResPortfolio", "1,492,751"},  // the later of two orders on one bar
      {"ResLongAmount", "2"},
      {"ResShortAmount", "3"},
      {"ResLongProfitLoss", "-7.25"},
      {"ResShortProfitLoss", "0"},
      {"ResLongComm", "100"},  // without the offset's
      {"ResShortComm", "100"},
      {"ResTotalComm", "200"}};
  EXPECT_EQ(Labels(), expected);

  LedgerDeleteAll(ledger, kPortfolioTable);
  EXPECT_FALSE(LoadResultFigures(ledger).any_orders);
  Order("2007-02-01 09:00:00", false, 1, 0, 0, 5);
  EXPECT_EQ(Labels()["ResLongComm"], "0");  // no long entry, and none of the earlier rows
  EXPECT_EQ(Labels()["ResTotalComm"], "100");
}

TEST_F(ResultFiguresTest, RoundHalvesAwayFromZeroAndResiduesToZero) {
  int day = 10;
  for (const auto& [money, shown] :
       std::vector<std::pair<double, std::string>>{{1492750.25, "1,492,750"},
                                                   {1492750.5, "1,492,751"},
                                                   {-1492750.25, "-1,492,750"},
                                                   {-1492750.5, "-1,492,751"},
                                                   {1e12, "1,000,000,000,000"}}) {
    Order("2007-01-" + std::to_string(day++) + " 16:30:00", true, 1, 0, 0, money);
    EXPECT_EQ(Labels()["ResPortfolio"], shown);
  }
  for (const double points : {0.1, 0.2, -0.3}) Order("2007-01-25 16:30:00", true, 0, points, 0, 1);
  EXPECT_EQ(Labels()["ResLongProfitLoss"], "0");
}

TEST(FigureTexts, RoundAndGroup) {
  for (const auto& [money, text] :
       std::map<double, std::string>{{0.0049, "0.00"},
                                     {0.005, "0.01"},
                                     {-0.0049, "0.00"},
                                     {-0.005, "-0.01"},
                                     {2.675, "2.68"},
                                     {-1e15, "-1,000,000,000,000,000.00"},
                                     {1e15, "1,000,000,000,000,000.00"}}) {
    EXPECT_EQ(MoneyText(money), text) << money;
  }
  EXPECT_EQ(PercentText(0.58334), "58.33 %");
  EXPECT_EQ(PercentText(0.58335), "58.34 %");
  EXPECT_EQ(PercentText(std::nullopt), "-");
  for (const auto& [quantity, text] : std::map<double, std::string>{{0, "0"},
                                                                    {0.125, "0.13"},
                                                                    {0.1249, "0.12"},
                                                                    {1000, "1000"},
                                                                    {12.5, "12.5"},
                                                                    {1e7, "10000000"}}) {
    EXPECT_EQ(QuantityText(quantity), text);
  }
  const std::vector<std::string> fields{"a", "b,c", "d\"e", "f\ng", ""};
  EXPECT_EQ(CsvLine(fields), "a,\"b,c\",\"d\"\"e\",\"f\ng\",\n");
}

TEST_F(ResultFiguresTest, TheChartStartsAtTheFirstClosedTrade) {
  EXPECT_EQ(LoadPortfolioChart(ledger).hint, "No closed trades yet");
  Order("2007-01-25 16:30:00", true, 2, 0, 0, 10);
  Order("2007-01-26 09:05:00", true, 0, 4, 4, 14.5);
  Order("2007-01-26 09:05:00", true, 1, 0, 4, 14.25);
  const auto rows = LoadPortfolioChart(ledger).rows;
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].label, "26-Jan-07 09:05");
  EXPECT_EQ(rows[0].value, 14.5F);
  EXPECT_EQ(rows[1].value, 14.25F);
}

// Closed at the entry price, so no row has points.
TEST_F(ResultFiguresTest, TheChartShowsTradesWithoutPoints) {
  for (const auto& [day, amount] : {std::pair(25, 2), {26, 0}, {27, 1}, {28, 0}}) {
    Order("2007-01-" + std::to_string(day) + " 16:30:00", day < 27, amount, 0, 0, 10);
  }
  const PortfolioChart chart = LoadPortfolioChart(ledger);
  ASSERT_EQ(chart.rows.size(), 2U);
  EXPECT_EQ(chart.rows[1].label, "28-Jan-07 16:30");
  EXPECT_EQ(chart.hint, "");
}

}  // namespace
}  // namespace velumar
