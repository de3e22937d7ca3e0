#include "results/order_list.h"

#include <array>

#include "base/csv_field.h"
#include "results/figure_texts.h"

namespace velumar {

namespace {

constexpr std::string_view kTitles =
    "No.,Date,Time,Symbol,Order,Quantity,Price,Held,Average,Points,Commission,VAT,Balance,Note\n";

std::string NumberField(std::optional<double> number) {
  return number ? DecimalText(*number) : std::string();
}

std::string Note(const RunOrder& order) {
  std::string note;
  if (order.kind == RunOrder::Kind::kWiped) {
    note = "more than the " + DecimalText(order.held) + " held: closed without a result";
  }
  if (!order.Hindsight().value_or(false)) return note;
  return note.empty() ? "hindsight" : note + ", hindsight";
}

std::string Line(const RunOrder& order, std::size_t number, std::optional<double> balance) {
  const bool wiped = order.kind == RunOrder::Kind::kWiped;
  const bool closed = order.kind == RunOrder::Kind::kOffset;
  const std::array<std::string, 14> fields = {
      std::to_string(number),
      order.iso_date,
      order.time,
      CsvField(order.symbol),
      order.position,
      NumberField(order.quantity),
      NumberField(order.price),
      NumberField(wiped ? 0 : order.held),
      NumberField(wiped ? std::nullopt : std::optional(order.average)),
      NumberField(closed ? std::optional(order.points) : std::nullopt),
      NumberField(order.commission),
      NumberField(order.vat),
      NumberField(balance),
      CsvField(Note(order))};
  std::string line;
  for (const std::string& field : fields) line += field + ",";
  line.back() = '\n';
  return line;
}

}  // namespace

std::string OrdersCsv(const RunRecord& run) {
  std::string csv(kTitles);
  std::optional<double> balance;
  if (run.began) balance = run.began->starting_money;
  for (std::size_t i = 0; i < run.orders.size(); ++i) {
    const RunOrder& order = run.orders[i];
    if (order.kind != RunOrder::Kind::kWiped) balance = order.money;
    csv += Line(order, i + 1, balance);
  }
  return csv;
}

}  // namespace velumar
