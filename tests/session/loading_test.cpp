#include "marketdata/metalib_error.h"
#include "support/session_fixture.h"

namespace velumar {
namespace {

using LoadBarsTest = SessionFixture;

TEST_F(LoadBarsTest, FindsSymbolAndIntervalAndReadsTheWholeSeries) {
  Store("ABC", DailyBars(300));
  Store("ABC", IntradayBars(90, 15), 15);
  Choose("ABC", "D");
  EXPECT_EQ(loader.LoadBars(data), 299);
  EXPECT_EQ(session.SymbolInterval, "-1");
  EXPECT_EQ(session.BarDate.size(), 300U);
  EXPECT_EQ(session.BarClose[299], DailyBars(300)[299].close);
  EXPECT_EQ(session.BarOpenInt[5], 7);
  Choose("ABC", "15");
  EXPECT_EQ(loader.LoadBars(data), 89);
  EXPECT_EQ(session.SymbolInterval, "15");
  EXPECT_EQ(session.BarTime[1], 101500);
}

TEST_F(LoadBarsTest, WhatCannotBeLoadedIsAnErrorThatLeavesTheArrays) {
  Store("ABC", DailyBars(30));
  Store("FITS", DailyBars(32768));
  Store("LONG", DailyBars(32769));
  Choose("ABC", "D");
  loader.LoadBars(data);
  Choose("ABC", "60");
  EXPECT_THROW(loader.LoadBars(data), MetaLibError);
  Choose("ABC", "D");
  EXPECT_THROW(loader.LoadBars(scratch.Sub("nowhere")), MetaLibError);
  Choose("LONG", "D");
  EXPECT_THROW(loader.LoadBars(data), MetaLibError);
  EXPECT_EQ(session.BarDate.size(), 30U);
  Choose("FITS", "D");
  EXPECT_EQ(loader.LoadBars(data), 32767);
}

}  // namespace
}  // namespace velumar
