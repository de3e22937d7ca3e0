#include "results/named_values.h"

#include <algorithm>

namespace velumar {

const LedgerValue* NamedValues::Find(std::string_view column) const {
  static const LedgerValue kNull;
  const auto at = std::find(columns_.begin(), columns_.end(), column);
  return at == columns_.end() ? &kNull : &values_[static_cast<std::size_t>(at - columns_.begin())];
}

std::vector<NamedValues> NamedRows(const LedgerRecordset& records) {
  std::vector<NamedValues> rows;
  for (std::size_t i = 0; i < records.rows.size(); ++i) rows.emplace_back(records, i);
  return rows;
}

}  // namespace velumar
