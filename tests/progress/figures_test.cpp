#include <map>
#include <numeric>

#include "progress/curve_pieces.h"
#include "progress/filter_text.h"
#include "progress/findings.h"
#include "progress/played_ledger.h"
#include "progress/progress_figures.h"
#include "progress/trade_export.h"
#include "support/plain_figures.h"
#include "support/scratch_folder.h"
#include "support/simulated_traders.h"

namespace velumar {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

std::map<std::string, ProgressFigure> FiguresOf(const Played& played, const Selection& selection,
                                                int rounds = 0) {
  std::map<std::string, ProgressFigure> figures;
  for (const ProgressFigure& figure :
       ComputeFigures(played, selection, ChainEquity(played, selection), {.count = rounds})
           .figures) {
    figures[std::string(figure.name)] = figure;
  }
  return figures;
}

TEST(ProgressFigures, AgreeWithASecondComputationFromTheDefinitions) {
  for (int seed = 1; seed <= 30; ++seed) {
    RandomSource random(static_cast<std::uint64_t>(seed));
    const Played played =
        SimulateTrading({.sessions = 1 + seed % 12, .bars = 90, .drift = 0.3 * (seed % 3)}, random);
    const Selection all = Select(played, {});
    const PlainFigures plain(played);
    const EquityCurve curve = ChainEquity(played, all);
    EXPECT_THAT(curve.equity, testing::Pointwise(testing::DoubleNear(1e-5), plain.Equity()));
    const auto figures = FiguresOf(played, all);
    const auto expected = plain.Compute();
    for (const auto& [name, value] : expected) {
      ProgressFigure shown = figures.at(name);
      const std::string text = shown.ValueText();
      shown.value = value;
      EXPECT_EQ(text, shown.ValueText()) << name << ", seed " << seed;
    }
  }
}

// Cutting the curve by session or by trade, and putting the pieces together in a new order, gives
// the falls of the curve that the order makes.
TEST(ProgressFigures, FallsOfPiecesAreThoseOfTheCurveTheyMake) {
  RandomSource random(5);
  const Played played = SimulateTrading({.sessions = 9, .bars = 60}, random);
  const Selection all = Select(played, {});
  const EquityCurve curve = ChainEquity(played, all);
  const CurvePieces sessions(played, all, curve, CurvePieces::By::kSession);
  const CurvePieces trades(played, all, curve, CurvePieces::By::kTrade);
  for (int round = 0; round < 200; ++round) {
    std::vector<std::uint32_t> order(9);
    for (std::uint32_t& piece : order) piece = random.Below(9);
    std::vector<std::uint32_t> same_by_trade;
    double equity = 1, peak = 1, deepest = 0, squares = 0, longest = 0, run = 0;
    double money = 0, money_peak = 0, money_fall = 0;
    for (const std::uint32_t piece : order) {
      for (std::uint32_t i = 0; i < 6; ++i) same_by_trade.push_back(piece * 6 + i);
      const EquityCurve::Part& part = curve.parts.at(piece);
      for (int bar = part.first; bar < part.first + part.bars; ++bar) {
        equity *= curve.equity.at(bar) / curve.Before(bar);
        peak = std::max(peak, equity);
        const double fall = equity < peak * (1 - 1e-12) ? 1 - equity / peak : 0;
        deepest = std::max(deepest, fall);
        squares += fall * fall;
        run = fall > 0 ? run + 1 : 0;
        longest = std::max(longest, run);
        money += curve.equity.at(bar) - curve.Before(bar);
        money_peak = std::max(money_peak, money);
        money_fall = std::max(money_fall, money_peak - money);
      }
    }
    for (const PathFigures& path : {sessions.Path(order), trades.Path(same_by_trade)}) {
      EXPECT_NEAR(path.fall, money_fall, 1e-6);
      EXPECT_NEAR(path.fall_share, deepest, 1e-9);
      EXPECT_NEAR(path.squared_falls, squares, 1e-9);
      EXPECT_EQ(path.longest, longest);
    }
  }
}

TEST(ProgressFigures, ATradeOfNothingEndsARowOfWinsOrLosses) {
  Played played;
  PlayedSession& session = played.sessions.emplace_back();
  session.starting_money = 100;
  session.closes.resize(9, 10);
  int bar = 0;
  for (const double money : {-1.0, -1.0, 0.0, -1.0, 2.0, 0.0, 2.0}) {
    played.trades.push_back(Traded(0, bar, bar + 1, money));
    ++bar;
  }
  const auto figures = FiguresOf(played, Select(played, {}));
  EXPECT_EQ(figures.at("Max consecutive losses").ValueText(), "2");
  EXPECT_EQ(figures.at("Max consecutive wins").ValueText(), "1");
  EXPECT_EQ(figures.at("Payoff ratio").ValueText(), "2.00") << "break-even is no loss either";
}

TEST(ProgressFigures, AYearIsCountedInWeekdays) {
  Played played{{}, {}, {{}}, {Traded(0, 0, 1, 1)}};
  for (const auto& [first, last, weekdays] : {std::tuple(20260105, 20260105, 1),
                                              {20260103, 20260104, 1},
                                              {20251231, 20260105, 4},
                                              {19691226, 19700102, 6},
                                              {19600101, 19600104, 2},
                                              {20260105, 20260102, 1}}) {
    played.sessions[0].first_day = first;
    played.sessions[0].last_day = last;
    const double years = ChainEquity(played, Selection{0}).parts[0].years;
    EXPECT_NEAR(years * kWeekdaysPerYear, weekdays, 1e-9) << first;
  }
}

TEST(ProgressFigures, HaveIntervalsFromTenTradesOrFiveSessionsOn) {
  for (const bool few : {true, false}) {
    Played played{{}, {}, {{}}, {}};
    played.sessions[0].starting_money = 1000;
    for (int i = 0; i < (few ? 9 : 10); ++i) played.trades.push_back(Traded(0, i, i + 1, i));
    const auto interval = [&](const char* name) {
      return FiguresOf(played, Select(played, {}), 100).at(name).IntervalText();
    };
    EXPECT_EQ(interval("Expectancy") == "too few", few);
    played = {{}, {}, std::vector<PlayedSession>(8, played.sessions[0]), {}};
    for (int i = 0; i < 32; ++i) {
      played.trades.push_back(Traded(i / 4, i, i + 1, i % 5));
      played.trades.back().risk = i < (few ? 16 : 20) ? 3 : 0;
    }
    EXPECT_EQ(interval("Expectancy in R") == "too few", few) << "sessions with a planned stop";
  }
}

TEST(ProgressFigures, TakeTradesWithoutBarsAtTheirExit) {
  Played played;
  played.sessions.resize(2);
  played.sessions[0].starting_money = played.sessions[1].starting_money = 1000;
  played.sessions[1].first_bar = 10;
  played.sessions[1].closes = {5, 6, 7};
  // Without closes; stepped back; bars unknown; beyond the closes.
  played.trades = {Traded(0, 3, 9, 50, 1), Traded(0, 4, 7, -20), Traded(1, 12, 11, 8),
                   Traded(1, kAbsent, kAbsent, 4), Traded(1, 11, 40, 2)};
  const EquityCurve curve = ChainEquity(played, Select(played, {}));
  EXPECT_THAT(curve.equity, ElementsAre(1049, 1029, 1029, 1037, 1043));
  EXPECT_THAT(curve.completed, ElementsAre(0, 1, 3, 4, 4));

  // A lost account has no growth, but amounts.
  played.trades.push_back(Traded(1, 10, 10, -5000));
  const auto figures = FiguresOf(played, Select(played, {}));
  EXPECT_FALSE(figures.at("CAGR").value);
  EXPECT_FALSE(figures.at("Max drawdown in percent").value);
  EXPECT_EQ(figures.at("Max drawdown").ValueText(), "5,020.00");
  EXPECT_FALSE(FiguresOf(played, {}, 100).at("Sharpe ratio").value);
}

TEST(TradeFilters, LetThroughWhatIsAskedFor) {
  RandomSource random(2);
  Played played = SimulateTrading({.sessions = 6, .trades = 10, .setups = 3}, random);
  for (std::size_t i = 0; i < played.trades.size(); ++i) {
    PlayedTrade& trade = played.trades[i];
    trade.look_ahead = i % 7 == 0;
    trade.confidence = static_cast<std::uint8_t>(i % 6);
    trade.weekday = static_cast<std::int8_t>(i % 5);
    trade.hour = static_cast<std::int8_t>(i % 4 + 9);
    if (i % 5 == 0) trade.setup = kAbsent;
  }
  for (int i = 0; i < 6; ++i) {
    played.sessions[i].symbol = i % 2;
    if (i > 0) played.sessions[i].played_at = "2026-11-0" + std::to_string(i) + " 07:03:40";
  }
  using Passes = bool (*)(const PlayedTrade&, const PlayedSession&);
  const std::pair<TradeFilter, Passes> cases[] = {
      {{}, [](auto&, auto&) { return true; }},
      {{.symbol = 1}, [](auto&, auto& session) { return session.symbol == 1; }},
      {{.interval = kAbsent}, [](auto&, auto&) { return false; }},
      {{.setup = 2}, [](auto& trade, auto&) { return trade.setup == 2; }},
      {{.setup = kAbsent}, [](auto& trade, auto&) { return trade.setup == kAbsent; }},
      {{.is_long = false, .blind = true},
       [](auto& trade, auto& session) { return !trade.is_long && session.blind; }},
      {{.from_day = 20260107, .to_day = 20260108},
       [](auto& trade, auto&) {
         return trade.entry_day == 20260107 || trade.entry_day == 20260108;
       }},
      {{.played_from = "2026-11-02", .played_to = "2026-11-03"},
       [](auto&, auto& session) { return session.scope.number == 3 || session.scope.number == 4; }},
      {{.confidence = 0}, [](auto& trade, auto&) { return trade.confidence == 0; }},
      {{.weekday = 4, .hour = 10},
       [](auto& trade, auto&) { return trade.weekday == 4 && trade.hour == 10; }},
      {{.sessions = {LedgerScope::Session(2), LedgerScope::Run(3)}},
       [](auto&, auto& session) { return session.scope.number == 2; }}};
  for (auto [filter, passes] : cases) {
    for (const bool look_ahead : {false, true}) {
      filter.look_ahead = look_ahead;
      Selection expected;
      for (std::int32_t i = 0; i < static_cast<std::int32_t>(played.trades.size()); ++i) {
        const PlayedTrade& trade = played.trades[i];
        if ((look_ahead || !trade.look_ahead) && passes(trade, played.sessions[trade.session])) {
          expected.push_back(i);
        }
      }
      EXPECT_EQ(Select(played, filter), expected);
    }
  }
}

// Halves of an entry that risked 100, closed before the recorded bars and at their last but one,
// and between them a trade without P/L.
TEST(TradesCsv, HasTheSelectedTradesAndWhatHoldingOnWouldHaveAdded) {
  std::vector<PlayedScope> scopes(1);
  LedgerTrades& kept = scopes[0].trades;
  kept.first_bar = 10;
  kept.closes = {20, 21, 22, 23, 24, 25};
  for (const int bar : {8, 9, 14}) {
    LedgerTrade& trade = kept.trades.emplace_back();
    trade.entry.order = {1, 1};
    trade.exit = {.bar = bar, .price = 10.0 + bar};
    trade.entry_share = 0.5;
    trade.quantity = 1;
    trade.money_per_point = 1;
    if (bar != 9) trade.money = -25;
  }
  const std::vector<LedgerEntryPlan> plans{{{1, 1}, "gap", 3, 100}};
  ASSERT_EQ(PlayedOf(scopes, plans).trades.size(), 2U);
  EXPECT_EQ(PlayedOf(scopes, plans).trades[1].risk, 50);
  const std::string csv = TradesCsv(scopes, plans, {0, 1});
  EXPECT_EQ(std::ranges::count(csv, '\n'), 3);
  EXPECT_THAT(csv,
              AllOf(HasSubstr(",-0.5,0,-25,50,"), HasSubstr(",,,,gap,"), HasSubstr(",1,,,gap,")));
  EXPECT_THAT(TradesCsv(scopes, plans, {1}), Not(HasSubstr(",,,,gap,")));
}

TEST(Findings, RoundAPartOfAPercentAndListWhatFits) {
  RiskAhead risk;
  for (const auto& [share, text] : {std::pair(0.0, "is 0 %;"),
                                    {0.0099, "is less than 1 %;"},
                                    {0.01, "is 1 %;"},
                                    {0.0249, "is 2 %;"}}) {
    risk.ruin = share;
    EXPECT_THAT(FindingsOf({}, risk).at(0), HasSubstr(text));
  }
  EXPECT_EQ(ListedNames({"a", "b"}, 1) + ListedNames({"a", "b"}, 2), "a and 1 morea, b");
}

TEST(ProgressFigures, AreExplainedInTheManual) {
  const std::string text = ReadFile(VELUMAR_STATISTICS_PAGE);
  for (const auto& [name, figure] : FiguresOf({}, {})) {
    EXPECT_THAT(text, HasSubstr("| " + name + " | " + std::string(figure.formula) + " |"));
  }
}

}  // namespace
}  // namespace velumar
