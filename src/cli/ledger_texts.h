#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "ledger/ledger.h"

namespace velumar {

// A value of a row as text for programs (JSON and CSV): numbers with every digit, null as an empty
// text.
std::string LedgerText(const LedgerValue& value);
// The same for people: a rounding residue is shown as 0.
std::string ReadableLedgerText(const LedgerValue& value);

// The ledger's columns by name, values as text.
nlohmann::ordered_json LedgerRowObject(const LedgerRecordset& records, std::size_t row);

long LedgerRowCount(LedgerConnection& ledger);
nlohmann::ordered_json NewestLedgerRow(LedgerConnection& ledger);

}  // namespace velumar
