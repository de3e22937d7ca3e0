#include "platform/virtual_platform.h"
#include "session/market_family.h"
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

TEST_F(StatusTest, FallsAndLossesAreRed) {
  const auto expect = [&](std::uint32_t price, std::uint32_t score, const char* moment) {
    status.ShowStatus();
    EXPECT_EQ(Price().ForeColour(), price);
    EXPECT_EQ(desktop.frmBigScore().lblScore.ForeColour(), score);
    EXPECT_EQ(desktop.frmBigDateTime().lblScore.Text(), moment);
  };
  session.BarIndex = 1;
  expect(kRed, kBlue, "1/25/2007 16:30");
  EXPECT_EQ(Price().Text(), "O: 1,234.50 H: 1,235.00 L: 1,230.13 C: 1.25");
  session.BarIndex = -1;
  session.Portfolio = -1;
  expect(kRed, kRed, "1/25/2007 16:30");
  EXPECT_EQ(Price().Text(), "O: 0.00 H: 0.00 L: 0.00 C: 0.00");
  session.BarIndex = 0;
  session.Portfolio = 1e6F;
  expect(kBlue, kBlue, "1/24/2007 00:00");
  EXPECT_EQ(desktop.frmBigScore().lblScore.Text(), "1,000,000");
  session.BarIndex = 1;
  session.BarClose[1] = session.BarClose[0];
  expect(kBlue, kBlue, "1/25/2007 16:30");
}

}  // namespace
}  // namespace velumar
