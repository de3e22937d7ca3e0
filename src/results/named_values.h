#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "ledger/ledger.h"

namespace velumar {

// Values of one row by the names of their columns; a column that isn't there counts as null.
class NamedValues {
 public:
  NamedValues(const LedgerRecordset& records, std::size_t row)
      : columns_(records.columns), values_(records.rows.at(row)) {}

  std::optional<double> Figure(std::string_view column) const {
    const auto* number = std::get_if<double>(Find(column));
    return number == nullptr ? std::nullopt : std::optional(*number);
  }
  double Number(std::string_view column) const { return Figure(column).value_or(0); }
  std::optional<int> Whole(std::string_view column) const {
    const auto number = Figure(column);
    return number ? std::optional(static_cast<int>(*number)) : std::nullopt;
  }
  std::string Text(std::string_view column) const {
    const auto* text = std::get_if<std::string>(Find(column));
    return text == nullptr ? std::string() : *text;
  }

 private:
  const LedgerValue* Find(std::string_view column) const;

  const std::vector<std::string>& columns_;
  const std::vector<LedgerValue>& values_;
};

// All rows, in their order. The records must outlive them.
std::vector<NamedValues> NamedRows(const LedgerRecordset& records);

}  // namespace velumar
