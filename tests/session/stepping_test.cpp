#include <random>
#include <set>

#include "marketdata/metalib_error.h"
#include "support/session_fixture.h"

namespace velumar {
namespace {

class SteppingTest : public SessionFixture {
 protected:
  void Prepare(const std::vector<Bar>& bars, int interval, int start_bar) {
    Store("ABC", bars, interval);
    CopyIndexes();
    Choose("ABC", interval == -1 ? "D" : std::to_string(interval),
           bars[static_cast<std::size_t>(start_bar)].date);
    ASSERT_EQ(working_store.PrepareStore(), -1);
    session.BarIndex = loader.LoadBars(store);
    loader.LoadBars(data);
  }
  // The indexes that the store holds.
  std::set<int> Held(int interval = -1) {
    std::set<int> held;
    for (const Bar& bar : StoreBars(interval)) held.insert(static_cast<int>(bar.volume) - 1000);
    return held;
  }
  static std::set<int> UpTo(int last) {
    std::set<int> all;
    for (int i = 0; i <= last; ++i) all.insert(i);
    return all;
  }
  // Where a step from `bar` ends.
  int After(void (BarStepper::*step)(std::int16_t&), std::int16_t bar) {
    (stepper.*step)(bar);
    return bar;
  }
  int Feed(std::int16_t bar) { return After(&BarStepper::FeedBar, bar); }
  int Unfeed(std::int16_t bar) { return After(&BarStepper::UnfeedBar, bar); }
  int FastFeed(std::int16_t bar) { return After(&BarStepper::FastFeed, bar); }
  int FastUnfeed(std::int16_t bar) { return After(&BarStepper::FastUnfeed, bar); }
};

TEST_F(SteppingTest, ForwardWritesAndSetsPriceAndMoment) {
  Prepare(DailyBars(120), -1, 60);
  EXPECT_EQ(session.BarIndex, 59);
  EXPECT_EQ(Feed(59), 60);
  EXPECT_EQ(Held(), UpTo(60));
  EXPECT_EQ(session.MarketPrice, session.BarClose[60]);
  EXPECT_EQ(session.CurrentDate, std::to_string(session.BarDate[60]));
  EXPECT_EQ(session.CurrentTime, "0");
  EXPECT_EQ(FastFeed(60), 90);
  EXPECT_EQ(Held(), UpTo(90));
  EXPECT_EQ(FastFeed(90), 119) << "29 bars are left";
  EXPECT_EQ(Held(), UpTo(119));
  EXPECT_EQ(Feed(119), 119) << "there is no bar after the last one";
  EXPECT_EQ(FastFeed(119), 119);
  EXPECT_EQ(Held(), UpTo(119));
}

TEST_F(SteppingTest, BackwardTakesOutAndLeavesTheMoment) {
  Prepare(DailyBars(120), -1, 101);
  Feed(100);
  EXPECT_EQ(Unfeed(101), 100);
  EXPECT_EQ(Held(), UpTo(100));
  EXPECT_EQ(session.MarketPrice, session.BarClose[100]);
  EXPECT_EQ(session.CurrentDate, std::to_string(session.BarDate[101]));
  EXPECT_EQ(FastUnfeed(100), 70);
  EXPECT_EQ(Held(), UpTo(70));
}

TEST_F(SteppingTest, BarZeroIsInTheStoreUnlessTheIndexIsBeforeIt) {
  Prepare(DailyBars(120), -1, 0);
  EXPECT_EQ(session.BarIndex, 0) << "a start on the first bar";
  EXPECT_EQ(Held(), UpTo(0));
  EXPECT_EQ(FastFeed(0), 30);
  EXPECT_EQ(FastUnfeed(30), 0);
  EXPECT_EQ(Held(), UpTo(0));
  session.MarketPrice = 5;
  EXPECT_EQ(Unfeed(0), -1);
  EXPECT_EQ(session.MarketPrice, 5) << "there is no other price";
  EXPECT_EQ(Unfeed(-1), -1);
  EXPECT_TRUE(Held().empty());
  EXPECT_EQ(FastUnfeed(-1), 0);
  EXPECT_EQ(Held(), UpTo(0));
  Unfeed(0);
  EXPECT_EQ(Feed(-1), 0);
  EXPECT_EQ(Held(), UpTo(0));
  Unfeed(0);
  EXPECT_EQ(FastFeed(-1), 30);
  EXPECT_EQ(Held(), UpTo(30));
}

TEST_F(SteppingTest, AnIntradayStepTakesOneBarOfADay) {
  Prepare(IntradayBars(100, 15), 15, 40);
  EXPECT_EQ(Feed(39), 40);
  EXPECT_EQ(Feed(40), 41);
  EXPECT_EQ(Unfeed(41), 40);
  EXPECT_EQ(Held(15), UpTo(40));
  EXPECT_EQ(session.CurrentTime, "101500");
}

TEST_F(SteppingTest, AMissingStoreIsAnErrorThatMovesNothing) {
  Prepare(DailyBars(120), -1, 60);
  std::filesystem::remove_all(store);
  const float price = session.MarketPrice;
  std::int16_t bar = 59;
  for (const auto step : {&BarStepper::FeedBar, &BarStepper::FastFeed, &BarStepper::UnfeedBar,
                          &BarStepper::FastUnfeed}) {
    EXPECT_THROW((stepper.*step)(bar), MetaLibError);
  }
  EXPECT_EQ(bar, 59);
  EXPECT_EQ(session.MarketPrice, price);
}

}  // namespace
}  // namespace velumar
