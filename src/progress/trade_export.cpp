#include "progress/trade_export.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>

#include "base/dates.h"
#include "base/decimal.h"
#include "base/number_text.h"
#include "results/figure_texts.h"

namespace velumar {

namespace {

std::string MomentText(std::int32_t day, std::int32_t time) {
  if (day == 0) return {};
  return IsoDate(day) + " " + PatternText(time, kTimePattern);
}

std::optional<double> Product(std::optional<double> a, double b) {
  return a ? std::optional(*a * b) : std::nullopt;
}

std::optional<double> Ratio(std::optional<double> a, double b) {
  return a && b > 0 ? std::optional(*a / b) : std::nullopt;
}

// The fields of a trade; what is missing is null.
using TradeRow = std::array<LedgerValue, kTradeFields.size()>;

// Fills in the fields of a row one after the other.
class RowFiller {
 public:
  RowFiller(const PlayedScope& scope, const LedgerTrade& trade, const LedgerEntryPlan* plan)
      : scope_(scope), trade_(trade), plan_(plan), risk_(plan == nullptr ? 0 : plan->risk) {
    risk_ *= trade.entry_share;
  }

  TradeRow Fill() {
    AddSession();
    AddEnds();
    AddResult();
    AddExcursion(trade_.adverse, trade_.adverse_bar);
    AddExcursion(trade_.favourable, trade_.favourable_bar);
    AddIfAny(ExitEfficiency());
    for (const int bars : {1, 5, 20}) AddIfAny(After(bars));
    AddPlan();
    return row_;
  }

 private:
  void Add(LedgerValue value) { row_.at(next_++) = std::move(value); }
  void AddIfAny(std::optional<double> number) { Add(OrNull(number)); }

  std::optional<int> Bars() const {
    if (!trade_.entry.bar || !trade_.exit.bar) return std::nullopt;
    return *trade_.exit.bar - *trade_.entry.bar;
  }
  double MoneyOfPoint() const { return trade_.quantity * trade_.money_per_point.value_or(0); }

  // Of the trade's side, in points.
  double Gain(double from, double to) const {
    return trade_.is_long ? DecimalDifference(to, from) : DecimalDifference(from, to);
  }

  void AddSession() {
    const LedgerScope scope = scope_.state.scope;
    const bool session = scope.kind == LedgerScope::Kind::kSession;
    Add(session ? LedgerValue(double(scope.number)) : LedgerValue());
    Add(session ? LedgerValue() : LedgerValue(double(scope.number)));
    Add(scope_.state.began.symbol);
    Add(scope_.state.began.interval);
    Add(double(scope_.state.blind));
  }

  void AddEnds() {
    Add(trade_.is_long ? "Long" : "Short");
    Add(trade_.quantity);
    Add(MomentText(trade_.entry.day, trade_.entry.time));
    Add(trade_.entry.price);
    Add(MomentText(trade_.exit.day, trade_.exit.time));
    Add(trade_.exit.price);
    const auto bars = Bars();
    const auto minutes = ExactNumber<int>(scope_.state.began.interval);
    Add(OrNull(bars));
    Add(bars && minutes ? LedgerValue(double(*bars * *minutes)) : LedgerValue());
  }

  void AddResult() {
    Add(Gain(trade_.entry.price, trade_.exit.price));
    AddIfAny(trade_.money);
    AddIfAny(Ratio(trade_.money, risk_));
    Add(trade_.costs);
    AddIfAny(trade_.money ? std::optional(*trade_.money - trade_.costs) : std::nullopt);
    AddIfAny(risk_ > 0 ? std::optional(risk_) : std::nullopt);
  }

  void AddExcursion(std::optional<double> points, int bar) {
    const auto money = Product(points, MoneyOfPoint());
    AddIfAny(points);
    AddIfAny(money);
    AddIfAny(Ratio(money, risk_));
    Add(points && trade_.entry.bar ? LedgerValue(double(bar - *trade_.entry.bar)) : LedgerValue());
  }

  std::optional<double> ExitEfficiency() const {
    if (!trade_.adverse || !trade_.favourable) return std::nullopt;
    return Ratio(Gain(trade_.entry.price, trade_.exit.price) + *trade_.adverse,
                 *trade_.adverse + *trade_.favourable);
  }

  std::optional<double> After(int bars) const {
    if (!trade_.exit.bar) return std::nullopt;
    const LedgerTrades& trades = scope_.trades;
    const int at = *trade_.exit.bar + bars - trades.first_bar;
    if (at < bars || at >= static_cast<int>(trades.closes.size())) return std::nullopt;
    const double close = ReadableDouble(trades.closes[static_cast<std::size_t>(at)]);
    return Gain(trade_.exit.price, close) * MoneyOfPoint();
  }

  void AddPlan() {
    Add(plan_ == nullptr ? std::string() : plan_->setup);
    Add(plan_ != nullptr && plan_->confidence > 0 ? LedgerValue(double(plan_->confidence))
                                                  : LedgerValue());
    Add(trade_.entry.day == 0 ? std::string() : DateText(trade_.entry.day, "dddd"));
    const bool daily = !ExactNumber<int>(scope_.state.began.interval);
    Add(daily ? LedgerValue() : LedgerValue(double(trade_.entry.time / 10'000)));
    Add(double(trade_.look_ahead));
  }

  const PlayedScope& scope_;
  const LedgerTrade& trade_;
  const LedgerEntryPlan* plan_;
  double risk_;
  TradeRow row_;
  std::size_t next_ = 0;
};

std::string ExportedText(const LedgerValue& value) {
  if (const auto* const number = std::get_if<double>(&value)) return ExactText(*number);
  return ValueAs<std::string>(value);
}

std::string LineOf(const TradeRow& row) {
  std::vector<OrderCell> cells;
  cells.reserve(row.size());
  for (const LedgerValue& value : row) cells.push_back({ExportedText(value), value});
  return CsvLine(cells);
}

}  // namespace

std::string TradesCsv(const std::vector<PlayedScope>& scopes,
                      const std::vector<LedgerEntryPlan>& plans, const Selection& selection) {
  std::map<LedgerOrderKey, const LedgerEntryPlan*> by_entry;
  for (const LedgerEntryPlan& plan : plans) by_entry.insert_or_assign(plan.order, &plan);
  std::vector<std::string> names;
  names.reserve(kTradeFields.size());
  for (const TradeField& field : kTradeFields) names.emplace_back(field.name);
  std::string csv = CsvLine(names);
  std::int32_t place = 0;
  for (const PlayedScope& scope : scopes) {
    for (const LedgerTrade& trade : scope.trades.trades) {
      if (!trade.money) continue;
      if (!std::ranges::binary_search(selection, place++)) continue;
      const auto plan = by_entry.find(trade.entry.order);
      csv +=
          LineOf(RowFiller(scope, trade, plan == by_entry.end() ? nullptr : plan->second).Fill());
    }
  }
  return csv;
}

}  // namespace velumar
