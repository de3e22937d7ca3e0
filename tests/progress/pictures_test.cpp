#include "progress/pictures.h"

#include <gmock/gmock.h>

#include <numeric>
#include <sstream>

#include "support/simulated_traders.h"

namespace velumar {
namespace {

using testing::ElementsAre;

// A trade of `held` bars on one contract of 10 a point, with costs of 10 and a risk of 20.
PlayedTrade Trade(int session, int held, double money) {
  PlayedTrade trade = Traded(session, 3, 3 + held, money, 10);
  trade.quantity = 1;
  trade.money_per_point = 10;
  trade.risk = 20;
  return trade;
}

NumberPicture Drawn(ProgressPicture kind, const Played& played) {
  Selection all(played.trades.size());
  std::iota(all.begin(), all.end(), 0);
  return PictureOf(kind, played, all, ChainEquity(played, all), nullptr);
}

// The bars of a pane as "x y", gains first.
std::vector<std::string> Bars(const NumberPicture::Pane& pane) {
  std::vector<std::string> bars;
  for (const NumberPicture::Series& series : pane.series) {
    for (std::size_t i = 0; i < series.x.size(); ++i) {
      std::ostringstream bar;
      bar << series.x[i] << ' ' << series.y[i];
      bars.push_back(bar.str());
    }
  }
  return bars;
}

// Results of 2 R, -1 R and 1 R, and one without a planned stop, which has none.
TEST(Pictures, ShowEachTradeInItsGroupNetOfCosts) {
  Played played{{"ABC"}, {"gap"}, std::vector<PlayedSession>(1), {}};
  played.trades = {Trade(0, 1, 50), Trade(0, 2, -10), Trade(0, 3, 30), Trade(0, 0, 110)};
  std::vector<PlayedTrade>& trades = played.trades;
  for (const std::size_t place : {0U, 1U, 3U}) trades[place].setup = 0;
  for (const std::size_t place : {2U, 3U}) trades[place].weekday = 4;
  for (const std::size_t place : {0U, 1U}) trades[place].confidence = 5;
  trades[2].confidence = 1;
  trades[3].risk = 0;
  trades[0].adverse = 0.5F;
  trades[0].favourable = 6.0F;

  const NumberPicture setups = Drawn(ProgressPicture::kBySetup, played);
  EXPECT_THAT(setups.labels, ElementsAre("none (1)", "gap (2)"));
  EXPECT_THAT(Bars(setups.panes.at(0)), ElementsAre("0 1", "1 0.5"));
  const NumberPicture days = Drawn(ProgressPicture::kByWeekday, played);
  EXPECT_THAT(days.labels, ElementsAre("Mon (2)", "Fri (1)"));
  EXPECT_THAT(Bars(days.panes.at(0)), ElementsAre("0 0.5", "1 1"));
  const NumberPicture holding = Drawn(ProgressPicture::kByHolding, played);
  EXPECT_THAT(holding.labels, ElementsAre("1 (1)", "2 (1)", "3-4 (1)"));
  EXPECT_THAT(Bars(holding.panes.at(0)), ElementsAre("0 2", "2 1", "1 -1"));
  const NumberPicture confidence = Drawn(ProgressPicture::kByConfidence, played);
  EXPECT_THAT(confidence.labels, ElementsAre("1 (1)", "5 (2)"));
  EXPECT_THAT(Bars(confidence.panes.at(0)), ElementsAre("0 100", "1 50")) << "won, percent";
  EXPECT_THAT(Bars(confidence.panes.at(1)), ElementsAre("0 1", "1 0.5"));
  EXPECT_THAT(Bars(Drawn(ProgressPicture::kResults, played).panes.at(0)),
              ElementsAre("1.25 1", "2.25 1", "-0.75 1"));
  EXPECT_THAT(Bars(Drawn(ProgressPicture::kExcursions, played).panes.at(0)),
              ElementsAre("-0.25 2", "3 2"));
  EXPECT_EQ(Drawn(ProgressPicture::kByHour, played).hint, "Daily bars have no hours");
  trades[0].risk = trades[1].risk = 0;  // few plans: in money
  EXPECT_THAT(Bars(Drawn(ProgressPicture::kBySetup, played).panes.at(0)),
              ElementsAre("0 20", "1 40"));
}

TEST(Pictures, OfExtremeResultsAndOfNone) {
  Played played{{"ABC"}, {}, std::vector<PlayedSession>(1), {}};
  played.trades = {Trade(0, 1, 5000), Trade(0, 1, -5000), Trade(0, 2, 10)};
  EXPECT_THAT(Bars(Drawn(ProgressPicture::kResults, played).panes.at(0)),
              ElementsAre("0.25 1", "15.25 1", "-14.75 1"))
      << "15 R at most, on both sides";
  EXPECT_THAT(Drawn(ProgressPicture::kByHolding, played).panes.at(0).series.at(0).x, ElementsAre(1))
      << "break-even is no loss";
}

TEST(Pictures, FollowTheAccountAndTheSessions) {
  Played played{{"ABC"}, {}, {}, {}};
  for (int session = 0; session < 6; ++session) {
    PlayedSession& one = played.sessions.emplace_back();
    one.starting_money = 1000;
    played.trades.push_back(Trade(session, 1, session == 0 ? -10 : 10 + 20 * session));
  }
  const NumberPicture sessions = Drawn(ProgressPicture::kBySession, played);
  ASSERT_EQ(sessions.panes.at(0).series.size(), 3U) << "gains, losses and their average";
  EXPECT_THAT(sessions.panes[0].series[0].y, ElementsAre(1, 2, 3, 4, 5));
  EXPECT_THAT(sessions.panes[0].series[1].y, ElementsAre(-1));
  EXPECT_THAT(sessions.panes[0].series[2].x, ElementsAre(4, 5));
  EXPECT_THAT(sessions.panes[0].series[2].y, ElementsAre(1.8, 3));
  const NumberPicture equity = Drawn(ProgressPicture::kEquity, played);
  EXPECT_THAT(equity.panes.at(0).series.at(0).y,
              ElementsAre(1000, 980, 1000, 1040, 1100, 1180, 1280));
  EXPECT_THAT(equity.panes.at(1).series.at(0).y, ElementsAre(0, -20, 0, 0, 0, 0, 0));
}

}  // namespace
}  // namespace velumar
