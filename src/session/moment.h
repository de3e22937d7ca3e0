#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ledger/sessions.h"
#include "session/sim_session.h"
#include "session/stored_bars.h"

namespace velumar {

// What a session needs to be resumed: where it is and what the trader holds.

// The fields of a book, exact, in the order of their declaration, with blanks between them.
std::string BookText(const Book& book);
// The book of such a text. Throws std::runtime_error for any other text.
Book BookFromText(std::string_view text);

// A checksum of the bars 0 to i at each i.
std::vector<std::uint64_t> BarChecks(const SeriesView& bars);

// In letters: digits could read as a price of a blind session.
std::string ChecksumText(std::uint64_t check);

// Where the session is now, for the ledger.
LedgerMoment MomentOf(const SimSession& session, std::string touched);

// A bar of a series: its index, moment and the checksum of the bars up to it.
LedgerMoment MomentOfBar(const SeriesView& bars, int bar);

// How the bars of a series differ from those that a session had up to its current one, as a
// sentence; empty if they are the same.
std::string SeriesChange(const LedgerMoment& moment, const SeriesView& bars);

// When the bar of a row was: its date and time as a ledger has them, "2007-01-25" and "16:30:00".
LedgerMoment MomentOfRow(std::string iso_date, std::string time);

// The newest bar at or before the moment's, -1 if there is none.
int BarOfMoment(const LedgerMoment& moment, const SeriesView& bars);

}  // namespace velumar
