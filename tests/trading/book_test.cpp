#include "platform/virtual_platform.h"
#include "session/market_family.h"
#include "session/status_line.h"
#include "trading/position_book.h"
#include "trading/status_display.h"

namespace velumar {
namespace {

TEST(Book, TheMarketFamilyStandsInTheDirectorysName) {
  SimSession session;
  for (const auto& [directory, stock] :
       {std::pair("D:\\SET\\", true), {"D:\\ASSETS", true}, {"D:\\Set", false}, {"", false}}) {
    session.DataDir = directory;
    EXPECT_EQ(IsStockMarket(session), stock) << directory;
  }
}

TEST(Book, BothSidesAreValuedAtTheMarketPrice) {
  SimSession session;
  session.MarketPrice = 102;
  session.ProfitPerContract = 1000;
  session.Balance = 2000000;
  session.LAccum = 2;
  session.LAvgPrice = 100;
  session.SAccum = 3;
  session.SAvgPrice = 104;
  RevaluePositions(session);
  EXPECT_EQ(session.LUnrealisedMoney, 4000);
  EXPECT_EQ(session.SUnrealisedMoney, 6000);
  EXPECT_EQ(session.Portfolio, 2010000);
  session.LAccum = 0;
  session.MarketPrice = 5000;
  RevaluePositions(session);
  EXPECT_EQ(session.LUnrealisedMoney, 0) << "nothing held, whatever the average";
  EXPECT_LT(session.Portfolio, 0);
}

class StatusTest : public testing::Test {
 protected:
  StatusTest() {
    session.BarDate = {20070124, 20070125};
    session.BarTime = {0, 163000};
    session.BarOpen = {1, 1234.5F};
    session.BarHigh = {2, 1235};
    session.BarLow = {0.5F, 1230.125F};
    session.BarClose = {1.5F, 1.25F};
  }
  Label& Price() { return desktop.frmBigPrice().lblScore; }
  SimSession session;
  Desktop desktop;
  VirtualPlatform outside;
  StatusDisplay status{session, desktop, outside.locale};
};

TEST_F(StatusTest, FuturesShowBothSidesAndStocksOnlyTheLong) {
  session.LAccum = 2;
  session.LAvgPrice = 100.5F;
  session.UsedMargin = 41070;
  session.Portfolio = 2000000;
  status.ShowStatus();
  EXPECT_EQ(desktop.form3().Label6.Text(), "( L=2 Avg=100.5 )  ( S=0 Avg= 0.0 ) ");
  EXPECT_EQ(desktop.form3().lblinfo.Text(), "Initial Margin [41,070]   Porfolio [2,000,000]");
  session.DataDir = "/data/SET";
  session.LAccum = 0;
  session.LAvgPrice = 0;
  session.UsedMargin = 0;
  status.ShowStatus();
  EXPECT_EQ(desktop.form3().Label6.Text(), "(Buy:= 0 Shares   Avg. Buy:=0.0 ) ");
  EXPECT_EQ(desktop.form3().lblinfo.Text(), "Vol. Buy [0]   Porfolio [2,000,000]");
}

TEST_F(StatusTest, AFallIsRedAndAllElseBlue) {
  session.BarIndex = 1;
  status.ShowStatus();
  EXPECT_EQ(Price().ForeColour(), kRed);
  EXPECT_EQ(Price().Text(), "O: 1,234.50 H: 1,235.00 L: 1,230.13 C: 1.25");
  EXPECT_EQ(desktop.frmBigDateTime().lblScore.Text(), "1/25/2007 16:30");
  session.BarIndex = 0;
  status.ShowStatus();
  EXPECT_EQ(Price().ForeColour(), kBlue) << "the first bar has nothing to fall from";
  session.BarIndex = 1;
  session.BarClose[1] = 1.5F;
  status.ShowStatus();
  EXPECT_EQ(Price().ForeColour(), kBlue);
}

TEST_F(StatusTest, OnNoBarThePricesAreZeroAndTheMomentStays) {
  session.BarIndex = 1;
  status.ShowStatus();
  session.BarIndex = -1;
  status.ShowStatus();
  EXPECT_EQ(Price().Text(), "O: 0.00 H: 0.00 L: 0.00 C: 0.00");
  EXPECT_EQ(Price().ForeColour(), kRed);
  EXPECT_EQ(desktop.frmBigDateTime().lblScore.Text(), "1/25/2007 16:30");
}

TEST_F(StatusTest, TheScoreIsRedBelowZeroAlone) {
  const Label& score = desktop.frmBigScore().lblScore;
  for (const auto& [portfolio, text, colour] :
       {std::tuple(0.0F, "0", kBlue), {-1.0F, "-1", kRed}, {1e6F, "1,000,000", kBlue}}) {
    session.Portfolio = portfolio;
    status.ShowStatus();
    EXPECT_EQ(score.Text(), text);
    EXPECT_EQ(score.ForeColour(), colour);
  }
}

TEST_F(StatusTest, TheStatusLine) {
  SetStatusLine(desktop, "");
  EXPECT_EQ(desktop.form2().Label6.Text(), "Loading... Please wait.");
  session.Run.symbol = "ABC";
  session.BarIndex = 1;
  EXPECT_EQ(BarLine(session, outside.locale), "[ABC]  Date: 1/25/2007 16:30:00  Close: 1.25");
}

}  // namespace
}  // namespace velumar
