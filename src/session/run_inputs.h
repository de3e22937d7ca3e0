#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "session/sim_session.h"

namespace velumar {

// The symbol of a blind run whose security is drawn.
inline constexpr std::string_view kAnySecurity = "any";

// What the trader has entered for runs and orders. Each call returns what is entered at that
// moment, so callers ask when the answer counts and not before. Texts are as typed.
class RunInputs {
 public:
  virtual ~RunInputs() = default;

  // The next run.
  virtual std::string Symbol() const = 0;
  // The run is blind: its start is drawn, and its symbol too if that is kAnySecurity.
  virtual bool Blind() const = 0;
  virtual std::string Interval() const = 0;       // "D" or minutes
  virtual std::int32_t StartDay() const = 0;      // yyyymmdd
  virtual std::string StartingMoney() const = 0;  // of the account
  // The current run.
  virtual std::string Delay() const = 0;  // seconds between two bars
  virtual int ChartCount() const = 0;     // charts to refresh at each bar; 0: not a number
  // Orders.
  virtual std::string Quantity() const = 0;
  virtual std::string Commission() const = 0;  // percent under stock rules, else money per contract
  virtual std::string Vat() const = 0;         // percent of the commission
  virtual std::string Margin() const = 0;      // money of one contract
  virtual std::string ProfitPerContract() const = 0;  // money of one point
};

// Why the bars in memory can't be fed, stepped or traded: none are loaded, or another symbol or
// interval than theirs is entered. Empty if they can.
std::string LoadedSeriesProblem(const SimSession& session, const RunInputs& inputs);

}  // namespace velumar
