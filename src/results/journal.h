#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ledger/notes.h"
#include "results/trade_list.h"

namespace velumar {

enum class Outcome : std::uint8_t { kWon, kLost, kEven, kOpen };

// A trade with what was planned, seen and thought.
struct JournalEntry {
  std::string symbol;
  std::string interval;
  // Of an open trade only the lot and the entry's order are filled in.
  Trade trade;
  bool open = false;
  bool look_ahead = false;  // later bars were known at the entry or the exit
  std::optional<LedgerPlan> plan;
  std::vector<LedgerNote> notes;  // oldest first; the newest one counts
  // Files; empty if there is none.
  std::string entry_picture;
  std::string exit_picture;

  Outcome Result() const;
  // The order that a note about the trade is written for: its entry, if the ledger has it.
  LedgerOrderKey NoteKey() const;
  std::string Note() const { return notes.empty() ? std::string() : notes.back().text; }
};

// The trades and notes of a run or session. Those of a blind session are masked as its rows are.
struct Journal {
  LedgerScope scope;
  int session = 0;                   // 0: none
  std::string title;                 // "ABC, daily bars, from 25/01/2007"
  std::vector<LedgerNote> notes;     // about the session, oldest first
  std::vector<JournalEntry> trades;  // as they were closed, then those that are still open
};

// Throws LedgerError, also if the ledger has no such run or session.
Journal ReadJournal(LedgerConnection& connection, LedgerScope scope);
// Of every session and of every run that belongs to none, the newest first; without those that
// have neither trades nor notes. Throws LedgerError.
std::vector<Journal> ReadJournals(LedgerConnection& connection);
// Of these runs and sessions, in that order. Throws like ReadJournal.
std::vector<Journal> ReadJournals(LedgerConnection& connection,
                                  const std::vector<LedgerScope>& scopes);

// Which trades to list. What is empty lets all pass.
struct JournalFilter {
  std::optional<std::string> setup = {};
  std::optional<bool> is_long = {};
  std::optional<Outcome> outcome = {};
  std::string text = {};  // somewhere in symbol, dates, setup, reasons or note, whatever the case
};
bool Passes(const JournalEntry& entry, const JournalFilter& filter);

// The setups of the trades, each once, in the order of the alphabet.
std::vector<std::string> SetupsOf(const std::vector<JournalEntry>& entries);

// When the note was written, and that it is not the first: "28/11/2026 10:12 UTC, changed". Empty
// without a note.
std::string NoteDate(const LedgerConnection& connection, const std::vector<LedgerNote>& notes);

}  // namespace velumar
