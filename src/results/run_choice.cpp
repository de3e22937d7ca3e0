#include "results/run_choice.h"

#include <algorithm>

#include "base/number_text.h"
#include "results/named_values.h"

namespace velumar {

namespace {

// "20070125" as "2007-01-25".
std::string IsoDate(const std::string& digits) {
  constexpr std::size_t kLength = 8;
  if (digits.size() != kLength) return digits;
  return digits.substr(0, 4) + "-" + digits.substr(4, 2) + "-" + digits.substr(6, 2);
}

std::string Orders(double count) {
  return PlainNumberText(static_cast<float>(count)) + (count == 1 ? " order" : " orders");
}

}  // namespace

std::vector<RunChoice> RunChoices(LedgerConnection& connection) {
  std::vector<RunChoice> choices{{kRunNow, "Now in the ledger"}};
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
                                   connection.DateText(IsoDate(row.Text("StartDate"))) + ", " +
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
  const bool archived = shown.number == kRunNow && NewestRun(connection) != shown.newest;
  return archived ? shown.newest : shown.number;
}

}  // namespace velumar
