#pragma once

#include <array>
#include <string>
#include <string_view>

#include "ledger/ledger.h"

namespace velumar {

// What the ledger's rows come to. One record, owned by the program, lives as long as it: a figure
// that a loading finds nothing for keeps the value of the loading before.
struct ResultFigures {
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
  // Of entries only; offsets pay theirs beside these.
  float ResLongComm = 0;
  float ResShortComm = 0;
  float ResTotalComm = 0;

  bool operator==(const ResultFigures&) const = default;
};

// Reads all figures from MyPortfolio, or from the rows of an archived run. Throws LedgerError when
// a query fails, and then every figure is as it was before.
void LoadResultFigures(LedgerConnection& connection, ResultFigures& figures, int archived_run = 0);

struct ResultFigureText {
  std::string_view field;  // "ResPortfolio"
  std::string_view label;  // "lblPortfolio"
  std::string text;
};

// The fourteen as their labels show them.
std::array<ResultFigureText, 14> ResultFigureTexts(const ResultFigures& figures);

}  // namespace velumar
