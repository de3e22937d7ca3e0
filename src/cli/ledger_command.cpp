#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <ostream>
#include <string>

#include "base/csv_field.h"
#include "cli/commands.h"
#include "cli/common_options.h"
#include "cli/json_text.h"
#include "cli/ledger_texts.h"
#include "cli/text_table.h"
#include "results/order_list.h"

namespace velumar {

namespace {

struct LedgerArguments : RunArguments {
  bool csv = false;
  bool json = false;
  bool runs = false;
  bool orders = false;
};

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
                     arguments.run);
}

std::string Json(const LedgerRecordset& records) {
  auto rows = nlohmann::ordered_json::array();
  for (std::size_t i = 0; i < records.rows.size(); ++i) rows.push_back(LedgerRowObject(records, i));
  return JsonText(rows, kIndented);
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

std::string RowTable(const LedgerRecordset& records) {
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
  LedgerConnection ledger = OpenRun(arguments);
  if (arguments.orders) {
    context.out << OrdersCsv(ListOrders(ReadRun(ledger, arguments.run)));
    return;
  }
  const LedgerRecordset records = Records(ledger, arguments);
  context.out << (arguments.json  ? Json(records)
                  : arguments.csv ? Csv(records)
                                  : RowTable(records));
}

}  // namespace

void AddLedgerCommand(CLI::App& app, CliContext& context) {
  const auto arguments = std::make_shared<LedgerArguments>();
  CLI::App* command = app.add_subcommand("ledger", "Print the rows of a ledger, oldest first.");
  CLI::Option* run = AddRunArguments(*command, *arguments);
  CLI::Option* csv = command->add_flag("--csv", arguments->csv, "as CSV with a header line");
  CLI::Option* json =
      command->add_flag("--json", arguments->json, "as one JSON array of objects")->excludes(csv);
  CLI::Option* orders =
      command
          ->add_flag("--orders", arguments->orders,
                     "the orders with their quantities, running balance and hindsight, as CSV")
          ->excludes(json);
  command->add_flag("--runs", arguments->runs, "the archived runs that have rows")
      ->excludes(orders)
      ->excludes(run);
  AddDatePattern(*command, arguments->date_pattern);
  command->callback([arguments, &context] { PrintLedger(*arguments, context); });
}

}  // namespace velumar
