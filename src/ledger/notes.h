#pragma once

#include <string>
#include <vector>

#include "ledger/ledger.h"

namespace velumar {

// What a trader wrote about the trade of an order, or about a session.
struct LedgerNote {
  int session = 0;       // 0: the order's run belongs to none
  LedgerOrderKey order;  // without a place: about the session
  std::string text;
  std::string written = {};  // "2026-11-27 07:03:40", UTC
};

// Appends the note, so that earlier ones stay; an empty text takes the newest one back. Throws
// LedgerError.
void LedgerWriteNote(LedgerConnection& connection, const LedgerNote& note);

// All notes of the ledger, oldest first; an earlier version's has none. Throws LedgerError.
std::vector<LedgerNote> LedgerNotes(LedgerConnection& connection);

// The file for the picture of an order, see platform/journal_picture.h; empty if the order has no
// row or the ledger is in memory.
std::string LedgerPictureFile(const LedgerConnection& connection, const LedgerOrderKey& order);

}  // namespace velumar
