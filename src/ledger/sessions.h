#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace velumar {

// Names an order in the tables next to the rows.
struct LedgerOrderKey {
  int run = 0;
  int place = 0;  // the rowid in MyPortfolio, which the archive keeps; 0: the order has no row

  auto operator<=>(const LedgerOrderKey&) const = default;
};

// The account boxes as typed.
struct LedgerAccount {
  std::string money;  // at the start
  std::string margin;
  std::string money_per_point;
  std::string commission;
  std::string vat;

  bool operator==(const LedgerAccount&) const = default;
};

// A session: from "Start" until the trader ends it, with all its runs.
struct LedgerSession {
  int number = 0;  // 0: not in the ledger
  std::string directory;
  std::string symbol;
  std::string interval;        // "D" or minutes
  std::int32_t start_day = 0;  // yyyymmdd
  LedgerAccount account;
  std::string begun;  // "2026-11-27 07:03:40", UTC
  bool ended = false;
  std::string mask = {};      // the encoded key of a session that is played blind, else empty
  LedgerOrderKey again = {};  // the entry of the trade that it plays again; without a run: none
};

// Where a session is, written after each step and with each order.
struct LedgerMoment {
  int session = 0;         // its number; 0: none
  int bar = 0;             // index of the current bar; -1: none
  int newest_shown = 0;    // the newest bar that the trader has seen
  int first_shown = 0;     // where the run began at its start date
  std::int32_t date = 0;   // of the current bar, yyyymmdd
  std::int32_t time = 0;   // hhmmss
  std::string bars_check;  // of the bars up to the current one, to notice another series
  std::string book;        // session/moment.h
  bool as_shown = false;   // the book is; else its holdings are still to be valued at the bar
  std::string touched;     // when it was written, as LedgerSession::begun
};

struct LedgerPlayed {
  LedgerSession session;
  LedgerMoment moment;
};

}  // namespace velumar
