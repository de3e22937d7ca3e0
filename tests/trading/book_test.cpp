#include "platform/virtual_platform.h"
#include "support/recorded_run.h"
#include "trading/account.h"
#include "trading/status_texts.h"

namespace velumar {
namespace {

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
  const StatusTexts& Status() {
    ShowStatus(session, run, outside.locale);
    return run.status;
  }

  SimSession session;
  RecordedRun run;
  VirtualPlatform outside;
};

TEST_F(StatusTest, FallsAndLossesAreMarked) {
  session.BarIndex = 1;
  EXPECT_EQ(Status().prices, "O: 1,234.50 H: 1,235.00 L: 1,230.13 C: 1.25");
  EXPECT_EQ(Status().moment->text, "1/25/2007 16:30");
  EXPECT_TRUE(Status().moment->fell);
  session.BarClose[1] = session.BarClose[0];
  EXPECT_FALSE(Status().moment->fell) << "an unchanged close";
  session.BarIndex = 0;
  EXPECT_FALSE(Status().moment->fell) << "nothing to have fallen from";
  session.BarIndex = -1;
  EXPECT_FALSE(Status().moment) << "the last one stays";
  for (const float portfolio : {0.0F, -1.0F, 1e6F}) {
    session.Portfolio = portfolio;
    EXPECT_EQ(Status().loss, portfolio < 0) << portfolio;
  }
  EXPECT_EQ(Status().portfolio, "1,000,000");
}

TEST_F(StatusTest, AnAccountStartsWithWhatIsEntered) {
  session.LAccum = 2;
  session.UsedMargin = 300;
  StartAccount(session, run);
  EXPECT_EQ(Status().positions, "( L=0 Avg=0.0 )  ( S=0 Avg= 0.0 ) ");
  EXPECT_EQ(Status().account, "Initial Margin [0]   Porfolio [2,000,000]");
}

}  // namespace
}  // namespace velumar
