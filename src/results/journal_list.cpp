#include "results/journal_list.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "base/number_text.h"
#include "results/figure_texts.h"

namespace velumar {

namespace {

// A product as a trader works it out: 660, not 660.0000000000001.
OrderCell NumberCell(std::optional<double> number) {
  constexpr int kDigits = 14;
  if (!number) return {kNoFigure, {}};
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), *number,
                                 std::chars_format::general, kDigits);
  return {MoneyText(number), ToDouble({text.data(), end.ptr}).value_or(*number)};
}

OrderCell PriceCell(std::optional<double> price) {
  return {PriceText(price), price ? LedgerValue(*price) : LedgerValue()};
}

OrderCell WholeCell(int number) {
  if (number == 0) return {kNoFigure, {}};
  return {std::to_string(number), double(number)};
}

OrderCell YesCell(bool yes) { return TextCell(yes ? "yes" : ""); }

// A daily bar has no time.
OrderCell MomentCell(const TradeEnd* end) {
  if (end == nullptr) return {kNoFigure, {}};
  const std::string time = end->time == "00:00:00" ? "" : " " + end->time;
  return {end->date + time, end->iso_date + time};
}

OrderCell PriceCell(const TradeEnd* end) {
  return PriceCell(end == nullptr ? std::nullopt : std::optional(end->price));
}

std::string ResultName(Outcome outcome) {
  switch (outcome) {
    case Outcome::kWon:
      return "won";
    case Outcome::kLost:
      return "lost";
    case Outcome::kEven:
      return "even";
    case Outcome::kOpen:
      break;
  }
  return "open";
}

std::string SideName(const JournalEntry& entry) {
  return entry.trade.lot.is_long ? "Long" : "Short";
}

}  // namespace

JournalRow RowOf(const JournalEntry& entry, int session) {
  const Trade& trade = entry.trade;
  const TradeEnd* const entered = trade.lot.entry ? &*trade.lot.entry : nullptr;
  const TradeEnd* const closed = entry.open ? nullptr : &trade.exit;
  const LedgerPlan plan = entry.plan.value_or(LedgerPlan());
  return {WholeCell(session),
          TextCell(entry.symbol),
          TextCell(entry.interval),
          TextCell(SideName(entry)),
          OrderCell{QuantityText(trade.lot.quantity), trade.lot.quantity},
          MomentCell(entered),
          PriceCell(entered),
          MomentCell(closed),
          PriceCell(closed),
          NumberCell(trade.points),
          NumberCell(trade.money),
          NumberCell(trade.r),
          TextCell(ResultName(entry.Result())),
          PriceCell(plan.stop),
          PriceCell(plan.target),
          TextCell(plan.setup),
          WholeCell(plan.confidence),
          NumberCell(trade.lot.risk),
          TextCell(plan.reasons),
          YesCell(entry.look_ahead),
          TextCell(entry.Note()),
          TextCell(entry.notes.empty() ? std::string() : entry.notes.back().written),
          TextCell(entry.entry_picture),
          TextCell(entry.exit_picture),
          YesCell(trade.wiped)};
}

std::vector<std::size_t> ListedColumns() {
  std::vector<std::size_t> listed;
  for (std::size_t i = 0; i < kJournalColumns.size(); ++i) {
    if (kJournalColumns.at(i).listed) listed.push_back(i);
  }
  return listed;
}

std::string JournalCsv(const std::vector<Journal>& journals) {
  JournalRow fields;
  std::ranges::transform(kJournalColumns, fields.begin(), [](const JournalColumn& column) {
    return TextCell(std::string(column.field));
  });
  std::string csv = CsvLine(fields);
  for (const Journal& journal : journals) {
    for (const JournalEntry& entry : journal.trades) {
      csv += CsvLine(RowOf(entry, journal.session));
    }
  }
  return csv;
}

std::string PlanText(const JournalEntry& entry) {
  if (!entry.plan || entry.plan->Empty()) return {};
  const LedgerPlan& plan = *entry.plan;
  std::string text;
  const auto add = [&text](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
  if (plan.stop) add("stop " + PriceText(plan.stop));
  if (plan.target) add("target " + PriceText(plan.target));
  if (!plan.setup.empty()) add(plan.setup);
  if (plan.confidence != 0) add("confidence " + std::to_string(plan.confidence) + " of 5");
  if (entry.trade.lot.risk) add("risk " + MoneyText(entry.trade.lot.risk));
  return text.empty() ? text : "Plan: " + text;
}

std::string TradeText(const JournalEntry& entry) {
  const Trade& trade = entry.trade;
  const auto at = [](const TradeEnd& end) {
    return " at " + PriceText(end.price) + " on " + end.date;
  };
  std::string text = SideName(entry) + " " + QuantityText(trade.lot.quantity);
  text += trade.lot.entry ? at(*trade.lot.entry) : ", entered before this ledger";
  if (entry.open) return text + ", open";
  return text + (trade.wiped ? ", dropped" : ", closed") + at(trade.exit);
}

}  // namespace velumar
