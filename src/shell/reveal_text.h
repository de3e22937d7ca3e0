#pragma once

#include <string>
#include <string_view>

#include "ledger/ledger.h"
#include "session/reveal.h"

namespace velumar {

// What a blind session has played, in lines: security, days in the user's date pattern, and its
// result next to chance, if its series can be read. Never throws.
std::string RevealText(const RevealedSession& session, LedgerConnection& ledger,
                       std::string_view date_pattern);

}  // namespace velumar
