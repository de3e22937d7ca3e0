#include <cmath>
#include <map>
#include <sstream>

#include "results/figure_texts.h"
#include "results/order_list.h"
#include "results/portfolio_chart.h"
#include "results/result_choices.h"
#include "results/result_figures.h"
#include "results/statistics.h"
#include "results/trade_list.h"
#include "results/trade_record.h"
#include "support/ledger_rows.h"
#include "support/matchers.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

struct RunResultsTest : testing::Test, LedgerRows {
  RunResultsTest() : LedgerRows{connection} { LedgerOpen(ledger, ":memory:"); }

  // Loses first, closes parts of two entries at once, steps back, and wipes out three contracts.
  // With pauses, it takes four runs, and another session is played between the first two.
  void TradeARun(bool pauses = false) {
    const auto pause = [&](double money) {
      if (pauses) Play(money);
    };
    Begin(2000000);
    Order(10, "Long", 2, 100, 2, 0, 2000000);
    Order(12, "Long", 1, 103, 3, 0, 2000000);
    if (pauses) {
      Begin(777);
      Order(13, "Long", 9, 50, 9, 0, 777);
      session = 1;
      Play(2000000);
    }
    Order(14, "Offset Long", 1, 98, 2, -3, 1997000);  // the book goes by the average of 101
    Order(15, "Short", 4, 99, 4, 0, 1997000);
    pause(1997000);
    Order(16, "Offset Long", 2, 106, 0, 10, 2007000);
    Order(15, "Offset Short", 1, 97, 3, 2, 2009000, 16);
    pause(2009000);
    LedgerNoteWiped(ledger, {"Offset Short", 3, 99, Date(20), "16:30:00", 90}, {9, 0, 20, 20});
    Order(24, "Long", 1, 100, 1, 0, 2009000);
    Order(25, "Short", 1, 95, 1, 0, 2009000);
  }

  std::map<std::string_view, std::string> Statistics(LedgerScope scope = kCurrentRun) {
    std::map<std::string_view, std::string> values;
    for (const Statistic& statistic : RunStatistics(ReadAccount(ledger, scope))) {
      values[statistic.name] = statistic.value;
    }
    return values;
  }
  // "Long 2 from 100 to 98: -4000", one for each trade.
  std::vector<std::string> Trades(LedgerScope scope = kCurrentRun) {
    std::vector<std::string> texts;
    for (const Trade& trade : ListTrades(ReadAccount(ledger, scope)).trades) {
      std::ostringstream text;
      text << (trade.lot.is_long ? "Long " : "Short ") << trade.lot.quantity << " from ";
      trade.lot.entry ? text << trade.lot.entry->price : text << "?";
      text << " to " << trade.exit.price << ": ";
      trade.money ? text << *trade.money : text << (trade.wiped ? "wiped" : "?");
      if (trade.r) text << ", R " << *trade.r;
      texts.push_back(text.str());
    }
    return texts;
  }

  std::map<std::string_view, std::string> Figures(LedgerScope scope = kCurrentRun) {
    std::map<std::string_view, std::string> texts;
    for (const ResultFigureText& text : ResultFigureTexts(LoadResultFigures(ledger, scope))) {
      texts[text.field] = text.text;
    }
    return texts;
  }
  // "26-Jan-07 16:30: 14.5", one for each bar, or why there is none.
  std::vector<std::string> Chart(LedgerScope scope = kCurrentRun) {
    const PortfolioChart chart = LoadPortfolioChart(ledger, scope);
    if (!chart.hint.empty()) return {chart.hint};
    std::vector<std::string> texts;
    for (const auto& row : chart.rows) {
      texts.push_back((std::ostringstream() << row.label << ": " << row.value).str());
    }
    return texts;
  }

  std::vector<std::string> Titles() {
    std::vector<std::string> titles;
    for (const ResultChoice& choice : ResultChoices(ledger)) titles.push_back(choice.title);
    return titles;
  }

  LedgerConnection connection{[](std::string_view iso) { return "<" + std::string(iso) + ">"; }};
};

