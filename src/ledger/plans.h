#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ledger/ledger.h"

namespace velumar {

// What the trader plans for an order. Prices are those that the session shows.
struct LedgerPlan {
  int id = 0;  // 0: not in the ledger
  int session = 0;
  LedgerOrderKey order = {};  // without a place while it waits for the next order of its session
  std::optional<double> stop = {};
  std::optional<double> target = {};
  std::string setup = {};
  int confidence = 0;  // 1 to 5; 0: none given
  std::string reasons = {};
  std::optional<double> risk = {};  // money, of the whole quantity when the order was placed
  int stop_since = 0;               // the bar at which it was set; later ones can reach it
  int target_since = 0;             // the same
  std::string written = {};         // as LedgerSession::begun

  bool Waits() const { return order.place == 0; }
  bool HasLevels() const { return stop || target; }
  // True if it says nothing.
  bool Empty() const { return !HasLevels() && setup.empty() && confidence == 0 && reasons.empty(); }
};

// All throw LedgerError. A ledger of an earlier version has no plans.

// Writes the plan, in place of the one with its number, and returns its number.
int LedgerWritePlan(LedgerConnection& connection, const LedgerPlan& plan);
void LedgerErasePlan(LedgerConnection& connection, int id);
std::vector<LedgerPlan> LedgerPlansOfSession(LedgerConnection& connection, int session);
std::vector<LedgerPlan> LedgerPlansOfRun(LedgerConnection& connection, int run);
// The setups of all plans, each once, the last used one first. At most 100.
std::vector<std::string> LedgerSetups(LedgerConnection& connection);

}  // namespace velumar
