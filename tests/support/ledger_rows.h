#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "ledger/ledger.h"

namespace velumar {

// Writes the rows of orders: bar n is day n of January 2007, and a contract costs a commission of
// 100 and 7 percent VAT.
struct LedgerRows {
  LedgerConnection& ledger;
  int session = 0;  // the newest one

  static std::string Date(int bar) { return "2007-01-" + std::to_string(bar); }

  // "Start", and "Play" after a pause.
  void Begin(double money) {
    session = 0;
    Play(money);
  }
  void Play(double money) {
    LedgerSession played;
    played.number = session;
    session = LedgerBeginRun(
        ledger, {"/data", "ABC", "D", "20070110", "0", "futures", money, 5e4, 1000}, played);
  }

  std::vector<LedgerValue> Row(int bar, const std::string& position, double quantity, double price,
                               double held, double points, double money) const {
    const std::size_t side = position.ends_with("Long") ? 7 : 13;
    const bool offset = position.starts_with("Offset");
    std::vector<LedgerValue> row(22, LedgerValue(0.0));
    row[1] = "ABC";
    row[2] = -1.0;
    row[3] = Date(bar);
    row[4] = "16:30:00";
    row[5] = price;
    row[6] = position;
    row[side + 1] = offset ? 0.0 : quantity;
    row[side + 2] = offset ? 1.0 : 0.0;
    row[side + 3] = held;
    row[side + 5] = points;
    row[19] = points;
    row[20] = 100 * quantity;
    row[21] = money;
    return row;
  }

  void Order(int bar, const std::string& position, double quantity, double price, double held,
             double points, double money, int newest_shown = 0) const {
    LedgerInsertOrder(ledger, Row(bar, position, quantity, price, held, points, money),
                      {quantity, 7 * quantity, bar, std::max(bar, newest_shown)});
  }

  // An archived run of three orders that won, then one of four that lost.
  void TradeTwoRuns() {
    Begin(2000000);
    Order(10, "Long", 2, 100, 2, 0, 2000000);
    Order(12, "Offset Long", 1, 104, 1, 4, 2004000);
    Order(11, "Offset Long", 1, 103, 0, 3, 2007000, 12);
    Begin(1000000);
    Order(15, "Short", 3, 50, 3, 0, 1000000);
    Order(16, "Offset Short", 1, 52, 2, -2, 998000);
    Order(17, "Offset Short", 1, 48, 1, 2, 1000000);
    Order(18, "Offset Short", 1, 55, 0, -5, 995000);
  }
};

}  // namespace velumar