TEST_F(RunResultsTest, StatisticsOfARunComputedByHand) {
  TradeARun();
  EXPECT_THAT(Trades(), ElementsAre("Long 1 from 100 to 98: -2000", "Long 1 from 100 to 106: 6000",
                                    "Long 1 from 103 to 106: 3000", "Short 1 from 99 to 97: 2000",
                                    "Short 3 from 99 to 90: wiped"));
  const std::map<std::string_view, std::string> expected{
      {"Trades", "5"},
      {"Trades without P/L", "1"},
      {"Win rate", "75.00 %"},
      {"Average win", "3,666.67"},
      {"Average loss", "-2,000.00"},
      {"Payoff ratio", "1.83"},
      {"Profit factor", "5.50"},
      {"Expectancy", "2,250.00"},
      {"Largest win", "6,000.00"},
      {"Largest loss", "-2,000.00"},
      {"Max consecutive wins", "3"},
      {"Max consecutive losses", "1"},
      {"Max drawdown", "3,000.00"},
      {"Max drawdown in percent", "0.15 %"},
      {"Drawdown period", "start to <2007-01-14> 16:30:00"},
      {"Time in market", "73.33 %"},  // bars 10 to 20 and 24 of the 15 from 10 to 25
      {"Exposure", "9.99 %"},         // (4 * 100 + 6 * 100 + 4 * 103 + 5 * 297 + 100) / 15
      {"Return", "0.45 %"},
      {"Commission", "1,300.00"},
      {"VAT", "91.00"},
      {"Net profit", "7,609.00"},
      {"Look-ahead orders", "1 of 8"},
  };
  EXPECT_EQ(Statistics(), expected);
}

TEST_F(RunResultsTest, AnArchivedRunReadsAsBeforeAndASessionAsIfItHadNoPauses) {
  TradeARun();
  const auto read = [this](LedgerScope scope) {
    return std::tuple(Statistics(scope), Trades(scope), Figures(scope), Chart(scope),
                      OrdersCsv(ListOrders(ReadRecord(ledger, scope))));
  };
  const auto without_pauses = read(kCurrentRun);
  Begin(5);
  EXPECT_EQ(Titles().front(), "This session: 1 run, 0 orders");
  EXPECT_EQ(read(LedgerScope::Run(1)), without_pauses);
  Begin(6);
  EXPECT_TRUE(ReadRecord(ledger, LedgerScope::Run(2)).orders.empty());
  LedgerOpen(ledger, ":memory:");
  TradeARun(true);
  EXPECT_EQ(read(LedgerScope::Session(1)), without_pauses);
  EXPECT_EQ(read(LedgerScope::Run(5)), read(kCurrentRun));
  EXPECT_THAT(Trades(LedgerScope::Run(4)),
              ElementsAre("Long 1 from 100 to 106: 6000", "Long 1 from 103 to 106: 3000",
                          "Short 1 from 99 to 97: 2000"))
      << "entered in the first run of the session";
  EXPECT_THAT(
      Titles(),
      ElementsAre("This session: 4 runs, 8 orders", "Current run from <2007-01-10>, 2 orders",
                  "Run 4 from <2007-01-10>, 2 orders", "Run 3 from <2007-01-10>, 2 orders",
                  "Run 1 from <2007-01-10>, 2 orders",
                  "Session 2: ABC D from <2007-01-10>, 1 order"));
  Begin(5);
  EXPECT_EQ(read(LedgerScope::Session(1)), without_pauses);
  ledger.ForWriting().Execute("update Runs set StartDate = '2007010' || Id where Session = 1");
  EXPECT_EQ(Titles().at(2), "Session 1: ABC D from <2007-01-01>, 8 orders") << "its first run";

  LedgerForgetSession(ledger, 2);
  EXPECT_EQ(Titles().back(), "Run 2: ABC D from <2007-01-10>, 1 order");
  EXPECT_THROW(ReadRecord(ledger, LedgerScope::Session(2)), LedgerError);
  ledger.ForWriting().Execute("update Runs set MoneyPerPoint = 10 where Id = 4");
  EXPECT_EQ(Trades(LedgerScope::Session(1)).at(1), "Long 1 from 100 to 106: 60");
}

