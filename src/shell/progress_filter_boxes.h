#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "forms/progress_controls.h"
#include "platform/platform.h"
#include "progress/played.h"
#include "progress/trade_filter.h"

namespace velumar {

// The lists and boxes of the progress tab that say which trades count, and what they are compared
// with.
class ProgressFilterBoxes {
 public:
  // A second group of trades, or why there is none.
  struct Compared {
    std::optional<Selection> trades = {};
    std::string hint = {};
  };

  ProgressFilterBoxes(ProgressControls& controls, Platform& platform)
      : controls_(controls), platform_(platform) {}

  // Calls `changed` when the trader changes one of them.
  void Connect(const std::function<void()>& changed);
  // Offers what was played, with nothing chosen. `changed` is not called.
  void List(const Played& played);
  // Days that are no dates are red, and let all trades pass.
  TradeFilter Filter() const;
  // `own` are the trades that the filter lets through.
  Compared Compare(const Played& played, const TradeFilter& filter, const Selection& own) const;

 private:
  void ListSessions(const Played& played);
  // yyyymmdd; 0 without a date.
  std::int32_t Day(TextBox& box) const;
  Compared TheTimeBefore(const Played& played, TradeFilter filter) const;
  Compared TheSessionBefore(const Played& played, TradeFilter filter) const;

  ProgressControls& controls_;
  Platform& platform_;
  // In the order of the lists.
  std::vector<std::int32_t> intervals_;
  std::vector<std::int8_t> hours_;
  std::vector<LedgerScope> sessions_;
  bool listing_ = false;
};

}  // namespace velumar
