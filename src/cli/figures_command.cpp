#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>

#include "base/dates.h"
#include "cli/commands.h"
#include "cli/date_pattern.h"
#include "cli/text_table.h"
#include "ledger/ledger.h"
#include "results/result_figures.h"
#include "results/run_record.h"
#include "results/statistics.h"

namespace velumar {

namespace {

struct FiguresArguments {
  std::string file;
  bool json = false;
  bool explain = false;
  int run = kRunNow;
  std::string date_pattern;
};

std::string Json(const ResultFigures& figures, const std::vector<Statistic>& statistics) {
  nlohmann::ordered_json object;
  for (const ResultFigureText& figure : ResultFigureTexts(figures)) {
    object[std::string(figure.field)] = figure.text;
  }
  object["statistics"] = nlohmann::ordered_json::object();
  for (const Statistic& statistic : statistics) {
    object["statistics"][std::string(statistic.name)] = statistic.value;
  }
  constexpr int kIndent = 2;
  return object.dump(kIndent, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::string Table(const ResultFigures& figures, const std::vector<Statistic>& statistics) {
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

void PrintFigures(const FiguresArguments& arguments, CliContext& context) {
  const std::string pattern = UsedDatePattern(arguments.date_pattern);
  LedgerConnection ledger([&](std::string_view date) { return IsoDateText(date, pattern); });
  LedgerOpenToRead(ledger, arguments.file);
  const std::vector<RunRecord> account = ReadAccount(ledger, arguments.run);
  const ResultFigures figures = LoadResultFigures(ledger, arguments.run);
  const std::vector<Statistic> statistics = RunStatistics(account);
  if (arguments.explain) {
    context.out << Formulas(statistics);
    return;
  }
  context.out << (arguments.json ? Json(figures, statistics) : Table(figures, statistics));
}

}  // namespace

void AddFiguresCommand(CLI::App& app, CliContext& context) {
  const auto arguments = std::make_shared<FiguresArguments>();
  CLI::App* command = app.add_subcommand(
      "figures", "Print what the orders of a run come to: the newest one's, or an archived one's.");
  command->add_option("FILE", arguments->file, "the ledger, as Portfolio.mdb")->required();
  CLI::Option* json = command->add_flag("--json", arguments->json, "as one JSON object of texts");
  command->add_flag("--explain", arguments->explain, "the statistics, each with its formula")
      ->excludes(json);
  command->add_option("--run", arguments->run, "the archived run of this number")
      ->check(CLI::PositiveNumber);
  AddDatePattern(*command, arguments->date_pattern);
  command->callback([arguments, &context] { PrintFigures(*arguments, context); });
}

}  // namespace velumar
