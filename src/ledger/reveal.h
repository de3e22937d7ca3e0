#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "ledger/ledger.h"

namespace velumar {

// What a blind session hid, for the rows that it has written.
struct LedgerHidden {
  std::string symbol;
  std::int32_t start_day = 0;                          // yyyymmdd
  double factor = 1;                                   // a shown price is the real one times this
  std::function<std::int32_t(std::int32_t)> day;       // the real day of a shown one, yyyymmdd
  std::function<double(int bar, double shown)> close;  // the real close of a bar
};

// Ends the session and puts the real symbol, dates, prices and points into its rows, all or
// nothing. Money stays as it was played: a run's money per point changes as its prices do, the
// other way round, and an order keeps the price at which the account counted it. The trades are
// dropped, since they are computed again. Throws LedgerError, also for an unknown number.
void LedgerReveal(LedgerConnection& connection, int number, const LedgerHidden& hidden);

}  // namespace velumar
