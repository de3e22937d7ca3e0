#include "resultchart/report.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

#include "base/paths.h"
#include "results/figure_texts.h"
#include "results/journal_list.h"
#include "results/portfolio_chart.h"
#include "results/result_figures.h"
#include "results/statistics.h"

namespace velumar {
namespace {

using Texts = std::map<std::string_view, std::string>;

Texts FigureTexts(LedgerConnection& connection, LedgerScope scope) {
  Texts texts;
  for (ResultFigureText& figure : ResultFigureTexts(LoadResultFigures(connection, scope))) {
    texts[figure.field] = std::move(figure.text);
  }
  return texts;
}

// -1 in a row and D in a run mean daily bars.
std::string Bars(const std::string& interval) {
  if (interval == "-1" || interval == "D") return "daily bars";
  return interval + "-minute bars";
}

std::string Title(const Texts& figures, const std::optional<LedgerRun>& began) {
  if (!figures.at("ResSymbol").empty()) {
    return figures.at("ResSymbol") + ", " + Bars(figures.at("ResInterval"));
  }
  if (began) return began->symbol + ", " + Bars(began->interval);
  return "No run yet";
}

// The list also has holdings that were dropped without an order.
std::string OrderCount(const RunRecord& record) {
  return std::to_string(std::ranges::count_if(
      record.orders, [](const RunOrder& order) { return order.kind != RunOrder::Kind::kWiped; }));
}

bool IsSession(LedgerScope scope) { return scope.kind == LedgerScope::Kind::kSession; }

std::vector<Report::Line> Facts(const Texts& figures, const RunRecord& record, LedgerScope scope) {
  const auto began = [&](auto text) {
    return record.began ? text(*record.began) : std::string(kNoFigure);
  };
  const auto moment = [&](const char* date, const char* time) {
    const std::string& day = figures.at(date);
    return day.empty() ? std::string(kNoFigure) : day + "  " + figures.at(time);
  };
  return {
      {IsSession(scope) ? "Session" : "Run",
       scope == kCurrentRun ? "the newest" : "number " + std::to_string(scope.number)},
      {"Market", began([](const LedgerRun& r) { return r.market; })},
      {"First order", moment("ResStartDate", "ResStartTime")},
      {"Last order", moment("ResEndDate", "ResEndTime")},
      {"Orders", OrderCount(record)},
      {"Starting money", began([](const LedgerRun& r) { return MoneyText(r.starting_money); })},
      {"Margin", began([](const LedgerRun& r) { return MoneyText(r.margin); })},
      {"Money per point", began([](const LedgerRun& r) { return MoneyText(r.money_per_point); })}};
}

std::vector<Report::Line> FigureLines(const Texts& figures) {
  const std::string& portfolio = figures.at("ResPortfolio");
  return {{"Portfolio", portfolio.empty() ? kNoFigure : portfolio},
          {"Long, quantity entered", figures.at("ResLongAmount")},
          {"Long, points realised", figures.at("ResLongProfitLoss")},
          {"Long, commission of entries", figures.at("ResLongComm")},
          {"Short, quantity entered", figures.at("ResShortAmount")},
          {"Short, points realised", figures.at("ResShortProfitLoss")},
          {"Short, commission of entries", figures.at("ResShortComm")},
          {"Commission of all entries", figures.at("ResTotalComm")}};
}

void AddNote(const LedgerConnection& connection, const std::vector<LedgerNote>& notes,
             JournalItem& item) {
  if (notes.empty() || notes.back().text.empty()) return;
  item.lines.push_back("Note: " + notes.back().text);
  item.lines.push_back(NoteDate(connection, notes));
}

JournalItem ItemOf(const LedgerConnection& connection, const JournalEntry& entry) {
  JournalItem item{.title = TradeText(entry), .lines = {}, .pictures = {}};
  if (entry.trade.money) item.title += ": " + MoneyText(entry.trade.money);
  if (entry.trade.r) item.title += ", " + MoneyText(entry.trade.r) + " R";
  const std::string plan = PlanText(entry);
  if (!plan.empty()) item.lines.push_back(plan);
  if (entry.plan && !entry.plan->reasons.empty()) {
    item.lines.push_back("Reasons: " + entry.plan->reasons);
  }
  AddNote(connection, entry.notes, item);
  for (const std::string& file : {entry.entry_picture, entry.exit_picture}) {
    if (!file.empty()) item.pictures.push_back(file);
  }
  return item;
}

// The newest trades, if there are very many, so that the file can still be opened.
std::vector<JournalItem> JournalItems(const LedgerConnection& connection, const Journal& journal) {
  constexpr std::ptrdiff_t kMost = 200;
  std::vector<JournalItem> items;
  for (const JournalEntry& entry : journal.trades) {
    JournalItem item = ItemOf(connection, entry);
    if (!item.lines.empty() || !item.pictures.empty()) items.push_back(std::move(item));
  }
  if (std::ssize(items) > kMost) items.erase(items.begin(), items.end() - kMost);
  JournalItem session{.title = "The session", .lines = {}, .pictures = {}};
  AddNote(connection, journal.notes, session);
  if (!session.lines.empty()) items.insert(items.begin(), std::move(session));
  return items;
}

}  // namespace

ChartPoints ReadPoints(LedgerConnection& connection, LedgerScope scope) {
  PortfolioChart chart = LoadPortfolioChart(connection, scope);
  ChartPoints points;
  points.hint = std::move(chart.hint);
  for (PortfolioChartRow& row : chart.rows) {
    points.labels.push_back(std::move(row.label));
    points.values.push_back(double{row.value});
  }
  return points;
}

Report ReadReport(LedgerConnection& connection, LedgerScope scope) {
  const std::vector<RunRecord> account = ReadAccount(connection, scope);
  const RunRecord& record = account.back();
  const Texts figures = FigureTexts(connection, scope);
  Report report;
  report.what = IsSession(scope) ? "session" : "run";
  report.title = Title(figures, record.began);
  // It may have been typed with either separator.
  if (record.began) {
    report.subtitle = PathText(NativePath(record.began->directory).lexically_normal());
  }
  report.facts = Facts(figures, record, scope);
  report.figures = FigureLines(figures);
  for (const Statistic& statistic : RunStatistics(account)) {
    report.statistics.push_back({std::string(statistic.name), statistic.value});
  }
  report.points = ReadPoints(connection, scope);
  report.journal = JournalItems(connection, ReadJournal(connection, scope));
  report.orders = ListOrders(record);
  return report;
}

}  // namespace velumar
