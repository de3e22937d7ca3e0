#pragma once

#include <array>
#include <span>
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
  std::string text;   // as shown in the table
  LedgerValue exact;  // for sorting and export; dates are ISO texts
};

OrderCell TextCell(const std::string& text);

// A line of CSV of the exact values. A text that a spreadsheet would compute ("=1+1", "- late")
// gets an apostrophe before it.
std::string CsvLine(std::span<const OrderCell> cells);

using OrderListRow = std::array<OrderCell, kOrderColumns.size()>;

// The orders as they were placed, each with the holding of its side and the realised money after
// it. A holding wiped out by an offset of more than was held has a row of its own. The note says
// so, and marks look-ahead orders.
std::vector<OrderListRow> ListOrders(const RunRecord& record);

// Sorts by a column; rows with equal values keep their order.
void SortOrders(std::vector<OrderListRow>& rows, std::size_t column, bool descending);

// A line of titles and the rows, with plain numbers and ISO dates.
std::string OrdersCsv(const std::vector<OrderListRow>& rows);

}  // namespace velumar
