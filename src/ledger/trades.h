#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "ledger/ledger.h"

namespace velumar {

// Where a quantity was entered or closed.
struct LedgerTradeEnd {
  LedgerOrderKey order =
      {};                 // without a place if the ledger has no such order, or it wiped a holding
  std::int32_t day = 0;   // yyyymmdd; 0: not recorded
  std::int32_t time = 0;  // hhmmss
  std::optional<int> bar = {};
  double price = 0;
};

// A closed quantity with what the bars say about it. It is kept, so that it outlives the data.
struct LedgerTrade {
  LedgerTradeEnd entry;
  LedgerTradeEnd exit;
  bool is_long = true;
  double quantity = 0;
  double entry_share = 1;  // of the quantity that was entered
  bool wiped = false;
  bool look_ahead = false;
  std::optional<double> money_per_point = {};
  std::optional<double> money = {};  // before costs; empty if the trade has no P/L
  double costs = 0;                  // commission and VAT: the entry's share and the exit's
  // How far the price went against and for the trade in its bars, in points for one unit, 0 or
  // more, and at which bar. Empty without the bars.
  std::optional<double> adverse = {};
  std::optional<double> favourable = {};
  int adverse_bar = 0;
  int favourable_bar = 0;
};

// All trades of a session, or of a run that belongs to none, and the closes of its bars.
struct LedgerTrades {
  LedgerScope scope;
  // What the ledger had when the trades were computed: orders and wiped-out holdings, and the
  // newest bar that the trader had seen. With more of either, they are outdated.
  int orders = 0;
  int newest_shown = 0;
  // The bars from `first_bar` to the newest one. Empty without the data; the days are then those
  // of the trades.
  int first_bar = 0;
  std::int32_t first_day = 0;
  std::int32_t last_day = 0;
  std::vector<float> closes;
  std::vector<LedgerTrade> trades;  // in the order in which they were closed
};

// What the ledger has of a session, or of a run that belongs to none.
struct LedgerScopeState {
  LedgerScope scope;
  int orders = 0;
  int newest_shown = 0;
  LedgerRun began;  // its first run
  bool blind = false;
  std::string touched;      // as LedgerMoment::touched; empty for a run
  bool up_to_date = false;  // its trades are kept as they are now
};

// A session, or a run that belongs to none, and its trades.
struct PlayedScope {
  LedgerScopeState state;
  LedgerTrades trades;
};

// All throw LedgerError. A ledger of an earlier version that is only read has no trades.

// Those with orders, in the order in which they were last begun.
std::vector<LedgerScopeState> LedgerScopes(LedgerConnection& connection);
std::vector<LedgerTrades> LedgerReadTrades(LedgerConnection& connection);
// Keeps them in place of those of the same scope, all or nothing.
void LedgerWriteTrades(LedgerConnection& connection, const LedgerTrades& trades);
// Keeps the trades that an order of the session has closed, after the earlier ones. The caller
// holds a transaction.
void LedgerAddTrades(SqliteDatabase& database, int session, const LedgerOrderKey& exit,
                     std::span<const LedgerTrade> closed);
// Drops those of a session whose rows are changing. The caller holds a transaction.
void LedgerDropTrades(SqliteDatabase& database, int session);

// What the trader planned for the entries of trades.
struct LedgerEntryPlan {
  LedgerOrderKey order;
  std::string setup;
  int confidence = 0;  // 1 to 5; 0: none given
  double risk = 0;     // money, of the whole entry; 0: none
};
std::vector<LedgerEntryPlan> LedgerEntryPlans(LedgerConnection& connection);

}  // namespace velumar
