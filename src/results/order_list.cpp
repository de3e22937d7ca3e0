#include "results/order_list.h"

#include <algorithm>

#include "results/figure_texts.h"

namespace velumar {

namespace {

OrderCell MoneyCell(std::optional<double> money) {
  return {MoneyText(money), money ? LedgerValue(*money) : LedgerValue()};
}

OrderCell QuantityCell(std::optional<double> quantity) {
  if (!quantity) return {kNoFigure, {}};
  return {QuantityText(*quantity), *quantity};
}

std::string Note(const RunOrder& order) {
  std::string note;
  if (order.kind == RunOrder::Kind::kWiped) {
    note = "more than the " + QuantityText(order.held) + " held: closed without P/L";
  }
  const auto add = [&note](const std::string& part) { note += (note.empty() ? "" : ", ") + part; };
  if (order.LookAhead().value_or(false)) add("look-ahead");
  if (!order.plan) return note;
  if (!order.plan->setup.empty()) add(order.plan->setup);
  if (order.plan->stop) add("stop " + PriceText(order.plan->stop));
  if (order.plan->target) add("target " + PriceText(order.plan->target));
  return note;
}

std::string Exported(const OrderCell& cell) {
  constexpr std::string_view kFormulas = "=+-@\t\r";
  const auto* const number = std::get_if<double>(&cell.exact);
  if (number != nullptr) return DecimalText(*number);
  const auto text = ValueAs<std::string>(cell.exact);
  const bool computed = !text.empty() && kFormulas.find(text.front()) != std::string_view::npos;
  return computed ? "'" + text : text;
}

OrderListRow RowOf(const RunOrder& order, std::size_t number, std::optional<double> balance) {
  const bool wiped = order.kind == RunOrder::Kind::kWiped;
  const bool closed = order.kind == RunOrder::Kind::kOffset;
  return {QuantityCell(static_cast<double>(number)),
          OrderCell{order.date, order.iso_date},
          TextCell(order.time),
          TextCell(order.symbol),
          TextCell(order.position),
          QuantityCell(order.quantity),
          MoneyCell(order.price),
          QuantityCell(wiped ? 0 : order.held),
          MoneyCell(wiped ? std::nullopt : std::optional(order.average)),
          MoneyCell(closed ? std::optional(order.points) : std::nullopt),
          MoneyCell(order.commission),
          MoneyCell(order.vat),
          MoneyCell(balance),
          TextCell(Note(order))};
}

}  // namespace

OrderCell TextCell(const std::string& text) { return {text, text}; }

std::string CsvLine(std::span<const OrderCell> cells) {
  std::vector<std::string> fields(cells.size());
  std::ranges::transform(cells, fields.begin(), Exported);
  return CsvLine(fields);
}

std::vector<OrderListRow> ListOrders(const RunRecord& record) {
  std::vector<OrderListRow> rows;
  std::optional<double> balance;
  if (record.began) balance = record.began->starting_money;
  for (const RunOrder& order : record.orders) {
    if (order.kind != RunOrder::Kind::kWiped) balance = order.money;
    rows.push_back(RowOf(order, rows.size() + 1, balance));
  }
  return rows;
}

void SortOrders(std::vector<OrderListRow>& rows, std::size_t column, bool descending) {
  std::stable_sort(rows.begin(), rows.end(), [&](const OrderListRow& a, const OrderListRow& b) {
    const LedgerValue& first = a.at(column).exact;
    const LedgerValue& second = b.at(column).exact;
    return descending ? second < first : first < second;
  });
}

std::string OrdersCsv(const std::vector<OrderListRow>& rows) {
  OrderListRow titles;
  std::ranges::transform(kOrderColumns, titles.begin(), [](const OrderColumn& column) {
    return TextCell(std::string(column.title));
  });
  std::string csv = CsvLine(titles);
  for (const OrderListRow& row : rows) csv += CsvLine(row);
  return csv;
}

}  // namespace velumar
