#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ledger/plans.h"

namespace velumar {

// The current run, where a number is expected.
inline constexpr int kCurrentRun = 0;

// An order, from its row and its detail, or a holding wiped out by an offset of more than was held.
struct RunOrder {
  enum class Kind : std::uint8_t { kEntry, kOffset, kWiped };

  Kind kind = Kind::kEntry;
  LedgerOrderKey key;  // without a place for a wiped-out holding
  bool is_long = true;
  std::string symbol;
  std::string position;  // "Long", "Short", "Offset Long", "Offset Short"
  std::string iso_date;
  std::string date;  // as the user writes dates
  std::string time;
  double price = 0;
  std::optional<double> quantity;  // ordered; empty for an offset without a detail
  double held = 0;                 // by the side after the order; before it if wiped out
  double average = 0;              // entry price of the holding
  double points = 0;               // realised
  double commission = 0;
  double money = 0;  // realised money of the account after the order
  // From the detail.
  std::optional<double> close;  // `price` with all decimals
  std::optional<double> vat;
  std::optional<int> bar;
  std::optional<int> newest_shown;
  std::optional<LedgerPlan> plan;

  // True if later bars had already been shown when it was placed; empty if that was not recorded.
  std::optional<bool> LookAhead() const;
};

struct RunRecord {
  std::optional<LedgerRun> began;  // empty for rows from before runs were recorded
  std::vector<RunOrder> orders;    // in the order they were placed
};

// Throws LedgerError if no archived run has the number; kCurrentRun always passes.
void RequireRun(LedgerConnection& connection, int number);

// Throws like RequireRun. A run without orders reads as empty.
RunRecord ReadRun(LedgerConnection& connection, int number);

struct RunChoice {
  int number = kCurrentRun;
  std::string title;  // "3: ABC D from 25/01/2007, 14 orders"
};

// The current run, then the archived runs with orders, newest first. Throws LedgerError.
std::vector<RunChoice> RunChoices(LedgerConnection& connection);

// The number of the current run; 0 if runs were not recorded yet. Throws LedgerError.
int NewestRun(LedgerConnection& connection);

// A run that a window shows, and the newest run when the window was opened.
struct ShownRun {
  int number = kCurrentRun;
  int newest = 0;
};

// Where the rows of a shown run are now: the run that was current is in the archive once another
// one has started. Throws LedgerError.
int RunToRead(LedgerConnection& connection, ShownRun shown);

// The run, preceded by as many runs as it takes to find where its holdings were entered: "Play"
// after a pause starts a run with the holdings of the one before. Throws like ReadRun.
std::vector<RunRecord> ReadAccount(LedgerConnection& connection, int number);

// The relative difference up to which two quantities are the same: they pass through 32-bit floats
// and seven digits on their way into a row.
inline constexpr double kExactQuantity = 2e-6;

// True if the side held nothing before the order, within that difference.
bool HeldNothingBefore(const RunOrder& order);

}  // namespace velumar
