#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "ledger/trades.h"
#include "progress/trade_filter.h"
#include "results/order_list.h"

namespace velumar {

// Each trade in full, for other programs.

struct TradeField {
  std::string_view name;
  bool numeric = true;
};

// Points are for one unit of quantity; money and R are before costs, `net` after them. `minutes` is
// trading time, empty on daily bars, where `bars` are days. Of adverse and favourable excursions,
// which only bound the truth, `_bars` is how many bars after the entry they were. `exit_efficiency`
// is the part of the range of the trade's bars that was below the exit of a Long or above that of a
// Short (Sweeney 1996, "Maximum Adverse Excursion", on where exits lie in a trade's range).
// `after_1` to `after_20` are what holding so many bars more would have added, in money, as far as
// the session was played.
inline constexpr std::array<TradeField, 36> kTradeFields{{{"session"},
                                                          {"run"},
                                                          {"symbol", false},
                                                          {"interval", false},
                                                          {"blind"},
                                                          {"side", false},
                                                          {"quantity"},
                                                          {"entered", false},
                                                          {"entry_price"},
                                                          {"closed", false},
                                                          {"exit_price"},
                                                          {"bars"},
                                                          {"minutes"},
                                                          {"points"},
                                                          {"money"},
                                                          {"r"},
                                                          {"costs"},
                                                          {"net"},
                                                          {"risk"},
                                                          {"adverse"},
                                                          {"adverse_money"},
                                                          {"adverse_r"},
                                                          {"adverse_bars"},
                                                          {"favourable"},
                                                          {"favourable_money"},
                                                          {"favourable_r"},
                                                          {"favourable_bars"},
                                                          {"exit_efficiency"},
                                                          {"after_1"},
                                                          {"after_5"},
                                                          {"after_20"},
                                                          {"setup", false},
                                                          {"confidence"},
                                                          {"weekday", false},
                                                          {"hour"},
                                                          {"look_ahead"}}};

// A line of field names, then a line for each trade of the selection: places as PlayedOf of the
// same scopes counts them.
std::string TradesCsv(const std::vector<PlayedScope>& scopes,
                      const std::vector<LedgerEntryPlan>& plans, const Selection& selection);

}  // namespace velumar
