#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "results/run_record.h"

namespace velumar {

// Where a quantity was entered or closed.
struct TradeEnd {
  std::string date = {};  // as the user writes dates
  std::string time = {};
  double price = 0;  // of an entry to two decimals, of an exit exact, as in the account
  std::optional<int> bar = {};
  LedgerOrderKey key = {};  // of the order
  std::string iso_date = {};
  std::optional<double> counted = {};  // see RunOrder
  double costs = 0;                    // commission and VAT for one unit of quantity
  bool look_ahead = false;             // later bars were known

  double Counted() const { return counted.value_or(price); }
};

// A held quantity from one entry.
struct OpenLot {
  bool is_long = true;
  double quantity = 0;
  std::optional<TradeEnd> entry;    // empty if the entry is not in the ledger
  double entered = 0;               // the quantity of the whole entry
  std::optional<double> risk = {};  // money that the plan risked at the entry for this quantity
};

// A closed quantity: first in, first out within its side. An offset that closes parts of two
// entries makes two trades.
struct Trade {
  OpenLot lot;
  TradeEnd exit;
  // Closed by an offset of more than was held, which moves no money.
  bool wiped = false;
  // P/L before costs; empty for a wiped quantity and if the entry is not in the ledger. Money also
  // needs a run that recorded its money per point.
  std::optional<double> points = {};
  std::optional<double> money = {};
  std::optional<double> r = {};                // the money as a multiple of what was risked
  std::optional<double> money_per_point = {};  // of the run that closed it
};

struct TradeList {
  std::vector<Trade> trades;  // in the order they were closed
  std::vector<OpenLot> open;  // still held at the end
};

// Matches exits with entries, order by order.
class TradeMatcher {
 public:
  // Returns the trades that the order closes, the first entered first.
  std::vector<Trade> Apply(const RunOrder& order);
  // What is still held, the long side first.
  std::vector<OpenLot> Open() const;

 private:
  // The open lots of a side, oldest first, and how much the account holds.
  struct Side {
    std::deque<OpenLot> lots;
    double held = 0;
  };
  class Matching;

  Side long_;
  Side short_;
};

// The trades closed in the last of the records; the earlier ones only show where its holdings were
// entered. Needs at least one record.
TradeList ListTrades(const std::vector<RunRecord>& account);

}  // namespace velumar