// The same in a ledger from before sessions.
struct HoldingsTest : RunResultsTest, testing::WithParamInterface<bool> {
  void Pause(double money) {
    Play(money);
    if (GetParam()) ledger.ForWriting().Execute("update Runs set Session = null");
  }
};

INSTANTIATE_TEST_SUITE_P(, HoldingsTest, testing::Bool());

TEST_P(HoldingsTest, FromBeforeAPauseKeepTheirEntries) {
  TradeARun();
  Pause(2009000);
  Order(26, "Short", 2, 93, 3, 0, 2009000);
  LedgerWritePlan(ledger, {.session = session, .order = {2, 1}, .stop = 95, .risk = 4000});
  Pause(2009000);
  Order(27, "Offset Short", 2, 90, 1, 0, 2014000);  // entered at 95 and 93, two runs apart
  Order(28, "Offset Long", 1, 104, 0, 4, 2018000);
  EXPECT_THAT(Trades(),
              ElementsAre("Short 1 from 95 to 90: 5000", "Short 1 from 93 to 90: 3000, R 1.5",
                          "Long 1 from 100 to 104: 4000"));
  EXPECT_EQ(Statistics()["Time in market"], "100.00 %");
  EXPECT_EQ(Statistics()["Average R"], "1.50");

  // The same once archived, although a run without orders was started in between.
  const auto trades = Trades();
  Pause(2018000);
  Pause(2018000);
  Order(29, "Short", 9, 1, 10, 0, 2018000);
  EXPECT_EQ(Trades(LedgerScope::Run(3)), trades);
  EXPECT_TRUE(Trades(LedgerScope::Run(4)).empty());
  EXPECT_THAT(Titles(), testing::SizeIs(GetParam() ? 4 : 5)) << "the current run and 3, 2, 1";

  // Each side was entered in a run of its own.
  Begin(1000);
  Order(10, "Long", 1, 50, 1, 0, 1000);
  Pause(1000);
  Order(11, "Short", 1, 51, 1, 0, 1000);
  Pause(1000);
  Order(12, "Offset Short", 1, 50, 0, 1, 2000);
  Order(13, "Offset Long", 1, 52, 0, 2, 4000);
  EXPECT_THAT(Trades(), ElementsAre("Short 1 from 51 to 50: 1000", "Long 1 from 50 to 52: 2000"));

  // Another account: its first short is its own.
  Begin(1000);
  Order(10, "Short", 2, 50, 2, 0, 1000);
  Order(11, "Offset Short", 2, 51, 0, -2, -1000);
  EXPECT_THAT(Trades(), ElementsAre("Short 2 from 50 to 51: -2000"));
  EXPECT_EQ(Statistics()["Max drawdown in percent"], "200.00 %");

  // A quantity that no row explains.
  Begin(1000);
  Order(12, "Offset Long", 1, 60, 4, -2, -1000);
  EXPECT_THAT(Trades(), ElementsAre("Long 1 from ? to 60: ?"));
  EXPECT_EQ(Statistics()["Expectancy"], "-");
  EXPECT_EQ(Statistics()["Max drawdown"], "2,000.00") << "the first order lost";

  // One side only, entered in two earlier runs.
  Begin(1000);
  Order(13, "Short", 1, 70, 1, 0, 1000);
  Pause(1000);
  Order(14, "Short", 1, 72, 2, 0, 1000);
  Pause(1000);
  Order(15, "Offset Short", 2, 69, 0, 4, 5000);
  EXPECT_THAT(Trades(), ElementsAre("Short 1 from 70 to 69: 1000", "Short 1 from 72 to 69: 3000"));

  // A row shows seven digits of what is held.
  Begin(1000);
  Order(16, "Long", 0.33333333, 70, 0.3333333, 0, 1000);
  Order(17, "Offset Long", 0.33333333, 73, 0, 1, 2000);
  EXPECT_THAT(Trades(), ElementsAre("Long 0.333333 from 70 to 73: 1000"));
}

