#include <algorithm>
#include <cmath>
#include <random>
#include <set>

#include "base/dates.h"
#include "marketdata/number_format.h"
#include "session/blind_draw.h"
#include "session/plan_levels.h"
#include "session/run_control.h"
#include "support/session_fixture.h"

namespace velumar {
namespace {

// Bars on any days since 1900, at prices of any size.
std::vector<Bar> AnyBars(std::mt19937& random, int count) {
  const auto roll = [&](double low, double high) {
    return std::uniform_real_distribution<>(low, high)(random);
  };
  std::vector<Bar> bars;
  const double size = std::pow(10, roll(-6, 9));
  std::int32_t day = DaysLater(19000102, static_cast<int>(roll(0, 40000)));
  for (int i = 0; i < count; ++i, day = DaysLater(day, static_cast<int>(roll(1, 5)))) {
    const double low = size * roll(0.5, 1);
    const double high = low * roll(1, 1.2);
    const double close = low + (high - low) * roll(0, 1);
    bars.push_back({day, 93000, static_cast<float>(low), static_cast<float>(high),
                    static_cast<float>(low), static_cast<float>(close), 1000, 7});
  }
  return bars;
}

TEST(BlindMask, KeepsWeekdaysAndShapeAndFitsADataFile) {
  std::mt19937 random(3);
  for (int i = 0; i < 300; ++i) {
    const BarArrays real = ArraysOf(AnyBars(random, 400));
    const std::size_t first = 249 + static_cast<std::size_t>(i) % 100;
    const auto mask = MaskOf(real, first, true);
    ASSERT_TRUE(mask) << i;
    BarArrays shown = real;
    mask->Hide(shown);
    EXPECT_EQ(shown.closes[first], 100.0F);
    EXPECT_TRUE(shown.dates[first] >= 20610103 && shown.dates[first] <= 20610109);
    EXPECT_TRUE(shown.times == real.times && shown.volumes == real.volumes);
    for (std::size_t bar = 0; bar < real.dates.size(); ++bar) {
      ASSERT_EQ(Weekday(shown.dates[bar]), Weekday(real.dates[bar]));
      ASSERT_EQ(mask->RealDate(shown.dates[bar]), real.dates[bar]);
      ASSERT_TRUE(StoredDate(shown.dates[bar])) << "a data file can hold it";
      ASSERT_TRUE(MbfFromFloat(shown.highs[bar]).value_or(0) != 0);
      ASSERT_TRUE(shown.lows[bar] <= shown.closes[bar] && shown.closes[bar] <= shown.highs[bar]);
      ASSERT_NEAR(shown.closes[bar] / 100, real.closes[bar] / real.closes[first], 1e-6);
    }
    EXPECT_EQ(MaskOf(real, first, false)->factor, 1);
  }
}

TEST(BlindMask, RefusesWhatItWouldDamage) {
  const auto masked = [](float first_close, float other, std::int32_t date = 20050103) {
    std::vector<Bar> bars = DailyBars(2);
    bars[0].close = first_close;
    bars[1].high = other;
    bars[1].date = date;
    const auto mask = MaskOf(ArraysOf(bars), 0, true);
    EXPECT_GT(mask.value_or(BlindMask()).factor, 0) << "it would turn the chart upside down";
    return mask.has_value();
  };
  EXPECT_TRUE(masked(-37.63F, 10)) << "oil has been there";
  EXPECT_FALSE(masked(0, 10));
  EXPECT_FALSE(masked(1e-20F, 1e20F)) << "too large for a data file";
  EXPECT_FALSE(masked(1e20F, 1e-20F)) << "would become 0";
  EXPECT_FALSE(masked(10, 10, 20050231)) << "no weekday";
}

TEST(BlindKey, ReadsBackAndShowsNothing) {
  const BlindKey key{"ABC", "Alpha & Co\xC3\xA9", 20050103, {1234, 100 / 23.45}, 0xBEEF};
  const std::string text = Encoded(key);
  EXPECT_EQ(Decoded(text), key);
  for (const char* secret : {"ABC", "Alpha", "2005", "1234", "4.26"}) {
    EXPECT_THAT(text, Not(HasSubstr(secret)));
  }
  for (std::size_t at = 0; at < text.size(); ++at) {
    std::string damaged = text;
    damaged[at] = damaged[at] == '0' ? '1' : '0';
    EXPECT_EQ(Decoded(damaged), std::nullopt) << at;
    EXPECT_EQ(Decoded(text.substr(0, at)), std::nullopt) << at;
  }
}

struct BlindRunTest : SessionFixture {
  BlindRunTest() {
    Store("ABC", DailyBars(400));
    Store("DEF", DailyBars(500));
    Store("FEW", DailyBars(350));
    Store("FAST", IntradayBars(900, 15), 15);
    session.DataDir = data;
    session.SimDir = store;
    run.blind = true;
    run.symbol = kAnySecurity;
    LedgerOpen(ledger, ":memory:");
  }
  BlindKey Draw(const BlindWish& wish, unsigned seed) {
    std::mt19937_64 random(seed);
    return DrawBlind(wish, cache, random);
  }

