#pragma once

#include <string>
#include <vector>

#include "results/journal.h"

namespace velumar {

// The journals as one HTML page that needs no other file: a table of all trades, then a section for
// each with its pictures, plan and notes. Texts are escaped. A picture that can't be read any more
// is left out.
std::string JournalPage(LedgerConnection& connection, const std::vector<Journal>& journals);

}  // namespace velumar