// A row's price has two decimals. The account averages entries to two as well, but closes at all
// decimals: two wins of 5, not one of 0 and one of 10.
TEST_F(RunResultsTest, PricesCountAtAllDecimals) {
  Begin(12345674);
  const auto order = [this](int bar, const std::string& position, double quantity, double close,
                            double held, double money) {
    const double two_decimals = std::round(close * 100) / 100;
    LedgerInsertOrder(ledger, Row(bar, position, quantity, two_decimals, held, 0.01, money),
                      {quantity, 0.1F, bar, bar, close});
  };
  order(10, "Long", 2, 1.2304, 2, 12345670);  // the starting money as a row has it
  order(11, "Offset Long", 1, 1.2349, 1, 12345680);
  order(12, "Offset Long", 1, 1.2351, 0, 12345690);
  EXPECT_THAT(Trades(),
              ElementsAre("Long 1 from 1.23 to 1.2349: 4.9", "Long 1 from 1.23 to 1.2351: 5.1"));
  const auto statistics = Statistics();
  EXPECT_EQ(statistics.at("Win rate"), "100.00 %");
  EXPECT_EQ(statistics.at("Expectancy"), "5.00");
  EXPECT_EQ(statistics.at("Max drawdown"), "0.00");
  EXPECT_THAT(OrdersCsv(ListOrders(ReadRecord(ledger, kCurrentRun))), HasSubstr(",200,0.1,"))
      << "a VAT of 32 bits in its own digits";
}

TEST_F(RunResultsTest, LargeAndNegativeMoneyKeepsItsSign) {
  Begin(1000000000);
  Order(10, "Long", 1, 100, 1, 0, 1000000000);
  Order(11, "Offset Long", 1, 2000100, 0, 2000000, 3000000000);
  Order(12, "Short", 1, 100, 1, 0, 3000000000);
  Order(13, "Offset Short", 1, 4000100, 0, -4000000, -1000000000);
  Order(14, "Long", 2, 100, 2, 0, -1000000000);
  Order(15, "Offset Long", 1, 100, 1, 0, -1000000000);  // breaks even
  Order(16, "Offset Long", 1, 99.5, 0, -0.5, -1000000500);
  const auto statistics = Statistics();
  for (const auto& [name, value] : std::vector<std::pair<std::string_view, std::string>>{
           {"Win rate", "25.00 %"},
           {"Largest loss", "-4,000,000,000.00"},
           {"Max consecutive wins", "1"},
           {"Max consecutive losses", "1"},
           {"Max drawdown in percent", "133.33 %"},
           {"Drawdown period", "<2007-01-11> 16:30:00 to <2007-01-16> 16:30:00"},
           {"Return", "-200.00 %"}}) {
    EXPECT_EQ(statistics.at(name), value);
  }
}

// From the bar after the entry to the bar of the exit. Of equal extremes, the first counts.
TEST(RecordedTrade, KnowsWhenThePriceWentFarthestEitherWay) {
  const std::vector<std::int32_t> dates{20070110, 20070111, 20070112, 20070113, 20070114};
  const std::vector<float> highs{99, 12, 12, 13, 99}, lows{1, 8, 8, 7, 1}, closes(5, 10);
  const PlayedSeries series{dates, highs, lows, closes, 0, 4};
  for (const auto& [exit, most, at] : {std::tuple(0, 0.0, 0), {2, 2.0, 1}, {3, 3.0, 3}}) {
    const LedgerTrade kept = RecordTrade(
        {.lot = {true, 1, TradeEnd{.price = 10, .bar = 0}, 1}, .exit = {.price = 10, .bar = exit}},
        &series);
    EXPECT_TRUE(kept.adverse == most && kept.favourable == most) << exit;
    EXPECT_TRUE(kept.adverse_bar == at && kept.favourable_bar == at) << exit;
  }
}

TEST_F(RunResultsTest, ARunWithOnlyAWipedHoldingCanBeChosen) {
  TradeARun();
  Play(2009000);
  LedgerNoteWiped(ledger, {"Offset Long", 1, 100, Date(26), "16:30:00", 90}, {9, 0, 26, 26});
  Play(2009000);
  ASSERT_EQ(Titles().size(), 4U);
  EXPECT_EQ(Titles()[2], "Run 2 from <2007-01-10>, 0 orders");
  EXPECT_THAT(Trades(LedgerScope::Run(2)), ElementsAre("Long 1 from 100 to 90: wiped"));
  EXPECT_THAT(Chart(LedgerScope::Run(2)), ElementsAre("1 closed trade without P/L"));
}

