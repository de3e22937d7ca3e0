#include <algorithm>
#include <ostream>

#include "base/dates.h"
#include "base/number_text.h"
#include "cli/commands.h"
#include "cli/json_text.h"
#include "cli/text_table.h"
#include "platform/system.h"
#include "results/figure_texts.h"
#include "results/order_list.h"
#include "results/result_figures.h"
#include "results/statistics.h"
#include "shell/reveal_text.h"
#include "trading/session_list.h"

namespace velumar {

namespace {

constexpr std::string_view kArchivedRuns =
    "select Id, Directory, Symbol, SymbolInterval, StartDate, StartTime, Market, StartingMoney, "
    "Margin, MoneyPerPoint, (select count(*) From Archive where Run = Id) as Rows "
    "From Runs where Rows > 0";

LedgerRecordset Records(LedgerConnection& ledger, const LedgerArguments& arguments) {
  if (arguments.runs) return LedgerQuery(ledger, kArchivedRuns);
  std::string columns;
  for (const std::string& column : PortfolioColumns()) {
    columns += (columns.empty() ? "[" : ", [") + column + "]";
  }
  return LedgerQuery(ledger, "select " + columns + " From MyPortfolio order by rowid",
                     arguments.scope);
}

std::string RowJson(const LedgerRecordset& records) {
  auto rows = nlohmann::ordered_json::array();
  for (std::size_t i = 0; i < records.rows.size(); ++i) rows.push_back(LedgerRowObject(records, i));
  return JsonText(rows, kIndented);
}

std::string RowCsv(const LedgerRecordset& records) {
  std::string csv = CsvLine(records.columns);
  std::vector<std::string> fields(records.columns.size());
  for (const auto& row : records.rows) {
    std::ranges::transform(row, fields.begin(), LedgerText);
    csv += CsvLine(fields);
  }
  return csv;
}

// A rounding residue is shown as 0.
std::string ReadableText(const LedgerValue& value) {
  const auto* number = std::get_if<double>(&value);
  return number == nullptr ? LedgerText(value) : ReadableNumberText(static_cast<float>(*number));
}

std::string RowTable(const LedgerRecordset& records) {
  std::vector<TextTable::Column> columns;
  columns.reserve(records.columns.size());
  for (const std::string& column : records.columns) columns.push_back({column});
  TextTable table(std::move(columns));
  for (const auto& row : records.rows) {
    std::vector<std::string> cells(row.size());
    std::ranges::transform(row, cells.begin(), ReadableText);
    table.AddRow(std::move(cells));
  }
  return table.Text();
}

std::string FigureJson(const ResultFigures& figures, const std::vector<Statistic>& statistics) {
  nlohmann::ordered_json object;
  for (const ResultFigureText& figure : ResultFigureTexts(figures)) {
    object[std::string(figure.field)] = figure.text;
  }
  object["statistics"] = nlohmann::ordered_json::object();
  for (const Statistic& statistic : statistics) {
    object["statistics"][std::string(statistic.name)] = statistic.value;
  }
  return JsonText(object, kIndented);
}

std::string FigureTable(const ResultFigures& figures, const std::vector<Statistic>& statistics) {
  TextTable table({{"Figure"}, {"Value"}});
  for (const ResultFigureText& figure : ResultFigureTexts(figures)) {
    table.AddRow({std::string(figure.field), figure.text});
  }
  for (const Statistic& statistic : statistics) {
    table.AddRow({std::string(statistic.name), statistic.value});
  }
  return table.Text();
}

std::string Formulas(const std::vector<Statistic>& statistics) {
  std::string text;
  for (const Statistic& statistic : statistics) {
    text += std::string(statistic.name) + ": " + statistic.value + "\n  " +
            std::string(statistic.formula) + "\n";
  }
  return text;
}

nlohmann::ordered_json SessionObject(const SessionLine& line) {
  nlohmann::ordered_json object{{"session", line.number},
                                {"directory", line.directory},
                                {"symbol", line.symbol},
                                {"interval", line.interval},
                                {"date", line.date},
                                {"time", line.time},
                                {"long", DecimalNumber(PlainNumberText(line.held_long))},
                                {"short", DecimalNumber(PlainNumberText(line.held_short))},
                                {"open_profit", DecimalNumber(QuantityText(line.open_profit))},
                                {"closed_profit", DecimalNumber(QuantityText(line.closed_profit))},
                                {"bars_left", nullptr},
                                {"touched", line.touched},
                                {"ended", line.ended}};
  if (line.bars_left) object["bars_left"] = *line.bars_left;
  return object;
}

std::string SessionTable(const std::vector<SessionLine>& lines, const std::string& date_pattern) {
  TextTable table({{"No.", TextTable::kRight},
                   {"Security"},
                   {"Interval"},
                   {"Moment"},
                   {"Held"},
                   {"Open", TextTable::kRight},
                   {"Closed", TextTable::kRight},
                   {"Bars left", TextTable::kRight},
                   {"Last played (UTC)"},
                   {"State"}});
  for (const SessionLine& line : lines) {
    table.AddRow({std::to_string(line.number), line.symbol, line.interval,
                  DateText(line.date, date_pattern) + " " + PatternText(line.time, kTimePattern),
                  HoldingText(line), PatternText(line.open_profit, kTwoDecimalsPattern),
                  PatternText(line.closed_profit, kTwoDecimalsPattern),
                  line.bars_left ? std::to_string(*line.bars_left) : "no data", line.touched,
                  line.ended ? "ended" : "open"});
  }
  return table.Text();
}

}  // namespace

std::string DatePatternOrDefault(const std::string& given) {
  return given.empty() ? SystemLocale()->ShortDatePattern() : given;
}

LedgerConnection OpenScope(const ScopeArguments& arguments) {
  LedgerConnection ledger([pattern = DatePatternOrDefault(arguments.date_pattern)](
                              std::string_view date) { return IsoDateText(date, pattern); });
  LedgerOpenToRead(ledger, arguments.file);
  LedgerRequire(ledger, arguments.scope);
  return ledger;
}

void PrintSessions(const SessionsArguments& arguments, CliContext& context) {
  LedgerConnection ledger = OpenScope({arguments.file, kCurrentRun, arguments.date_pattern});
  if (arguments.reveal != 0) {
    LedgerOpen(ledger, arguments.file);
    if (!ledger.CanWrite()) throw LedgerError(ledger.WhyNot());
    const RevealedSession session = RevealSession(ledger, arguments.reveal, context.cache);
    context.out << RevealText(session, ledger, DatePatternOrDefault(arguments.date_pattern))
                << "\n";
    return;
  }
  const std::vector<SessionLine> lines = ListSessions(ledger, context.cache);
  if (!arguments.json) {
    context.out << SessionTable(lines, DatePatternOrDefault(arguments.date_pattern));
    return;
  }
  auto list = nlohmann::ordered_json::array();
  for (const SessionLine& line : lines) list.push_back(SessionObject(line));
  context.out << JsonText(list, kIndented);
}

void PrintLedger(const LedgerArguments& arguments, CliContext& context) {
  LedgerConnection ledger = OpenScope(arguments);
  if (arguments.orders) {
    context.out << OrdersCsv(ListOrders(ReadRecord(ledger, arguments.scope)));
    return;
  }
  const LedgerRecordset records = Records(ledger, arguments);
  context.out << (arguments.json  ? RowJson(records)
                  : arguments.csv ? RowCsv(records)
                                  : RowTable(records));
}

void PrintFigures(const FiguresArguments& arguments, CliContext& context) {
  LedgerConnection ledger = OpenScope(arguments);
  const std::vector<Statistic> statistics = RunStatistics(ReadAccount(ledger, arguments.scope));
  const ResultFigures figures = LoadResultFigures(ledger, arguments.scope);
  context.out << (arguments.explain ? Formulas(statistics)
                  : arguments.json  ? FigureJson(figures, statistics)
                                    : FigureTable(figures, statistics));
}

}  // namespace velumar
