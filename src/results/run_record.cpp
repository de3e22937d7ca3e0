#include "results/run_record.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <utility>

#include "base/number_text.h"

namespace velumar {

namespace {

// The values of one row by column name; a missing column counts as null.
class NamedValues {
 public:
  NamedValues(const LedgerRecordset& records, std::size_t row)
      : columns_(records.columns), values_(records.rows.at(row)) {}

  std::optional<double> Figure(std::string_view column) const { return Get<double>(column); }
  double Number(std::string_view column) const { return Figure(column).value_or(0); }
  std::optional<int> Whole(std::string_view column) const {
    const auto number = Figure(column);
    return number ? std::optional(static_cast<int>(*number)) : std::nullopt;
  }
  std::string Text(std::string_view column) const {
    return Get<std::string>(column).value_or(std::string());
  }

 private:
  template <typename Value>
  std::optional<Value> Get(std::string_view column) const {
    const auto at = std::find(columns_.begin(), columns_.end(), column);
    if (at == columns_.end()) return std::nullopt;
    const auto* value =
        std::get_if<Value>(&values_[static_cast<std::size_t>(at - columns_.begin())]);
    return value == nullptr ? std::nullopt : std::optional(*value);
  }

  const std::vector<std::string>& columns_;
  const std::vector<LedgerValue>& values_;
};

// The records must outlive the result.
std::vector<NamedValues> NamedRows(const LedgerRecordset& records) {
  std::vector<NamedValues> rows;
  for (std::size_t i = 0; i < records.rows.size(); ++i) rows.emplace_back(records, i);
  return rows;
}

// The run's number in the side tables; the current run is the newest.
std::string RunKey(int number) {
  return number == kCurrentRun ? "(select coalesce(max(Id), 0) From Runs)" : std::to_string(number);
}

bool IsLong(const std::string& position) { return position == "Long" || position == "Offset Long"; }

// A 32-bit figure as the decimal that a row would have.
std::optional<double> AsInRow(std::optional<double> figure) {
  return figure ? ToDouble(PlainNumberText(static_cast<float>(*figure))) : std::nullopt;
}

std::optional<LedgerRun> ReadBeginning(LedgerConnection& connection, int number) {
  const LedgerRecordset records =
      LedgerQuery(connection, "select * From Runs where Id = " + RunKey(number));
  if (records.Empty()) return std::nullopt;
  const NamedValues row(records, 0);
  return LedgerRun{.directory = row.Text("Directory"),
                   .symbol = row.Text("Symbol"),
                   .interval = row.Text("SymbolInterval"),
                   .start_date = row.Text("StartDate"),
                   .start_time = row.Text("StartTime"),
                   .market = row.Text("Market"),
                   .starting_money = AsInRow(row.Number("StartingMoney")).value_or(0),
                   .margin = row.Number("Margin"),
                   .money_per_point = row.Number("MoneyPerPoint")};
}

RunOrder OrderOfRow(const NamedValues& row) {
  RunOrder order;
  order.position = row.Text("Position");
  order.is_long = IsLong(order.position);
  const std::string side = order.is_long ? "L" : "S";
  order.kind = row.Number(side + "offset") == 0 ? RunOrder::Kind::kEntry : RunOrder::Kind::kOffset;
  order.symbol = row.Text("Symbol");
  order.iso_date = row.Text("IsoDate");
  order.date = row.Text("ActDate");
  order.time = row.Text("ActTime");
  order.price = row.Number("MarketPrice");
  order.held = row.Number(side + "Accum");
  order.average = row.Number(side + "AvgPrice");
  order.points = row.Number(side + "Realised");
  order.commission = row.Number("Commission");
  order.money = row.Number("Portfolio");
  if (order.kind == RunOrder::Kind::kEntry) order.quantity = row.Number(side + "Amount");
  return order;
}

void AddDetail(RunOrder& order, const NamedValues& detail) {
  order.quantity = detail.Number("Quantity");
  order.vat = AsInRow(detail.Figure("Vat"));
  order.close = detail.Figure("ClosePrice");
  order.bar = detail.Whole("BarIndex");
  order.newest_shown = detail.Whole("NewestShown");
}

RunOrder OrderOfWiped(const LedgerConnection& connection, const NamedValues& row) {
  RunOrder order;
  order.kind = RunOrder::Kind::kWiped;
  order.position = row.Text("Position");
  order.is_long = IsLong(order.position);
  order.iso_date = row.Text("BarDate");
  order.date = order.iso_date.empty() ? "" : connection.DateText(order.iso_date);
  order.time = row.Text("BarTime");
  order.price = row.Number("MarketPrice");
  order.held = row.Number("Held");
  order.average = row.Number("AvgPrice");
  AddDetail(order, row);
  order.vat = 0;
  return order;
}

using Places = std::multimap<double, RunOrder>;

Places ReadRows(LedgerConnection& connection, int number) {
  Places orders;
  const LedgerRecordset records = LedgerQuery(
      connection, "select rowid as Place, *, ActDate || '' as IsoDate From MyPortfolio", number);
  for (const NamedValues& row : NamedRows(records)) {
    orders.emplace(row.Number("Place"), OrderOfRow(row));
  }
  return orders;
}

void AddDetails(LedgerConnection& connection, int number, Places& orders) {
  const LedgerRecordset records =
      LedgerQuery(connection, "select * From Details where Run = " + RunKey(number));
  for (const NamedValues& detail : NamedRows(records)) {
    const auto order = orders.find(detail.Number("Place"));
    if (order != orders.end()) AddDetail(order->second, detail);
  }
}

// Equal places keep their order, so a wiped-out holding follows the row it was recorded after.
void AddWiped(LedgerConnection& connection, int number, Places& orders) {
  const LedgerRecordset records =
      LedgerQuery(connection, "select * From Wiped where Run = " + RunKey(number));
  for (const NamedValues& row : NamedRows(records)) {
    orders.emplace(row.Figure("Place").value_or(std::numeric_limits<double>::infinity()),
                   OrderOfWiped(connection, row));
  }
}

void AddPlans(LedgerConnection& connection, int run, Places& orders) {
  for (LedgerPlan& plan : LedgerPlansOfRun(connection, run)) {
    const auto order = orders.find(plan.order.place);
    if (order != orders.end()) order->second.plan = std::move(plan);
  }
}

// The first order of a side; null if it has none.
const RunOrder* FirstOf(const RunRecord& record, bool is_long) {
  const auto first =
      std::find_if(record.orders.begin(), record.orders.end(),
                   [is_long](const RunOrder& order) { return order.is_long == is_long; });
  return first == record.orders.end() ? nullptr : &*first;
}

// Newest first.
std::vector<int> ArchivedBefore(LedgerConnection& connection, int number) {
  const std::string before = number == kCurrentRun ? "" : " where Run < " + std::to_string(number);
  const LedgerRecordset records =
      LedgerQuery(connection, "select Run From Archive" + before + " group by Run");
  std::vector<int> numbers;
  for (const NamedValues& row : NamedRows(records)) numbers.push_back(row.Whole("Run").value_or(0));
  std::sort(numbers.rbegin(), numbers.rend());
  return numbers;
}

// The start date of a run, from digits yyyymmdd, as the user writes dates.
std::string StartDateText(const LedgerConnection& connection, std::string digits) {
  if (digits.size() == 8) digits.insert(6, "-").insert(4, "-");
  return connection.DateText(digits);
}

std::string Orders(double count) {
  return PlainNumberText(static_cast<float>(count)) + (count == 1 ? " order" : " orders");
}

}  // namespace

std::optional<bool> RunOrder::LookAhead() const {
  if (!bar || !newest_shown) return std::nullopt;
  return *newest_shown > *bar;
}

bool HeldNothingBefore(const RunOrder& order) {
  if (order.kind != RunOrder::Kind::kEntry) return false;
  return std::abs(order.held - order.quantity.value_or(0)) <= kExactQuantity * order.held;
}

void RequireRun(LedgerConnection& connection, int number) {
  if (number == kCurrentRun) return;
  const std::string id = std::to_string(number);
  if (LedgerQuery(connection,
                  "select Id From Runs where Id = " + id + " and Id < (select max(Id) From Runs)")
          .Empty()) {
    throw LedgerError(connection.File() + ": no archived run has the number " + id);
  }
}

RunRecord ReadRun(LedgerConnection& connection, int number) {
  RequireRun(connection, number);
  Places orders = ReadRows(connection, number);
  AddDetails(connection, number, orders);
  const int run = number == kCurrentRun ? NewestRun(connection) : number;
  AddPlans(connection, run, orders);
  AddWiped(connection, number, orders);
  RunRecord record{ReadBeginning(connection, number), {}};
  for (auto& [place, order] : orders) {
    order.key = {run, order.kind == RunOrder::Kind::kWiped ? 0 : static_cast<int>(place)};
    if (order.symbol.empty() && record.began) order.symbol = record.began->symbol;
    record.orders.push_back(std::move(order));
  }
  return record;
}

std::vector<RunChoice> RunChoices(LedgerConnection& connection) {
  std::vector<RunChoice> choices{{kCurrentRun, "Current run"}};
  const LedgerRecordset records =
      LedgerQuery(connection,
                  "select Id, Symbol, SymbolInterval, StartDate, Orders From Runs join (select "
                  "Run, sum(Placed) as Orders From (select Run, 1 as Placed From Archive union all "
                  "select Run, 0 From Wiped where Run < (select max(Id) From Runs)) group by Run) "
                  "on Run = Id");
  for (const NamedValues& row : NamedRows(records)) {
    const int number = row.Whole("Id").value_or(0);
    choices.push_back({number, std::to_string(number) + ": " + row.Text("Symbol") + " " +
                                   row.Text("SymbolInterval") + " from " +
                                   StartDateText(connection, row.Text("StartDate")) + ", " +
                                   Orders(row.Number("Orders"))});
  }
  std::sort(choices.begin() + 1, choices.end(),
            [](const RunChoice& a, const RunChoice& b) { return a.number > b.number; });
  return choices;
}

int NewestRun(LedgerConnection& connection) {
  const LedgerRecordset records = LedgerQuery(connection, "select max(Id) as Newest From Runs");
  return NamedValues(records, 0).Whole("Newest").value_or(0);
}

int RunToRead(LedgerConnection& connection, ShownRun shown) {
  const bool archived = shown.number == kCurrentRun && NewestRun(connection) != shown.newest;
  return archived ? shown.newest : shown.number;
}

std::vector<RunRecord> ReadAccount(LedgerConnection& connection, int number) {
  std::vector<RunRecord> account{ReadRun(connection, number)};
  // Sides whose holding was entered before the runs read so far.
  std::vector<bool> carried_sides;
  for (const bool is_long : {true, false}) {
    const RunOrder* first = FirstOf(account.front(), is_long);
    if (first != nullptr && !HeldNothingBefore(*first)) carried_sides.push_back(is_long);
  }
  for (const int earlier : ArchivedBefore(connection, number)) {
    if (carried_sides.empty()) break;
    account.insert(account.begin(), ReadRun(connection, earlier));
    const auto entered_here = [&account](bool is_long) {
      const RunOrder* first = FirstOf(account.front(), is_long);
      return first != nullptr && HeldNothingBefore(*first);
    };
    std::erase_if(carried_sides, entered_here);
  }
  return account;
}

}  // namespace velumar
