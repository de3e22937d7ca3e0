#include <random>

#include "base/number_text.h"
#include "marketdata/index_cache.h"
#include "results/run_record.h"
#include "session/played_trades.h"
#include "support/order_fixture.h"
#include "support/scratch.h"

namespace velumar {
namespace {

// A session of a stored series, with its ledger in memory.
struct PlayedTradesTest : OrderFixture {
  PlayedTradesTest() { run.vat = "0"; }

  void Load(unsigned seed) {
    random.seed(seed);
    std::vector<Bar> bars = DailyBars(kBars);
    for (Bar& bar : bars) {
      bar.low = static_cast<float>(Roll(9000, 11000)) / 100;
      bar.high = bar.low + static_cast<float>(Roll(0, 500)) / 100;
      bar.close = bar.open = Roll(0, 1) == 0 ? bar.low : bar.high;
    }
    StoreSecurity(data, {"ABC", "ABC name", -1}, bars, cache);
    session.ForgetBars();
    static_cast<Book&>(session) = {};
    Account(100, 1000, "100", 1e8F);
    LedgerSession begun;
    begun.directory = data;
    session.SessionNumber = LedgerBeginRun(
        ledger, {data, "ABC", "D", "20000101", "0", "futures", 1e8, 100, 1000}, begun);
    for (const Bar& bar : bars) {
      session.BarDate.push_back(bar.date);
      session.BarTime.push_back(bar.time);
      session.BarOpen.push_back(bar.open);
      session.BarHigh.push_back(bar.high);
      session.BarLow.push_back(bar.low);
      session.BarClose.push_back(bar.close);
      session.BarVolume.push_back(bar.volume);
      session.BarOpenInt.push_back(bar.open_interest);
      session.BarChecks.push_back(0);
    }
    session.FirstShownBar = session.NewestShownBar = session.BarIndex = 20;
  }
  int Roll(int low, int high) { return std::uniform_int_distribution<>(low, high)(random); }
  // Orders at a few bars, mostly one after the other.
  void Play(int bars) {
    for (int i = 0; i < bars; ++i) {
      const int bar = std::clamp(session.BarIndex + Roll(-1, 4), 20, kBars - 1);
      session.BarIndex = static_cast<std::int16_t>(bar);
      session.NewestShownBar = std::max(session.NewestShownBar, session.BarIndex);
      OrderResult (OrderDesk::*const orders[])() = {
          &OrderDesk::Long, &OrderDesk::Short, &OrderDesk::OffsetLong, &OrderDesk::OffsetShort};
      Order(orders[Roll(0, 3)], std::to_string(Roll(1, 3)));
    }
  }
  LedgerTrades Kept() {
    std::vector<LedgerTrades> all = LedgerReadTrades(ledger);
    return all.empty() ? LedgerTrades() : all.back();
  }
  LedgerTrades UpToDate() { return PlayedScopes(ledger, cache).back().trades; }
  double TotalCommission() {
    double total = 0;
    for (const RunOrder& order : ReadRecord(ledger, kCurrentRun).orders) {
      if (order.kind != RunOrder::Kind::kWiped) total += order.commission;
    }
    return total;
  }
  // What can be compared of trades.
  static std::vector<std::string> Texts(const LedgerTrades& trades) {
    std::vector<std::string> texts;
    for (const LedgerTrade& trade : trades.trades) {
      const double numbers[] = {double(trade.entry.order.place),
                                double(trade.exit.order.place),
                                trade.quantity,
                                double(trade.entry.day),
                                double(trade.exit.day),
                                trade.money.value_or(-1),
                                trade.costs,
                                trade.adverse.value_or(-1),
                                trade.favourable.value_or(-1)};
      std::string& text = texts.emplace_back();
      for (const double number : numbers) text += std::to_string(number) + " ";
    }
    return texts;
  }
  // The price that was worst (or best) for the trade while it was held, bar by bar.
  double Excursion(const LedgerTrade& trade, bool adverse) const {
    double most = 0;
    for (int bar = *trade.entry.bar; ++bar <= *trade.exit.bar;) {
      const auto at = static_cast<std::size_t>(bar);
      const double gain = trade.is_long != adverse ? session.BarHigh[at] - trade.entry.price
                                                   : trade.entry.price - session.BarLow[at];
      most = std::max(most, gain);
    }
    return most;
  }

