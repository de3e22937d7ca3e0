#include "results/result_choices.h"

#include <algorithm>
#include <utility>

#include "results/named_values.h"
#include "results/run_record.h"

namespace velumar {

namespace {

// A run, or all runs of a session.
struct Line {
  int number = 0;
  int session = 0;     // of a run; 0: none, or one that was taken off the list of sessions
  std::string series;  // "ABC D"
  std::string day;     // of the first bar, as the user writes dates
  int orders = 0;
  bool any_orders = false;  // or holdings that were wiped out
  int runs = 1;
};

// All runs, newest first.
std::vector<Line> ReadRuns(LedgerConnection& connection) {
  const std::string session =
      LedgerHasSessions(connection) ? "(select Id From Sessions where Id = Session)" : "0";
  const LedgerRecordset records = LedgerQuery(
      connection, "select Runs.*, " + session +
                      " as Listed, Orders From Runs left join (select Run, sum(Placed) as Orders "
                      "From (select Run, 1 as Placed From Archive union all select (select max(Id) "
                      "From Runs), 1 From MyPortfolio union all select Run, 0 From Wiped) group by "
                      "Run) on Run = Id");
  std::vector<Line> runs;
  for (const NamedValues& row : NamedRows(records)) {
    runs.push_back({.number = row.Whole("Id").value_or(0),
                    .session = row.Whole("Listed").value_or(0),
                    .series = row.Text("Symbol") + " " + row.Text("SymbolInterval"),
                    .day = StartDayText(connection, row.Text("StartDate")),
                    .orders = row.Whole("Orders").value_or(0),
                    .any_orders = row.Figure("Orders").has_value()});
  }
  std::ranges::sort(runs, std::ranges::greater(), &Line::number);
  return runs;
}

// The sessions of the runs, in the order of their newest runs.
std::vector<Line> SessionsOf(const std::vector<Line>& runs) {
  std::vector<Line> sessions;
  for (const Line& run : runs) {
    if (run.session == 0) continue;
    const auto session = std::ranges::find(sessions, run.session, &Line::number);
    if (session == sessions.end()) {
      sessions.push_back(run);
      sessions.back().number = run.session;
      continue;
    }
    session->day = run.day;
    session->orders += run.orders;
    session->any_orders = session->any_orders || run.any_orders;
    ++session->runs;
  }
  return sessions;
}

std::string Count(int count, const char* what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string Begun(const Line& line) {
  return " from " + line.day + ", " + Count(line.orders, "order");
}

std::string Numbered(const char* what, const Line& line) {
  return what + (" " + std::to_string(line.number));
}

}  // namespace

std::vector<ResultChoice> ResultChoices(LedgerConnection& connection) {
  std::vector<Line> runs = ReadRuns(connection);
  if (runs.empty()) return {{kCurrentRun, "Current run"}};
  const Line current = runs.front();
  std::erase_if(runs,
                [&](const Line& run) { return !run.any_orders && run.number != current.number; });
  std::vector<ResultChoice> own;
  std::vector<ResultChoice> others;
  for (const Line& run : runs) {
    const LedgerScope scope = LedgerScope::Run(run.number);
    if (run.number == current.number) {
      own.push_back({scope, "Current run" + Begun(run)});
    } else if (run.session == 0) {
      others.push_back({scope, Numbered("Run", run) + ": " + run.series + Begun(run)});
    } else if (run.session == current.session) {
      own.push_back({scope, Numbered("Run", run) + Begun(run)});
    }
  }
  std::vector<ResultChoice> choices;
  for (const Line& session : SessionsOf(runs)) {
    const LedgerScope scope = LedgerScope::Session(session.number);
    if (session.number == current.session) {
      choices.push_back({scope, "This session: " + Count(session.runs, "run") + ", " +
                                    Count(session.orders, "order")});
    } else {
      choices.push_back(
          {scope, Numbered("Session", session) + ": " + session.series + Begun(session)});
    }
  }
  // The current session is the first one, and its runs follow it.
  choices.insert(choices.begin() + (current.session == 0 ? 0 : 1), own.begin(), own.end());
  choices.insert(choices.end(), others.begin(), others.end());
  return choices;
}

}  // namespace velumar
