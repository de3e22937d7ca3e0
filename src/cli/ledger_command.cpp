#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>

#include "base/csv_field.h"
#include "base/dates.h"
#include "cli/commands.h"
#include "cli/date_pattern.h"
#include "cli/ledger_texts.h"
#include "cli/text_table.h"
#include "ledger/ledger.h"
#include "results/order_list.h"
#include "results/run_record.h"

namespace velumar {

namespace {

struct LedgerArguments {
  std::string file;
  bool csv = false;
  bool json = false;
  bool runs = false;
  bool orders = false;
  int run = 0;
  std::string date_pattern;
};

constexpr std::string_view kArchivedRuns =
    "select Id, Directory, Symbol, SymbolInterval, StartDate, StartTime, Market, StartingMoney, "
    "Margin, MoneyPerPoint, (select count(*) From Archive where Run = Id) as Rows "
    "From Runs where Rows > 0";

std::string SelectOf(const LedgerArguments& arguments) {
  if (arguments.runs) return std::string(kArchivedRuns);
  if (arguments.run == 0)
    return "select " + LedgerColumnList() + " From MyPortfolio order by rowid";
  return "select " + LedgerColumnList() +
         " From Archive where Run = " + std::to_string(arguments.run) + " order by Place";
}

std::string Json(const LedgerRecordset& records) {
  auto rows = nlohmann::ordered_json::array();
  for (std::size_t i = 0; i < records.rows.size(); ++i) rows.push_back(LedgerRowObject(records, i));
  constexpr int kIndent = 2;
  return rows.dump(kIndent, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::string Csv(const LedgerRecordset& records) {
  std::string text;
  const auto add_line = [&text](std::size_t fields, auto field) {
    for (std::size_t i = 0; i < fields; ++i) text += (i == 0 ? "" : ",") + CsvField(field(i));
    text += '\n';
  };
  add_line(records.columns.size(), [&](std::size_t i) { return records.columns[i]; });
  for (const auto& row : records.rows) {
    add_line(row.size(), [&](std::size_t i) { return LedgerText(row[i]); });
  }
  return text;
}

std::string Table(const LedgerRecordset& records) {
  std::vector<TextTable::Column> columns;
  columns.reserve(records.columns.size());
  for (const std::string& column : records.columns) columns.push_back({column});
  TextTable table(std::move(columns));
  for (const auto& row : records.rows) {
    std::vector<std::string> cells(row.size());
    std::ranges::transform(row, cells.begin(), ReadableLedgerText);
    table.AddRow(std::move(cells));
  }
  return table.Text();
}

void PrintLedger(const LedgerArguments& arguments, CliContext& context) {
  const std::string pattern = UsedDatePattern(arguments.date_pattern);
  LedgerConnection ledger([&](std::string_view date) { return IsoDateText(date, pattern); });
  LedgerOpenToRead(ledger, arguments.file);
  if (arguments.orders) {
    context.out << OrdersCsv(ListOrders(ReadRun(ledger, arguments.run)));
    return;
  }
  const LedgerRecordset records = LedgerQuery(ledger, SelectOf(arguments));
  if (arguments.run != 0 && records.Empty()) {
    throw LedgerError(arguments.file + ": no archived run has the number " +
                      std::to_string(arguments.run));
  }
  context.out << (arguments.json ? Json(records) : arguments.csv ? Csv(records) : Table(records));
}

}  // namespace

void AddLedgerCommand(CLI::App& app, CliContext& context) {
  const auto arguments = std::make_shared<LedgerArguments>();
  CLI::App* command =
      app.add_subcommand("ledger", "Print the rows of a ledger in the order of their insertion.");
  command->add_option("FILE", arguments->file, "the ledger, as Portfolio.mdb")->required();
  CLI::Option* csv = command->add_flag("--csv", arguments->csv, "as CSV with a line of titles");
  CLI::Option* json =
      command->add_flag("--json", arguments->json, "as one JSON array of objects")->excludes(csv);
  CLI::Option* orders =
      command
          ->add_flag("--orders", arguments->orders,
                     "the orders with their quantities, running balance and hindsight, as CSV")
          ->excludes(json);
  CLI::Option* runs =
      command->add_flag("--runs", arguments->runs, "the runs whose rows are in the archive")
          ->excludes(orders);
  command->add_option("--run", arguments->run, "the rows of the archived run of this number")
      ->check(CLI::PositiveNumber)
      ->excludes(runs);
  AddDatePattern(*command, arguments->date_pattern);
  command->callback([arguments, &context] { PrintLedger(*arguments, context); });
}

}  // namespace velumar
