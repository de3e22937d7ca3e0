#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ledger/plans.h"

namespace velumar {

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
  double money = 0;                       // realised money of the account after the order
  std::optional<double> money_per_point;  // of its run; empty if runs were not recorded yet
  // From the detail.
  std::optional<double> close;  // `price` with all decimals
  // The price at which the account counts it, if not at these: a blind session rounds its masked
  // prices, and money stays as it was played.
  std::optional<double> counted;
  std::optional<double> vat;
  std::optional<int> bar;
  std::optional<int> newest_shown;
  std::optional<LedgerPlan> plan;

  // True if later bars had already been shown when it was placed; empty if that was not recorded.
  std::optional<bool> LookAhead() const;
};

// The day on which a run began, `LedgerRun::start_date`, as the user writes dates; empty if it has
// none.
std::string StartDayText(const LedgerConnection& connection, std::string digits);

// A run, or all runs of a session as one.
struct RunRecord {
  std::optional<LedgerRun>
      began;                     // of the first run; empty for rows from before runs were recorded
  std::vector<RunOrder> orders;  // in the order they were placed
};

// Reads with one select for each table. Without orders it is empty. Throws LedgerError, also if the
// ledger has no such run or session.
RunRecord ReadRecord(LedgerConnection& connection, LedgerScope scope);

// The number of the newest run of the scope; 0 if runs were not recorded yet. Throws LedgerError.
int NewestRun(LedgerConnection& connection, LedgerScope scope = kCurrentRun);

// The session of a run; the run itself if that was taken off the list or never recorded. Throws
// LedgerError.
LedgerScope ScopeOfRun(LedgerConnection& connection, int run);

// The run or session, preceded by as much as it takes to find where its holdings were entered:
// "Play" after a pause starts a run with the holdings of the one before. Throws like ReadRecord.
std::vector<RunRecord> ReadAccount(LedgerConnection& connection, LedgerScope scope);

// The relative difference up to which two quantities are the same: they pass through 32-bit floats
// and seven digits on their way into a row.
inline constexpr double kExactQuantity = 2e-6;

// True if the side held nothing before the order, within that difference.
bool HeldNothingBefore(const RunOrder& order);

}  // namespace velumar
