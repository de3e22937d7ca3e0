#include "results/run_record.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <utility>

#include "base/number_text.h"
#include "results/named_values.h"

namespace velumar {

namespace {

bool IsLong(const std::string& position) { return position == "Long" || position == "Offset Long"; }

// A 32-bit figure as the decimal that a row would have.
std::optional<double> AsInRow(std::optional<double> figure) {
  return figure ? ToDouble(PlainNumberText(static_cast<float>(*figure))) : std::nullopt;
}

LedgerRun BeginningOf(const NamedValues& row) {
  return {.directory = row.Text("Directory"),
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
  order.counted = detail.Figure("Counted");
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

// A holding that was wiped out has the place of the row before it; in older ledgers, none.
LedgerOrderKey KeyOf(const NamedValues& row) {
  return {row.Whole("Run").value_or(0),
          row.Whole("Place").value_or(std::numeric_limits<int>::max())};
}

// What the ledger has of a scope.
struct Records {
  std::map<int, LedgerRun> runs;  // by number
  std::multimap<LedgerOrderKey, RunOrder> orders;
};

// Rows from before runs were recorded have no number of a run.
void ReadRows(LedgerConnection& connection, LedgerScope scope, Records& records) {
  const std::string place = scope == kCurrentRun ? "0 as Run, rowid as Place, " : "";
  const LedgerRecordset rows = LedgerQuery(
      connection, "select " + place + "*, ActDate || '' as IsoDate From MyPortfolio", scope);
  for (const NamedValues& row : NamedRows(rows)) {
    records.orders.emplace(KeyOf(row), OrderOfRow(row));
  }
}

void AddDetails(LedgerConnection& connection, LedgerScope scope, Records& records) {
  const LedgerRecordset rows =
      LedgerQuery(connection, "select * From Details where Run in Scope", scope);
  for (const NamedValues& detail : NamedRows(rows)) {
    const auto order = records.orders.find(KeyOf(detail));
    if (order != records.orders.end()) AddDetail(order->second, detail);
  }
}

// Equal places keep their order, so a wiped-out holding follows the row it was recorded after.
void AddWiped(LedgerConnection& connection, LedgerScope scope, Records& records) {
  const LedgerRecordset rows =
      LedgerQuery(connection, "select * From Wiped where Run in Scope", scope);
  for (const NamedValues& row : NamedRows(rows)) {
    records.orders.emplace(KeyOf(row), OrderOfWiped(connection, row));
  }
}

void AddPlans(LedgerConnection& connection, LedgerScope scope, Records& records) {
  const bool session = scope.kind == LedgerScope::Kind::kSession;
  for (LedgerPlan& plan : session ? LedgerPlansOfSession(connection, scope.number)
                                  : LedgerPlansOfRun(connection, scope.number)) {
    const auto order = records.orders.find(plan.order);
    if (order != records.orders.end()) order->second.plan = std::move(plan);
  }
}

Records ReadRecords(LedgerConnection& connection, LedgerScope scope) {
  if (scope == kCurrentRun) scope = LedgerScope::Run(NewestRun(connection));
  Records records;
  const LedgerRecordset runs =
      LedgerQuery(connection, "select * From Runs where Id in Scope", scope);
  for (const NamedValues& row : NamedRows(runs)) {
    records.runs.emplace(row.Whole("Id").value_or(0), BeginningOf(row));
  }
  ReadRows(connection, scope, records);
  AddDetails(connection, scope, records);
  AddPlans(connection, scope, records);
  AddWiped(connection, scope, records);
  return records;
}

// The runs from `first` to the one before `end` as one record; moves their orders out of `records`.
RunRecord TakeRuns(Records& records, int first, int end) {
  RunRecord record;
  const auto run = records.runs.lower_bound(first);
  if (run != records.runs.end() && run->first < end) record.began = run->second;
  for (auto at = records.orders.lower_bound({first, 0});
       at != records.orders.end() && at->first.run < end; ++at) {
    RunOrder& order = record.orders.emplace_back(std::move(at->second));
    order.key = {at->first.run, order.kind == RunOrder::Kind::kWiped ? 0 : at->first.place};
    const auto began = records.runs.find(at->first.run);
    if (began == records.runs.end()) continue;
    if (order.symbol.empty()) order.symbol = began->second.symbol;
    order.money_per_point = began->second.money_per_point;
  }
  return record;
}

constexpr int kNoEnd = std::numeric_limits<int>::max();

// The first order of a side; null if it has none.
const RunOrder* FirstOf(const RunRecord& record, bool is_long) {
  const auto first =
      std::find_if(record.orders.begin(), record.orders.end(),
                   [is_long](const RunOrder& order) { return order.is_long == is_long; });
  return first == record.orders.end() ? nullptr : &*first;
}

// 0 if sessions were not recorded yet.
int SessionOfRun(LedgerConnection& connection, int run) {
  const LedgerRecordset records =
      LedgerQuery(connection, "select * From Runs where Id = " + std::to_string(run));
  return records.Empty() ? 0 : NamedValues(records, 0).Whole("Session").value_or(0);
}

// Newest first.
std::vector<int> ArchivedBefore(LedgerConnection& connection, int number) {
  const LedgerRecordset records =
      LedgerQuery(connection, "select Run From Archive where Run > 0 and Run < " +
                                  std::to_string(number) + " group by Run");
  std::vector<int> numbers;
  for (const NamedValues& row : NamedRows(records)) numbers.push_back(row.Whole("Run").value_or(0));
  std::sort(numbers.rbegin(), numbers.rend());
  return numbers;
}

// Before sessions were recorded, only the orders say which runs belong together.
std::vector<RunRecord> ReadAccountByHoldings(LedgerConnection& connection, int number) {
  std::vector<RunRecord> account{ReadRecord(connection, LedgerScope::Run(number))};
  // Sides whose holding was entered before the runs read so far.
  std::vector<bool> carried_sides;
  for (const bool is_long : {true, false}) {
    const RunOrder* first = FirstOf(account.front(), is_long);
    if (first != nullptr && !HeldNothingBefore(*first)) carried_sides.push_back(is_long);
  }
  for (const int earlier : ArchivedBefore(connection, number)) {
    if (carried_sides.empty()) break;
    account.insert(account.begin(), ReadRecord(connection, LedgerScope::Run(earlier)));
    const auto entered_here = [&account](bool is_long) {
      const RunOrder* first = FirstOf(account.front(), is_long);
      return first != nullptr && HeldNothingBefore(*first);
    };
    std::erase_if(carried_sides, entered_here);
  }
  return account;
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

std::string StartDayText(const LedgerConnection& connection, std::string digits) {
  if (digits.size() == 8) digits.insert(6, "-").insert(4, "-");
  return connection.DateText(digits);
}

RunRecord ReadRecord(LedgerConnection& connection, LedgerScope scope) {
  LedgerRequire(connection, scope);
  Records records = ReadRecords(connection, scope);
  return TakeRuns(records, 0, kNoEnd);
}

int NewestRun(LedgerConnection& connection, LedgerScope scope) {
  const LedgerRecordset records =
      LedgerQuery(connection, "select max(Id) as Newest From Runs where Id in Scope", scope);
  return NamedValues(records, 0).Whole("Newest").value_or(0);
}

LedgerScope ScopeOfRun(LedgerConnection& connection, int run) {
  const int session = SessionOfRun(connection, run);
  const bool listed =
      session != 0 && LedgerHasSessions(connection) &&
      !LedgerQuery(connection, "select Id From Sessions where Id = " + std::to_string(session))
           .Empty();
  return listed ? LedgerScope::Session(session) : LedgerScope::Run(run);
}

std::vector<RunRecord> ReadAccount(LedgerConnection& connection, LedgerScope scope) {
  if (scope.kind == LedgerScope::Kind::kSession) return {ReadRecord(connection, scope)};
  LedgerRequire(connection, scope);
  const int run = scope == kCurrentRun ? NewestRun(connection) : scope.number;
  const int session = SessionOfRun(connection, run);
  if (session == 0) return ReadAccountByHoldings(connection, run);
  Records records = ReadRecords(connection, LedgerScope::Session(session));
  RunRecord before = TakeRuns(records, 0, run);
  return {std::move(before), TakeRuns(records, run, run + 1)};
}

}  // namespace velumar
