#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "ledger/ledger.h"

namespace velumar {

// The values of one row by column name; a missing column counts as null.
class NamedValues {
 public:
  NamedValues(const LedgerRecordset& records, std::size_t row)
      : columns_(records.columns), values_(records.rows.at(row)) {}

  std::optional<double> Figure(std::string_view column) const { return Get<double>(column); }
  double Number(std::string_view column) const { return Figure(column).value_or(0); }
  std::optional<int> Whole(std::string_view column) const {
    const auto number = Figure(column);
    return number ? std::optional(WholeOf(*number)) : std::nullopt;
  }
  std::string Text(std::string_view column) const {
    return Get<std::string>(column).value_or(std::string());
  }

 private:
  template <typename Value>
  std::optional<Value> Get(std::string_view column) const {
    const auto at = std::find(columns_.begin(), columns_.end(), column);
    if (at == columns_.end()) return std::nullopt;
    const auto* value =
        std::get_if<Value>(&values_[static_cast<std::size_t>(at - columns_.begin())]);
    return value == nullptr ? std::nullopt : std::optional(*value);
  }

  const std::vector<std::string>& columns_;
  const std::vector<LedgerValue>& values_;
};

// The records must outlive the result.
inline std::vector<NamedValues> NamedRows(const LedgerRecordset& records) {
  std::vector<NamedValues> rows;
  for (std::size_t i = 0; i < records.rows.size(); ++i) rows.emplace_back(records, i);
  return rows;
}

}  // namespace velumar
