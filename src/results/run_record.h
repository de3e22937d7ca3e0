#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ledger/ledger.h"

namespace velumar {

// Whose results are shown: an archived run's by its number, or those of the rows now in the ledger.
inline constexpr int kRunNow = 0;

// An order as its row and its detail tell it, or a holding that too large an offset wiped out.
struct RunOrder {
  enum class Kind : std::uint8_t { kEntry, kOffset, kWiped };

  Kind kind = Kind::kEntry;
  bool is_long = true;
  std::string symbol;
  std::string position;  // "Long", "Short", "Offset Long", "Offset Short"
  std::string iso_date;
  std::string date;  // as the user writes dates
  std::string time;
  double price = 0;
  std::optional<double> quantity;  // ordered; an offset without a detail doesn't tell
  double held = 0;                 // by the side after the order; before it, where it was wiped out
  double average = 0;              // entry price of what is held
  double points = 0;               // realised
  double commission = 0;
  double money = 0;  // realised money of the account after the order
  // From the detail.
  std::optional<double> close;  // `price` with all its decimals
  std::optional<double> vat;
  std::optional<int> bar;
  std::optional<int> newest_shown;

  // Placed at a bar when later ones had been shown already; nothing where that wasn't noted.
  std::optional<bool> Hindsight() const;
};

struct RunRecord {
  std::optional<LedgerRun> began;  // nothing for rows that came before runs were noted
  std::vector<RunOrder> orders;    // as they were placed
};

// Throws LedgerError when no archived run has the number; kRunNow always passes.
void RequireRun(LedgerConnection& connection, int number);

// Throws as RequireRun. A run that placed no order reads as empty.
RunRecord ReadRun(LedgerConnection& connection, int number);

// The run as the last of as many runs as it takes to find where its holdings were entered: "Play"
// after a pause begins a run with what the one before held. Throws as ReadRun.
std::vector<RunRecord> ReadAccount(LedgerConnection& connection, int number);

// How far two quantities may differ, as a part of them, that are the same one: they pass through
// 32-bit floats and seven digits on their way into a row.
inline constexpr double kExactQuantity = 2e-6;

// Whether a side held nothing before an order, as far as quantities in rows are exact.
bool HeldNothingBefore(const RunOrder& order);

}  // namespace velumar
