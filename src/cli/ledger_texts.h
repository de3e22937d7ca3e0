#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "ledger/ledger.h"

namespace velumar {

// A value of a row as text: numbers as plain number text, null as an empty one. For programs: JSON
// and CSV have every digit.
std::string LedgerText(const LedgerValue& value);
// The same for people: what rounding has left of a number reads 0.
std::string ReadableLedgerText(const LedgerValue& value);

// The ledger's columns by name, values as text.
nlohmann::ordered_json LedgerRowObject(const LedgerRecordset& records, std::size_t row);

long LedgerRowCount(LedgerConnection& ledger);
nlohmann::ordered_json NewestLedgerRow(LedgerConnection& ledger);

// "[Profile], [Symbol], …": the ledger's columns for a select.
std::string LedgerColumnList();

}  // namespace velumar
