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
    index = std::max<std::int16_t>(loader.LoadBars(session.Symbol, store), 0);
    loader.LoadBars(session.Symbol, data);
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
  int Feed(int bar) {
    stepper.FeedBar(bar, session.Symbol);
    return bar;
  }
  int Unfeed(std::int16_t bar) {
    stepper.UnfeedBar(bar, session.Symbol);
    return bar;
  }
  int FastFeed(std::int16_t bar) {
    const std::int16_t result = stepper.FastFeed(bar, session.Symbol);
    EXPECT_EQ(result, bar);
    return result;
  }
  int FastUnfeed(std::int16_t bar) { return stepper.FastUnfeed(bar, session.Symbol); }

  std::int16_t index = 0;
};

TEST_F(SteppingTest, ForwardWritesAndSetsPriceAndMoment) {
  Prepare(DailyBars(120), -1, 60);
  EXPECT_EQ(index, 59);
  EXPECT_EQ(Feed(60), 60);
  EXPECT_EQ(Held(), UpTo(60));
  EXPECT_EQ(session.MarketPrice, session.BarClose[60]);
  EXPECT_EQ(session.CurrentDate, std::to_string(session.BarDate[60]));
  EXPECT_EQ(session.CurrentTime, "0");
  EXPECT_EQ(FastFeed(60), 90);
  EXPECT_EQ(Held(), UpTo(90));
  EXPECT_EQ(FastFeed(90), 119) << "29 bars are left";
  EXPECT_EQ(Held(), UpTo(119));
  EXPECT_EQ(Feed(120), 119) << "behind the last bar nothing is written";
  EXPECT_EQ(FastFeed(119), 119);
  EXPECT_EQ(Held(), UpTo(119));
}

TEST_F(SteppingTest, BackwardTakesOutAndLeavesTheMoment) {
  Prepare(DailyBars(120), -1, 101);
  Feed(101);
  EXPECT_EQ(Unfeed(101), 100);
  EXPECT_EQ(Held(), UpTo(100));
  EXPECT_EQ(session.MarketPrice, session.BarClose[100]);
  EXPECT_EQ(session.CurrentDate, std::to_string(session.BarDate[101]));
  EXPECT_EQ(FastUnfeed(100), 70);
  EXPECT_EQ(Held(), UpTo(70));
  EXPECT_EQ(FastUnfeed(10), 0);
}

TEST_F(SteppingTest, TheEdgesAtTheFirstBar) {
  Prepare(DailyBars(120), -1, 10);
  EXPECT_EQ(FastUnfeed(9), 0);
  EXPECT_EQ(Held(), UpTo(0)) << "bar 0 stays";
  const float price = session.MarketPrice;
  EXPECT_EQ(Unfeed(0), -1);
  EXPECT_TRUE(Held().empty());
  EXPECT_EQ(session.MarketPrice, price);
  EXPECT_EQ(Unfeed(-1), -1);
  EXPECT_TRUE(Held().empty());
  EXPECT_EQ(FastUnfeed(-1), 0);
  EXPECT_TRUE(Held().empty());
  EXPECT_EQ(Feed(-1), 0);
  EXPECT_EQ(Held(), UpTo(0));
  Unfeed(0);
  EXPECT_EQ(FastFeed(-1), 30) << "counts from bar 0, which stays out";
  std::set<int> without_first = UpTo(30);
  without_first.erase(0);
  EXPECT_EQ(Held(), without_first);
}

TEST_F(SteppingTest, AnIntradayStepTakesOneBarOfADay) {
  Prepare(IntradayBars(100, 15), 15, 40);
  EXPECT_EQ(Feed(40), 40);
  EXPECT_EQ(Feed(41), 41);
  EXPECT_EQ(Unfeed(41), 40);
  EXPECT_EQ(Held(15), UpTo(40));
  EXPECT_EQ(session.CurrentTime, "101500");
}

TEST_F(SteppingTest, AMissingStoreIsAnErrorThatMovesNothing) {
  Prepare(DailyBars(120), -1, 60);
  std::filesystem::remove_all(store);
  const float price = session.MarketPrice;
  std::int16_t bar = 59;
  EXPECT_THROW(stepper.FastFeed(bar, session.Symbol), MetaLibError);
  EXPECT_THROW(stepper.UnfeedBar(bar, session.Symbol), MetaLibError);
  EXPECT_THROW(Feed(60), MetaLibError);
  EXPECT_EQ(bar, 59);
  EXPECT_EQ(session.MarketPrice, price);
}

}  // namespace
}  // namespace velumar