  RecordedCharts charts;
  LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
};

TEST_F(BlindRunTest, DrawsWhatASeedSaysAndNeverWhatWasShownLately) {
  std::set<std::pair<std::string, std::int32_t>> drawn;
  for (unsigned seed = 0; seed < 200; ++seed) {
    const BlindKey key = Draw({data, "", "D"}, seed);
    EXPECT_EQ(key, Draw({data, "", "D"}, seed));
    const int bars = key.symbol == "ABC" ? 400 : 500;
    EXPECT_TRUE(key.symbol == "ABC" || key.symbol == "DEF") << key.symbol;
    EXPECT_TRUE(key.start_day >= MadeDate(250) && key.start_day <= MadeDate(bars - 101));
    drawn.emplace(key.symbol, key.start_day);
    EXPECT_EQ(Draw({data, "", "D", true, {"ABC"}}, seed).symbol, "DEF");
    EXPECT_EQ(Draw({data, "", "D", true, {"DEF", "ABC", "ABC"}}, seed).symbol, "DEF");
    EXPECT_EQ(Draw({data, "ABC", "D", true, {"ABC"}}, seed).symbol, "ABC");
    EXPECT_EQ(Draw({data, "", "15"}, seed).symbol, "FAST");
  }
  EXPECT_GT(drawn.size(), 100U);
  const BlindWish only_start{
      .directory = data, .symbol = "FEW", .interval = "D", .bars_after = 350 - 251};
  EXPECT_EQ(Draw(only_start, 1).start_day, MadeDate(250)) << "just long enough";
  for (const BlindWish& none : {BlindWish{data, "FEW", "D"}, BlindWish{data, "", "60"}}) {
    try {
      Draw(none, 1);
      FAIL() << none.symbol;
    } catch (const MetaLibError& error) {
      EXPECT_THAT(error.what(), HasSubstr("250 bars before the start and 100 after it"));
    }
  }
}

TEST_F(BlindRunTest, StoreAndMemoryHoldOnlyTheMaskedSeries) {
  const std::filesystem::path charts_of_store = std::filesystem::path(store) / "MSSmart";
  for (const auto& folder : {charts_of_store, std::filesystem::path(data) / "MSSmart"}) {
    std::filesystem::create_directories(folder);
    WriteFile(folder / "chart.mwc", "ABC");
  }
  WriteFile(std::filesystem::path(store) / StoreFolder::kMark, "");
  std::string last;
  for (unsigned seed = 0; seed < 12; ++seed) {
    platform.random_seed = seed;
    run.interval = seed % 3 == 0 ? "15" : "D";
    session.Symbol = "ABC";
    RunControl control(session, run, run, platform, cache, ledger, charts);
    outside.events.SetOnPending([&] {
      if (session.BarIndex == session.FirstShownBar + 3) control.EndRun();
      for (int number = 1; number < 5; ++number) control.Compare(number);
    });
    ASSERT_TRUE(control.ClaimStore() && control.Start()) << outside.boxes.shown.back();
    EXPECT_EQ(session.Symbol + session.Run.symbol, "BLINDBLIND");
    EXPECT_EQ(session.BarClose.at(static_cast<std::size_t>(session.FirstShownBar)), 100.0F);
    EXPECT_EQ(run.start_day, 20000101) << "the entered day stays";
    const std::vector<SecurityInfo> listed = SecuritiesOf(store, cache);
    ASSERT_EQ(listed.size(), 1U);
    EXPECT_EQ(listed[0].symbol, "BLIND");
    EXPECT_THAT(listed[0].name, testing::StartsWith("BLIND "));
    EXPECT_EQ(listed[0].bars, session.BarIndex + 1);
    EXPECT_TRUE(std::filesystem::is_empty(charts_of_store));
    // The masked series has the moves of exactly one real one.
    const int interval = run.interval == "D" ? -1 : 15;
    const std::string symbol = interval == 15                ? "FAST"
                               : session.LastBarIndex == 399 ? "ABC"
                                                             : "DEF";
    EXPECT_TRUE(interval == 15 || std::exchange(last, symbol) != symbol) << "the two in turn";
    const std::vector<Bar> real = ReadBars(data, symbol, interval);
    const std::vector<Bar> shown = ReadBars(store, "BLIND", interval);
    for (std::size_t i = 1; i < shown.size(); ++i) {
      ASSERT_NEAR(shown[i].close / shown[0].close, real[i].close / real[0].close, 1e-5);
      ASSERT_EQ(DayNumber(shown[i].date) - DayNumber(shown[0].date),
                DayNumber(real[i].date) - DayNumber(real[0].date));
    }
    // The next run is what is entered again.
    run.blind = false;
    ASSERT_TRUE(control.ClaimStore());
    EXPECT_EQ(session.Symbol, "ABC");
    run.blind = true;
  }
}

// Without a ledger. The trader holds both sides and has stepped back before the end.
TEST_F(BlindRunTest, ARevealedRunKeepsItsMoneyOnBothSides) {
  struct WatchingCharts : RecordedCharts {
    void RefreshCharts() override { on_refresh(); }
    std::function<void()> on_refresh = [] {};
  } watching;
  LedgerClose(ledger);
  platform.random_seed = 4;
  RunControl control(session, run, run, platform, cache, ledger, watching);
  outside.events.SetOnPending([&] {
    if (session.BarIndex == session.FirstShownBar + 5) control.EndRun();
  });
  ASSERT_TRUE(control.ClaimStore() && control.Start());
  const std::int32_t newest = session.BarDate.at(static_cast<std::size_t>(session.NewestShownBar));
  control.GoPrevious();
  const double shown = session.MarketPrice;
  session.LAvgPrice = session.SAvgPrice = session.MarketPrice;
  session.ProfitPerContract = 10;
  LedgerPlan plan;
  plan.stop = plan.target = shown;
  session.Plans.SetNext(plan);
  session.Plans.Add({.price = shown, .held = 1, .plan = plan});
  std::size_t levels = 0;
  watching.on_refresh = [&] {
    const float real = session.MarketPrice;
    EXPECT_TRUE(real != shown && session.LAvgPrice == real && session.SAvgPrice == real);
    EXPECT_NEAR(session.ProfitPerContract * real, 10 * shown, 1e-3);
    for (const PlanLevel& level : PlanLevels(session)) EXPECT_NEAR(level.price, real, 1e-4);
    levels += PlanLevels(session).size();
  };
  const auto revealed = control.Reveal();
  ASSERT_TRUE(revealed && levels == 4);
  EXPECT_EQ(revealed->last_day, revealed->key.mask.RealDate(newest)) << "it was seen";
}

}  // namespace
}  // namespace velumar