TEST_F(RunResultsTest, AMissingFigureIsADash) {
  const auto without_dashes = [](const std::map<std::string_view, std::string>& statistics) {
    std::map<std::string_view, std::string> others = statistics;
    std::erase_if(others, [](const auto& statistic) { return statistic.second == "-"; });
    return others;
  };
  using Values = std::map<std::string_view, std::string>;
  EXPECT_EQ(without_dashes(Statistics()), (Values{{"Trades", "0"},
                                                  {"Trades without P/L", "0"},
                                                  {"Commission", "0.00"},
                                                  {"VAT", "0.00"},
                                                  {"Look-ahead orders", "0 of 0"}}));
  // Rows from before runs and details were recorded.
  for (const auto& row :
       {Row(10, "Long", 2, 100, 2, 0, 9), Row(11, "Offset Long", 2, 99, 0, -2, 7)})
    LedgerInsert(ledger, kPortfolioTable, PortfolioColumns(), row);
  EXPECT_EQ(without_dashes(Statistics()),
            (Values{{"Trades", "1"}, {"Trades without P/L", "1"}, {"Commission", "400.00"}}));
  EXPECT_EQ(ListTrades(ReadAccount(ledger, kCurrentRun)).trades.at(0).points, -2.0);
}

TEST_F(RunResultsTest, FiguresCountTheRowsOfTheRunOnly) {
  EXPECT_EQ(Figures()["ResPortfolio"], "");
  EXPECT_EQ(Figures()["ResTotalComm"], "0");
  Order(25, "Long", 2, 100, 2, 0, 1500000);
  Order(24, "Short", 3, 100, 3, 0, 1);
  Order(25, "Offset Long", 1, 100, 1, -7.25, 1492750.5);
  ledger.ForWriting().Execute("update MyPortfolio set ActTime = '09:45:00' where SAmount > 0");
  const std::map<std::string_view, std::string> expected{
      {"ResSymbol", "ABC"},
      {"ResInterval", "-1"},
      {"ResStartDate", "<2007-01-24>"},
      {"ResStartTime", "09:45:00"},
      {"ResEndDate", "<2007-01-25>"},
      {"ResEndTime", "16:30:00"},
      {"ResPortfolio", "1,492,751"},  // the later of two orders on one bar
      {"ResLongAmount", "2"},
      {"ResShortAmount", "3"},
      {"ResLongProfitLoss", "-7.25"},
      {"ResShortProfitLoss", "0"},
      {"ResLongComm", "200"},  // without the offset's
      {"ResShortComm", "300"},
      {"ResTotalComm", "500"}};
  EXPECT_EQ(Figures(), expected);
  EXPECT_THAT(Chart(), ElementsAre("25-Jan-07 16:30: 1.49275e+06")) << "starts at a closed trade";

  LedgerBeginRun(ledger, {});
  EXPECT_FALSE(LoadResultFigures(ledger).any_orders);
  EXPECT_THAT(Chart(), ElementsAre("No closed trades yet"));
  Order(26, "Short", 1, 100, 1, 0, 5);
  EXPECT_EQ(Figures()["ResLongComm"], "0");  // no long entry, and none of the earlier rows
  EXPECT_EQ(Figures()["ResTotalComm"], "100");
}

TEST_F(RunResultsTest, FiguresRoundHalvesAwayFromZeroAndResiduesToZero) {
  Order(10, "Long", 1, 100, 1, 0, -1492750.5);
  EXPECT_EQ(Figures()["ResPortfolio"], "-1,492,751");
  for (const double points : {0.1, 0.2, -0.3}) Order(25, "Offset Long", 1, 100, 1, points, 1);
  EXPECT_EQ(Figures()["ResLongProfitLoss"], "0");
}

