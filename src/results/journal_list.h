#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "results/journal.h"
#include "results/order_list.h"

namespace velumar {

struct JournalColumn {
  std::string_view title;
  std::string_view field;  // in CSV and JSON
  bool numeric = false;
  bool listed = false;  // in tables; the others are in exports only
};

inline constexpr std::array<JournalColumn, 25> kJournalColumns{
    {{"Session", "session", true},
     {"Symbol", "symbol"},
     {"Interval", "interval"},
     {"Side", "side", false, true},
     {"Quantity", "quantity", true, true},
     {"Entered", "entered", false, true},
     {"Entry", "entry_price", true, true},
     {"Closed", "closed", false, true},
     {"Exit", "exit_price", true, true},
     {"Points", "points", true},
     {"Money", "money", true, true},
     {"R", "r", true, true},
     {"Result", "result"},
     {"Stop", "stop", true},
     {"Target", "target", true},
     {"Setup", "setup", false, true},
     {"Confidence", "confidence", true},
     {"Risk", "risk", true},
     {"Reasons", "reasons"},
     {"Look-ahead", "look_ahead"},
     {"Note", "note", false, true},
     {"Note written", "note_written"},
     {"Entry picture", "entry_picture"},
     {"Exit picture", "exit_picture"},
     {"Wiped", "wiped"}}};

using JournalRow = std::array<OrderCell, kJournalColumns.size()>;

// The columns of a trade. Exported dates are ISO texts, and what is missing is empty.
JournalRow RowOf(const JournalEntry& entry, int session);

// The columns that tables have.
std::vector<std::size_t> ListedColumns();

// A line of field names, then a line for each trade of the journals.
std::string JournalCsv(const std::vector<Journal>& journals);

// The plan in one line: "Plan: stop 508.00, target 530.00, breakout, confidence 4 of 5, risk
// 250.00"; empty without one. The reasons are not part of it.
std::string PlanText(const JournalEntry& entry);
// "Long 5 at 512.30 on 12/03/2007, closed at 520.00 on 13/03/2007"
std::string TradeText(const JournalEntry& entry);

}  // namespace velumar
