#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ledger/sessions.h"
#include "platform/chart_link.h"
#include "results/trade_list.h"
#include "session/trade_plans.h"

namespace velumar {

// The trader's money and positions. It has two units that never mix: points are a price difference
// times a quantity, money is points times ProfitPerContract. Every assignment is computed in double
// precision and rounded once, to the 32-bit field.
struct Book {
  // Account, money.
  float MarketPrice = 0;  // close of the current bar
  float InitMargin = 0;
  float ProfitPerContract = 0;
  float UsedMargin = 0;
  float Commission = 0;
  float VatAmount = 0;
  float Balance = 0;
  float Portfolio = 0;
  float BalancePoint = 0;  // points

  // The two sides: quantities, average price, points, money.
  float LAccum = 0;
  float SAccum = 0;
  float LAmount = 0;
  float SAmount = 0;
  float LAvgPrice = 0;
  float SAvgPrice = 0;
  float LUnrealisedMoney = 0;
  float SUnrealisedMoney = 0;
  float LUnrealised = 0;
  float SUnrealised = 0;
  float LRealised = 0;
  float SRealised = 0;
  float LRealisedMoney = 0;
  float SRealisedMoney = 0;
};

// What was entered when "Start" was clicked. The run keeps it, whatever is entered for the next
// one.
struct RunSeries {
  std::string directory;
  std::string symbol;
  std::string interval;        // "D" or minutes
  std::int32_t start_day = 0;  // yyyymmdd
  bool blind = false;          // symbol, dates and prices are masked
};

// The state of the program: directories and symbol, the whole series in memory, the replay cursor
// and the trader's book. There is one, which main builds and passes by reference. The 16-bit and
// 32-bit fields are limits of the system.
struct SimSession : Book {
  // Paths, symbol, host.
  std::string DataDir;  // the directory that holds the full series
  std::string SimDir;   // the working store: what the chart program reads
  std::string Symbol;   // the one chosen in the setup window, trimmed and upper-cased
  std::string SymbolInterval;
  std::vector<std::string>
      PeriodBySymbol;  // "D" or minutes, in the order of the directory, and one spare
  std::string HostTitle;
  std::string ChartWarning;  // what is wrong with the chart program; precedes the bar's text

  std::vector<OrderMark> Orders;  // of the loaded series, in the order in which they were placed
  TradePlans Plans;               // of the session
  TradeMatcher Matcher;           // has all orders of the session
  LedgerOrderKey Again;  // the entry of the trade that the session plays again; without a run: none
  bool ShowsEarlier = false;             // the trader wants to see
  std::vector<OrderMark> EarlierOrders;  // of that trade

  RunSeries Run;          // of the run being prepared, then of the bars in memory
  int SessionNumber = 0;  // in the ledger, of the bars in memory; 0: it is not recorded

  // Bars: eight parallel arrays from index 0, oldest first.
  std::vector<std::int32_t> BarDate;  // yyyymmdd
  std::vector<std::int32_t> BarTime;  // hhmmss
  std::vector<float> BarOpen;
  std::vector<float> BarHigh;
  std::vector<float> BarLow;
  std::vector<float> BarClose;
  std::vector<float> BarVolume;
  std::vector<float> BarOpenInt;
  std::vector<std::uint64_t> BarChecks;  // of the bars 0 to i (session/moment.h)

  // Replay cursor and run.
  std::int16_t BarIndex = 0;        // the store holds bars 0 to BarIndex; -1: none
  std::int16_t LastBarIndex = 0;    // last index of the full series
  std::int16_t FirstShownBar = 0;   // where the run began at its start date
  std::int16_t NewestShownBar = 0;  // the newest bar that this run's chart has shown so far
  std::string StartDate;
  std::string StartTime;
  std::string CurrentDate;
  std::string CurrentTime;
  std::int16_t StopRequested = 0;  // 0 or -1
  bool Preparing = false;          // from the click on "Start" until the bars are loaded
  std::int16_t RefreshDelay = 0;   // ms

  // Saved window positions, twips as number text; a top of "0": none.
  std::string SetupTop;
  std::string SetupLeft;
  std::string NavTop;
  std::string NavLeft;

  // The two market families: a directory whose path holds the capital letters "SET" is a stock
  // market, every other one a futures market.
  bool IsStockMarket() const { return DataDir.find("SET") != std::string::npos; }
  // Last index of the bar arrays, -1 without bars.
  int LastArrayIndex() const { return static_cast<int>(BarDate.size()) - 1; }
  // True if the arrays have a bar of that index.
  bool HasBar(int index) const { return index >= 0 && index <= LastArrayIndex(); }
  // Drops the series, so that nothing can be fed, stepped or ordered.
  void ForgetBars() {
    BarDate.clear();
    BarTime.clear();
    for (auto* values : {&BarOpen, &BarHigh, &BarLow, &BarClose, &BarVolume, &BarOpenInt}) {
      values->clear();
    }
    BarChecks.clear();
    Orders.clear();
    Again = {};
    ShowsEarlier = false;
    EarlierOrders.clear();
    Plans.Clear();
    Matcher = {};
    SessionNumber = 0;
    BarIndex = -1;
    LastBarIndex = -1;
  }
};

// A run is being prepared while this object lives.
class PreparingScope {
 public:
  explicit PreparingScope(SimSession& session) : session_(session) { session_.Preparing = true; }
  ~PreparingScope() { session_.Preparing = false; }
  PreparingScope(const PreparingScope&) = delete;
  PreparingScope& operator=(const PreparingScope&) = delete;

 private:
  SimSession& session_;
};

}  // namespace velumar