TEST(FigureTexts, RoundAndGroup) {
  for (const auto& [money, text] : {std::pair(0.0049, "0.00"),
                                    {0.005, "0.01"},
                                    {-0.0049, "0.00"},
                                    {-0.005, "-0.01"},
                                    {2.675, "2.68"},
                                    {-1e15, "-1,000,000,000,000,000.00"}}) {
    EXPECT_EQ(MoneyText(money), text) << money;
  }
  EXPECT_EQ(PercentText(0.58334), "58.33 %");
  EXPECT_EQ(PercentText(0.58335), "58.34 %");
  for (const auto& [quantity, text] :
       {std::pair(0.0, "0"), {0.125, "0.13"}, {0.1249, "0.12"}, {1e7, "10000000"}}) {
    EXPECT_EQ(QuantityText(quantity), text);
  }
  const std::vector<std::string> fields{"a", "b,c", "d\"e", "f\ng", "h\ri", ""};
  EXPECT_EQ(CsvLine(fields), "a,\"b,c\",\"d\"\"e\",\"f\ng\",\"h\ri\",\n");
}

// Closed at the entry price, so no row has points.
TEST_F(RunResultsTest, TheChartShowsTradesWithoutPoints) {
  Order(25, "Long", 2, 100, 2, 0, 10);
  Order(26, "Offset Long", 1, 100, 1, 0, 10.5);
  Order(26, "Offset Long", 1, 100, 0, 0, 10.25);
  Order(27, "Short", 1, 100, 1, 0, 10);
  Order(28, "Offset Short", 1, 100, 0, 0, 10);
  EXPECT_THAT(Chart(), ElementsAre("26-Jan-07 16:30: 10.5", "26-Jan-07 16:30: 10.25",
                                   "28-Jan-07 16:30: 10"));
}

TEST_F(RunResultsTest, OrdersAsATableAndAsCsv) {
  TradeARun();
  std::vector<OrderListRow> rows = ListOrders(ReadRecord(ledger, kCurrentRun));
  ASSERT_EQ(rows.size(), 9U);
  const auto texts = [](const OrderListRow& row) {
    std::string text;
    for (const OrderCell& cell : row) text += cell.text + "|";
    return text;
  };
  EXPECT_EQ(texts(rows[5]),
            "6|<2007-01-15>|16:30:00|ABC|Offset Short|1|97.00|3|0.00|2.00|100.00|7.00|"
            "2,009,000.00|look-ahead|");
  EXPECT_EQ(texts(rows[6]),
            "7|<2007-01-20>|16:30:00|ABC|Offset Short|9|90.00|0|-|-|0.00|0.00|2,009,000.00|"
            "more than the 3 held: closed without P/L|");
  EXPECT_THAT(OrdersCsv(rows),
              StartsWith("No.,Date,Time,Symbol,Order,Quantity,Price,Held,Average,Points,"
                         "Commission,VAT,Balance,Note\n"
                         "1,2007-01-10,16:30:00,ABC,Long,2,100,2,0,,200,14,2000000,\n"));

  // By balance, descending: as numbers, and equal ones in the order they were placed.
  SortOrders(rows, 12, true);
  std::string numbers;
  for (const OrderListRow& row : rows) numbers += row[0].text + " ";
  EXPECT_EQ(numbers, "6 7 8 9 5 1 2 3 4 ");

  // A carried holding, wiped out before the first order that has a row.
  Begin(1234.5);
  LedgerNoteWiped(ledger, {"Offset Long", 1, 100, Date(26), "16:30:00", 90}, {9, 0, 26, 26});
  EXPECT_EQ(ListOrders(ReadRecord(ledger, kCurrentRun)).at(0).at(12).text, "1,234.50");
}

TEST_F(RunResultsTest, EveryFormulaIsInTheManual) {
  TradeARun();
  LedgerWritePlan(ledger, {.order = {1, 1}, .stop = 98, .risk = 4000});
  const std::string text = ReadFile(VELUMAR_STATISTICS_PAGE);
  for (const Statistic& statistic : RunStatistics(ReadAccount(ledger, kCurrentRun))) {
    const std::string name(statistic.name);
    EXPECT_THAT(text, HasSubstr("| " + name + " | " + std::string(statistic.formula) + " |\n"));
  }
}

}  // namespace
}  // namespace velumar
