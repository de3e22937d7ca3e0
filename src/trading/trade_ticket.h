#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "ledger/plans.h"
#include "platform/platform.h"
#include "session/chart_side.h"
#include "session/run_inputs.h"
#include "session/sim_session.h"

namespace velumar {

// The boxes of the ticket, as typed.
struct TicketTexts {
  std::string stop = {};
  std::string target = {};
  std::string setup = {};
  std::string confidence = {};
  std::string reasons = {};
  std::string percent = {};  // of the portfolio that a trade may risk
};

// What the ticket answers while the trader types.
struct TicketAnswer {
  LedgerPlan plan;       // as it would be kept
  std::string problem;   // why it can't be kept; empty if it can
  std::string risk;      // "Long 5 risks 21,500.00, 1.08 % of the portfolio"
  std::string quantity;  // that would risk the percentage, "4"
};

// An order that the plan can be for.
struct TicketOrder {
  std::optional<PlannedOrder> order;  // nothing: the next one
  std::string title;                  // "Long 5 at 512.30 on 12/03/07"
};

// Reads a price as bars have it; nothing for an empty text. Returns why the text isn't one, with
// the box's name; else an empty text.
std::string ReadPrice(const std::string& name, const std::string& text,
                      std::optional<double>& price);

// The plans of a session: for the next order, the trades that are open, and the last order.
class TradeTicket {
 public:
  TradeTicket(SimSession& session, const RunInputs& inputs, Platform& platform,
              LedgerConnection& ledger, ChartSide& chart)
      : session_(session), inputs_(inputs), platform_(platform), ledger_(ledger), chart_(chart) {}

  // The next order, then the others, newest first.
  std::vector<TicketOrder> Orders() const;
  // Which of them a trader means who opens the ticket: the last order, if it is an open trade
  // without a plan, else the next one.
  static std::size_t Meant(const std::vector<TicketOrder>& orders);
  // The plan that the order has, as texts.
  TicketTexts Texts(const TicketOrder& order) const;
  TicketAnswer Answer(const TicketOrder& order, const TicketTexts& texts) const;
  // Writes the plan of an answer without a problem, or removes it if it says nothing, and shows it
  // on the charts. Throws LedgerError.
  void Keep(const TicketOrder& order, const LedgerPlan& plan);
  // Earlier setups, the last used one first.
  std::vector<std::string> Setups() const;

 private:
  LedgerPlan PlanOf(const TicketOrder& order) const;
  std::string ReadInto(LedgerPlan& plan, const TicketTexts& texts) const;
  std::string LevelProblem(const TicketOrder& order, const LedgerPlan& plan) const;
  void AddRisk(const TicketOrder& order, const std::string& percent, TicketAnswer& answer) const;
  double Price() const;

  SimSession& session_;
  const RunInputs& inputs_;
  Platform& platform_;
  LedgerConnection& ledger_;
  ChartSide& chart_;
};

}  // namespace velumar
