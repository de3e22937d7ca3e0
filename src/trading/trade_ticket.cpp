#include "trading/trade_ticket.h"

#include <cmath>
#include <utility>

#include "base/dates.h"
#include "base/decimal.h"
#include "base/number_text.h"
#include "base/text.h"
#include "marketdata/interval.h"
#include "results/figure_texts.h"
#include "session/plan_levels.h"
#include "trading/account.h"

namespace velumar {

namespace {

constexpr std::size_t kLongestSetup = 60;      // bytes
constexpr std::size_t kLongestReasons = 1000;  // bytes

std::string SideName(bool is_long) { return is_long ? "Long" : "Short"; }

// The side that a stop, or else a target, is meant for.
bool ImpliesLong(const LedgerPlan& plan, double price) {
  return plan.stop ? *plan.stop < price : plan.target.value_or(price) > price;
}

std::string OrderTitle(const PlannedOrder& order, const SimSession& session,
                       std::string_view date_pattern) {
  std::string title = (order.entry ? "" : "Offset ") + SideName(order.is_long) + " " +
                      QuantityText(order.quantity) + " at " + PlanPriceText(order.price);
  if (!session.HasBar(order.bar)) return title;
  const auto bar = static_cast<std::size_t>(order.bar);
  title += " on " + DateText(session.BarDate[bar], date_pattern);
  return session.Run.interval == kDailyInterval
             ? title
             : title + " " + PatternText(session.BarTime[bar], kTimePattern);
}

}  // namespace

// Bars are floats.
std::string ReadPrice(const std::string& name, const std::string& text,
                      std::optional<double>& price) {
  price.reset();
  if (Trimmed(text).empty()) return {};
  const std::optional<float> read = ToSingle(text);
  if (!read) return name + ": \"" + text + "\" is not a price";
  price = ReadableDouble(*read);
  return {};
}

std::vector<TicketOrder> TradeTicket::Orders() const {
  std::vector<TicketOrder> orders{{std::nullopt, "The next order"}};
  const std::string pattern = platform_.locale.ShortDatePattern();
  const std::vector<PlannedOrder>& placed = session_.Plans.Orders();
  for (auto order = placed.rbegin(); order != placed.rend(); ++order) {
    orders.push_back({*order, OrderTitle(*order, session_, pattern)});
  }
  return orders;
}

std::size_t TradeTicket::Meant(const std::vector<TicketOrder>& orders) {
  if (orders.size() < 2) return 0;
  const PlannedOrder& last = *orders[1].order;
  return last.held > 0 && !last.plan ? 1 : 0;
}

LedgerPlan TradeTicket::PlanOf(const TicketOrder& order) const {
  const auto& plan = order.order ? order.order->plan : session_.Plans.Next();
  if (plan) return *plan;
  LedgerPlan fresh;
  fresh.session = session_.SessionNumber;
  if (order.order) fresh.order = order.order->key;
  return fresh;
}

TicketTexts TradeTicket::Texts(const TicketOrder& order) const {
  const LedgerPlan plan = PlanOf(order);
  const auto price = [](const std::optional<double>& value) {
    return value ? PlanPriceText(*value) : std::string();
  };
  return {.stop = price(plan.stop),
          .target = price(plan.target),
          .setup = plan.setup,
          .confidence = plan.confidence == 0 ? "" : std::to_string(plan.confidence),
          .reasons = plan.reasons,
          .percent = {}};
}

// Returns the first problem.
std::string TradeTicket::ReadInto(LedgerPlan& plan, const TicketTexts& texts) const {
  if (!ledger_.CanWrite()) return ledger_.WhyNot();
  if (!session_.HasBar(session_.BarIndex)) return "No current bar";
  std::string problem = ReadPrice("Stop", texts.stop, plan.stop);
  if (problem.empty()) problem = ReadPrice("Target", texts.target, plan.target);
  if (!problem.empty()) return problem;
  plan.setup = Trimmed(texts.setup);
  plan.reasons = Trimmed(texts.reasons);
  if (plan.setup.size() > kLongestSetup) return "Setup: too long";
  if (plan.reasons.size() > kLongestReasons) return "Reasons: too long";
  const std::string confidence = Trimmed(texts.confidence);
  const bool one_digit = confidence.size() == 1 && confidence[0] >= '1' && confidence[0] <= '5';
  if (!confidence.empty() && !one_digit) {
    return "Confidence: \"" + confidence + "\" is not a number from 1 to 5";
  }
  plan.confidence = one_digit ? confidence[0] - '0' : 0;
  return {};
}

// Levels that stay as they are were right when they were set.
std::string TradeTicket::LevelProblem(const TicketOrder& order, const LedgerPlan& plan) const {
  const LedgerPlan before = PlanOf(order);
  const bool stop_changed = plan.stop && plan.stop != before.stop;
  const bool target_changed = plan.target && plan.target != before.target;
  if (order.order && order.order->held <= 0 && (stop_changed || target_changed)) {
    return "Only an open trade has a stop and a target";
  }
  const double price = Price();
  const bool is_long = order.order ? order.order->is_long : ImpliesLong(plan, price);
  const auto wrong = [&](const std::string& name, bool below) {
    return name + " of a " + SideName(is_long) + " must be " + (below ? "below " : "above ") +
           PlanPriceText(price);
  };
  if (stop_changed && StopDistance(*plan.stop, is_long, price) <= 0) {
    return wrong("The stop", is_long);
  }
  if (target_changed && StopDistance(*plan.target, is_long, price) >= 0) {
    return wrong("The target", !is_long);
  }
  return {};
}

TicketAnswer TradeTicket::Answer(const TicketOrder& order, const TicketTexts& texts) const {
  TicketAnswer answer;
  LedgerPlan& plan = answer.plan = PlanOf(order);
  answer.problem = ReadInto(plan, texts);
  if (answer.problem.empty()) answer.problem = LevelProblem(order, plan);
  if (!answer.problem.empty()) return answer;
  const LedgerPlan before = PlanOf(order);
  if (plan.stop != before.stop) plan.stop_since = session_.BarIndex;
  if (plan.target != before.target) plan.target_since = session_.BarIndex;
  // A stop that is corrected before the next bar is the one that the trade began with.
  const bool at_newest = session_.BarIndex >= session_.NewestShownBar;
  const bool corrected =
      order.order && order.order->bar == session_.BarIndex && at_newest && plan.stop != before.stop;
  if (order.order && order.order->entry && (!plan.risk || corrected)) {
    plan.risk = RiskOf(plan, order.order->is_long, order.order->price, order.order->quantity,
                       session_.ProfitPerContract);
  }
  AddRisk(order, texts.percent, answer);
  return answer;
}

void TradeTicket::AddRisk(const TicketOrder& order, const std::string& percent,
                          TicketAnswer& answer) const {
  const LedgerPlan& plan = answer.plan;
  const auto risks = [this](const std::string& what, double money) {
    const double portfolio = session_.Portfolio;
    const std::string share =
        portfolio > 0 ? ", " + PercentText(money / portfolio) + " of the portfolio" : "";
    return what + " " + MoneyText(money) + share;
  };
  if (order.order) {
    if (plan.risk) answer.risk = risks("At the entry it risked", *plan.risk);
    return;
  }
  const OrderFigures figures =
      ReadOrderFigures(inputs_, session_.IsStockMarket(), inputs_.Quantity());
  const bool is_long = ImpliesLong(plan, Price());
  const double per_point = session_.ProfitPerContract;
  const auto risk = RiskOf(plan, is_long, Price(), figures.quantity, per_point);
  if (!risk) return;
  answer.risk =
      figures.problem.empty()
          ? risks(SideName(is_long) + " " + QuantityText(figures.quantity) + " risks", *risk)
          : figures.problem;
  const double of_one = RiskOf(plan, is_long, Price(), 1, per_point).value_or(0);
  const std::optional<double> share = ToDouble(percent);
  constexpr double kPercent = 100;
  const bool usable = share && *share > 0 && *share <= kPercent;
  if (!usable || of_one <= 0 || session_.Portfolio <= 0) return;
  constexpr double kBinaryNoise = 1e-9;  // 4.999999999 is 5
  const double quantity = *share / kPercent * session_.Portfolio / of_one;
  answer.quantity = QuantityText(std::floor(quantity * (1 + kBinaryNoise)));
}

double TradeTicket::Price() const {
  return ReadableDouble(session_.BarClose.at(static_cast<std::size_t>(session_.BarIndex)));
}

void TradeTicket::Keep(const TicketOrder& order, const LedgerPlan& plan) {
  std::optional<LedgerPlan> kept;
  if (!plan.Empty()) {
    kept = plan;
    kept->written = platform_.clock.UtcMoment();
    kept->id = LedgerWritePlan(ledger_, *kept);
  } else if (plan.id != 0) {
    LedgerErasePlan(ledger_, plan.id);
  }
  if (order.order) {
    session_.Plans.SetPlan(order.order->key, std::move(kept));
  } else {
    session_.Plans.SetNext(std::move(kept));
  }
  chart_.ShowPositions();
}

std::vector<std::string> TradeTicket::Setups() const {
  return ledger_.CanRead() ? LedgerSetups(ledger_) : std::vector<std::string>();
}

}  // namespace velumar
