#pragma once

#include <optional>
#include <string>
#include <vector>

#include "results/run_record.h"

namespace velumar {

// Where a quantity was entered or closed.
struct TradeEnd {
  std::string date;  // as the user writes dates
  std::string time;
  double price = 0;
  std::optional<int> bar;
};

// A quantity that is held, from one entry.
struct OpenLot {
  bool is_long = true;
  double quantity = 0;
  std::optional<TradeEnd> entry;  // nothing where the ledger doesn't hold the entry
};

// A closed quantity: first in, first out within its side. An offset that closes parts of two
// entries makes two trades.
struct Trade {
  OpenLot lot;
  TradeEnd exit;
  // Closed by an offset of more than was held, which moves no money.
  bool wiped = false;
  // In points and in money, before costs; nothing for a wiped quantity and where the ledger doesn't
  // hold the entry. Money needs a run that noted its money per point.
  std::optional<double> points;
  std::optional<double> money;
};

struct TradeList {
  std::vector<Trade> trades;  // as they were closed
  std::vector<OpenLot> open;  // what is still held at the end
};

// The trades that were closed in the last of the runs; those before it tell only where its holdings
// were entered. Needs at least one run.
TradeList ListTrades(const std::vector<RunRecord>& account);

}  // namespace velumar