  static constexpr int kBars = 120;
  ScratchFolder scratch;
  std::string data = scratch.Sub("data");
  IndexCache cache;
  std::mt19937 random;
};

TEST_F(PlayedTradesTest, AreKeptAsTheyAreClosedAndOutliveTheData) {
  for (unsigned seed = 1; seed <= 5; ++seed) {
    Load(seed);
    Play(40);
    for (const auto& [order, held] : {std::pair(&OrderDesk::OffsetLong, session.LAccum),
                                      std::pair(&OrderDesk::OffsetShort, session.SAccum)}) {
      if (held > 0) Order(order, PlainNumberText(held));
    }
    const LedgerTrades kept = Kept();
    ASSERT_GT(kept.trades.size(), 8U);
    double costs = 0;
    for (const LedgerTrade& trade : kept.trades) {
      costs += trade.costs;
      const bool stepped_back = *trade.exit.bar < *trade.entry.bar;
      EXPECT_EQ(trade.adverse.has_value(), !stepped_back);
      if (stepped_back) continue;
      EXPECT_NEAR(*trade.adverse, Excursion(trade, true), 1e-4);
      EXPECT_NEAR(*trade.favourable, Excursion(trade, false), 1e-4);
    }
    EXPECT_NEAR(costs, TotalCommission(), 1e-6) << "each cost belongs to one trade";
    if (seed % 2 == 0) {  // else, nobody has asked for them before the data is gone
      LedgerDropTrades(ledger.ForWriting(), session.SessionNumber);
      const LedgerTrades computed = UpToDate();
      EXPECT_EQ(Texts(computed), Texts(kept)) << "from the data";
      EXPECT_EQ(Texts(Kept()), Texts(kept)) << "and kept again";
      EXPECT_EQ(computed.first_bar + static_cast<int>(computed.closes.size()),
                session.NewestShownBar + 1);
    }

    std::filesystem::rename(data, data + ".away");
    session.SessionNumber = 0;  // as if the program died before it kept the next trade
    Order(&OrderDesk::Long, "1");
    Order(&OrderDesk::OffsetLong, "1");
    std::vector<std::string> expected = Texts(kept);
    std::vector<std::string> without_data = Texts(UpToDate());
    ASSERT_EQ(without_data.size(), expected.size() + 1);
    EXPECT_THAT(without_data.back(), testing::EndsWith(" -1.000000 -1.000000 "));
    without_data.pop_back();
    EXPECT_EQ(without_data, expected);
    std::filesystem::rename(data + ".away", data);
  }
}

TEST_F(PlayedTradesTest, OfALostSeriesTakeNothingFromTheSessionBefore) {
  Load(6);
  Play(20);
  const int first = session.SessionNumber;
  Load(6);
  Play(20);
  SqliteDatabase& database = ledger.ForWriting();
  for (const int number : {first, session.SessionNumber}) LedgerDropTrades(database, number);
  database.Run("UPDATE Runs SET Symbol = 'GONE' WHERE Session = ?",
               {double(session.SessionNumber)});
  const std::vector<PlayedScope> scopes = PlayedScopes(ledger, cache);
  ASSERT_EQ(scopes.size(), 2U);
  EXPECT_EQ(scopes[0].trades.trades.size(), scopes[1].trades.trades.size());
  EXPECT_FALSE(scopes[0].trades.closes.empty());
  EXPECT_TRUE(scopes[1].trades.closes.empty());
}

TEST_F(PlayedTradesTest, TakeNothingFromAnotherSeries) {
  Load(6);
  Play(20);
  const std::vector<std::string> kept = Texts(UpToDate());
  for (const float factor : {0.5F, 1.0F}) {  // adjusted for a split, then as it was played
    std::vector<Bar> bars = DailyBars(kBars);
    for (std::size_t i = 0; i < bars.size(); ++i) {
      bars[i] = {bars[i].date,         bars[i].time,         session.BarOpen[i],
                 session.BarHigh[i],   session.BarLow[i],    session.BarClose[i] * factor,
                 session.BarVolume[i], session.BarOpenInt[i]};
    }
    StoreSecurity(data, {"ABC", "ABC name", -1}, bars, cache);
    LedgerDropTrades(ledger.ForWriting(), 1);
    const LedgerTrades trades = UpToDate();
    if (factor != 1) {
      EXPECT_TRUE(trades.closes.empty() && !trades.trades.at(0).adverse);
    } else {
      EXPECT_EQ(Texts(UpToDate()), kept);
    }
  }
}

}  // namespace
}  // namespace velumar
