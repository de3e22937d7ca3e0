#pragma once

#include <optional>
#include <string>
#include <vector>

#include "session/sim_session.h"

namespace velumar {

// A stop or target of an open trade.
struct PlanLevel {
  bool stop = true;
  double price = 0;
  const PlannedOrder* order = nullptr;  // of SimSession::Plans; null: of the plan that waits
  int bar = 0;                          // the order's, or the current one
  bool reached = false;                 // by the current bar or an earlier one
};

// True if the bar has traded at the price or beyond it, coming from above or from below.
bool BarReaches(const SimSession& session, int bar, float price, bool from_above);

// Those of the plan that waits and of the trades that were entered by the current bar. Pointers are
// valid until the next order.
std::vector<PlanLevel> PlanLevels(const SimSession& session);

// Which of them were reached first at one of the bars after `before` up to the current one, as a
// sentence: "Stop 508.00 of Long 5 reached." Empty if none was. A stop of a long trade is reached
// once a bar after it was set has traded at or below it.
std::string ReachedText(const SimSession& session, int before);

// A price as the trader would write it, with at least two decimals.
std::string PlanPriceText(double price);

// The setting of the switch, and its value if it is off.
inline constexpr std::string_view kPlanPauseSetting = "PauseAtStopAndTarget";
inline constexpr std::string_view kNoPlanPause = "0";

}  // namespace velumar
