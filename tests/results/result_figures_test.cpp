#include "results/result_figures.h"

#include <map>

#include "results/portfolio_chart.h"

namespace velumar {
namespace {

class ResultFiguresTest : public testing::Test {
 protected:
  ResultFiguresTest() { LedgerOpen(ledger, ":memory:"); }

  // An entry where amount is above 0, else an offset that realised points.
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

TEST_F(ResultFiguresTest, FiguresCountTheRowsThatThereAre) {
  EXPECT_EQ(Labels()["ResPortfolio"], "");
  EXPECT_EQ(Labels()["ResTotalComm"], "0");
  Order("2007-01-25 16:30:00", true, 2, 0, 0, 1500000);
  Order("2007-01-24 10:00:00", false, 3, 0, 0, 1);
  Order("2007-01-25 16:30:00", true, 0, -7.25, -7.25, 1492750.5);
  auto labels = Labels();
  EXPECT_EQ(labels["ResSymbol"], "ABC");
  EXPECT_EQ(labels["ResInterval"], "5");
  EXPECT_EQ(labels["ResStartDate"], "<2007-01-24>");
  EXPECT_EQ(labels["ResStartTime"], "10:00:00");
  EXPECT_EQ(labels["ResEndDate"], "<2007-01-25>");
  EXPECT_EQ(labels["ResPortfolio"], "1,492,751");  // the later of two orders on one bar
  EXPECT_EQ(labels["ResLongAmount"], "2");
  EXPECT_EQ(labels["ResShortAmount"], "3");
  EXPECT_EQ(labels["ResLongProfitLoss"], "-7.25");
  EXPECT_EQ(labels["ResLongComm"], "100");  // the offset's isn't in it
  EXPECT_EQ(labels["ResTotalComm"], "200");

  LedgerDeleteAll(ledger, kPortfolioTable);
  EXPECT_FALSE(LoadResultFigures(ledger).any_orders);
  Order("2007-02-01 09:00:00", false, 1, 0, 0, 5);
  labels = Labels();
  EXPECT_EQ(labels["ResLongComm"], "0");  // no long entry, and none of the rows before
  EXPECT_EQ(labels["ResTotalComm"], "100");
}

TEST_F(ResultFiguresTest, WhatRoundingLeavesOfASumReadsZero) {
  for (const double points : {0.1, 0.2, -0.3}) Order("2007-01-25 16:30:00", true, 0, points, 0, 1);
  EXPECT_EQ(Labels()["ResLongProfitLoss"], "0");
}

TEST_F(ResultFiguresTest, TheChartBeginsWithTheFirstClosedTrade) {
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

// Closed at the entry price, so that no row carries points.
TEST_F(ResultFiguresTest, TheChartShowsTradesWithoutPoints) {
  Order("2007-01-25 16:30:00", true, 2, 0, 0, 10);
  Order("2007-01-26 16:30:00", true, 0, 0, 0, 10);
  Order("2007-01-27 16:30:00", false, 1, 0, 0, 10);
  Order("2007-01-28 16:30:00", false, 0, 0, 0, 10);
  const PortfolioChart chart = LoadPortfolioChart(ledger);
  ASSERT_EQ(chart.rows.size(), 2U);
  EXPECT_EQ(chart.rows[1].label, "28-Jan-07 16:30");
  EXPECT_EQ(chart.hint, "");
}

}  // namespace
}  // namespace velumar
