#pragma once

#include <array>
#include <string>
#include <string_view>

#include "ledger/ledger.h"

namespace velumar {

// The fourteen figures of a run or session. A figure without any rows is empty or 0, never that of
// another one.
struct ResultFigures {
  bool any_orders = false;
  std::string ResSymbol;
  std::string ResInterval;  // -1 for daily bars, else minutes
  std::string ResStartDate;
  std::string ResStartTime;
  std::string ResEndDate;
  std::string ResEndTime;
  float ResPortfolio = 0;  // realised money after the newest order
  // Quantities entered, not held.
  float ResLongAmount = 0;
  float ResShortAmount = 0;
  // Realised points, not money.
  float ResLongProfitLoss = 0;
  float ResShortProfitLoss = 0;
  // Of entries only, although offsets pay commission too.
  float ResLongComm = 0;
  float ResShortComm = 0;
  float ResTotalComm = 0;

  bool operator==(const ResultFigures&) const = default;
};

// Throws LedgerError.
ResultFigures LoadResultFigures(LedgerConnection& connection, LedgerScope scope = kCurrentRun);

struct ResultFigureText {
  std::string_view field;  // "ResPortfolio"
  std::string text;
};

// The figures as the result window shows them once there are orders; before the first one it leaves
// them blank.
std::array<ResultFigureText, 14> ResultFigureTexts(const ResultFigures& figures);

}  // namespace velumar
