#include "support/session_fixture.h"

namespace velumar {
namespace {

using LoadBarsTest = SessionFixture;

TEST_F(LoadBarsTest, FindsSymbolAndIntervalAndReadsTheWholeSeries) {
  Store("ABC", DailyBars(300));
  Store("ABC", IntradayBars(90, 15), 15);
  Store("XYZ", DailyBars(1));
  Choose("", "D");
  std::string symbol = " abc ";
  EXPECT_EQ(loader.LoadBars(symbol, data), 299);
  EXPECT_EQ(symbol, "ABC");
  EXPECT_EQ(session.SymbolInterval, "-1");
  EXPECT_EQ(session.BarDate.size(), 300U);
  EXPECT_EQ(session.BarClose[299], DailyBars(300)[299].close);
  EXPECT_EQ(session.BarOpenInt[5], 7);

  Choose("", "15");
  EXPECT_EQ(loader.LoadBars(symbol, data), 89);
  EXPECT_EQ(session.SymbolInterval, "15");
  EXPECT_EQ(session.BarTime[1], 101500);

  Choose("", "D");
  symbol = "XYZ";
  EXPECT_EQ(loader.LoadBars(symbol, data), 0) << "one bar has last index 0";
  EXPECT_EQ(session.BarDate.size(), 1U);
}

TEST_F(LoadBarsTest, WhatIsNotFoundLeavesTheArraysAndTheLastIntervalLookedAt) {
  Store("ABC", DailyBars(30));
  Store("LAST", IntradayBars(60, 5), 5);
  Choose("", "D");
  std::string symbol = "ABC";
  loader.LoadBars(symbol, data);
  Choose("", "60");
  EXPECT_EQ(loader.LoadBars(symbol, data), 0);
  EXPECT_EQ(session.SymbolInterval, "5");
  EXPECT_EQ(session.BarDate.size(), 30U);
  EXPECT_EQ(loader.LoadBars(symbol, scratch.Sub("nowhere")), 0);
  EXPECT_EQ(session.BarDate.size(), 30U);
}

TEST_F(LoadBarsTest, TheLimitOfTheCursor) {
  Store("FITS", DailyBars(32768));
  Store("LONG", DailyBars(32769));
  Choose("", "D");
  std::string symbol = "FITS";
  EXPECT_EQ(loader.LoadBars(symbol, data), 32767);
  symbol = "LONG";
  EXPECT_EQ(loader.LoadBars(symbol, data), 0);
}

}  // namespace
}  // namespace velumar
