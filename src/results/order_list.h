#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "results/run_record.h"

namespace velumar {

struct OrderColumn {
  std::string_view title;
  bool numeric = false;
};

inline constexpr std::array<OrderColumn, 14> kOrderColumns{{{"No.", true},
                                                            {"Date"},
                                                            {"Time"},
                                                            {"Symbol"},
                                                            {"Order"},
                                                            {"Quantity", true},
                                                            {"Price", true},
                                                            {"Held", true},
                                                            {"Average", true},
                                                            {"Points", true},
                                                            {"Commission", true},
                                                            {"VAT", true},
                                                            {"Balance", true},
                                                            {"Note"}}};

struct OrderCell {
  std::string text;   // as the table shows it
  LedgerValue exact;  // as it sorts and is exported; dates are ISO texts
};

using OrderListRow = std::array<OrderCell, kOrderColumns.size()>;

// The orders as they were placed, each with what the side holds and the realised money after it. A
// holding that too large an offset wiped out has a row of its own, and its note says so; an order
// placed with hindsight is noted as such.
std::vector<OrderListRow> ListOrders(const RunRecord& run);

// Sorts by a column; rows that are equal there keep their order.
void SortOrders(std::vector<OrderListRow>& rows, std::size_t column, bool descending);

// The rows behind a line of titles, with plain numbers and ISO dates.
std::string OrdersCsv(const std::vector<OrderListRow>& rows);

}  // namespace velumar
