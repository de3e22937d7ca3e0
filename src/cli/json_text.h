#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "ledger/ledger.h"

namespace velumar {

// JSON on one line, or indented for people. Bytes that aren't UTF-8 are replaced.
std::string JsonText(const nlohmann::ordered_json& json, int indent = -1);

inline constexpr int kIndented = 2;

// A ledger value for programs (JSON and CSV): numbers with every digit, null as an empty text.
std::string LedgerText(const LedgerValue& value);

// The number that a decimal text is, without a fraction if it is whole; null for any other text.
nlohmann::ordered_json DecimalNumber(const std::string& text);

// A row of the ledger: column names and values as text.
nlohmann::ordered_json LedgerRowObject(const LedgerRecordset& records, std::size_t row);

}  // namespace velumar
