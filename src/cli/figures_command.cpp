#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>
#include <string>

#include "cli/commands.h"
#include "cli/common_options.h"
#include "cli/json_text.h"
#include "cli/text_table.h"
#include "results/result_figures.h"
#include "results/statistics.h"

namespace velumar {

namespace {

struct FiguresArguments : RunArguments {
  bool json = false;
  bool explain = false;
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

void PrintFigures(const FiguresArguments& arguments, CliContext& context) {
  LedgerConnection ledger = OpenRun(arguments);
  const std::vector<RunRecord> account = ReadAccount(ledger, arguments.run);
  const ResultFigures figures = LoadResultFigures(ledger, arguments.run);
  const std::vector<Statistic> statistics = RunStatistics(account);
  if (arguments.explain) {
    context.out << Formulas(statistics);
    return;
  }
  context.out << (arguments.json ? Json(figures, statistics) : FigureTable(figures, statistics));
}

}  // namespace

void AddFiguresCommand(CLI::App& app, CliContext& context) {
  const auto arguments = std::make_shared<FiguresArguments>();
  CLI::App* command =
      app.add_subcommand("figures", "Print the results of the newest run, or of an archived one.");
  AddRunArguments(*command, *arguments);
  CLI::Option* json = command->add_flag("--json", arguments->json, "as one JSON object of texts");
  command->add_flag("--explain", arguments->explain, "the statistics, each with its formula")
      ->excludes(json);
  AddDatePattern(*command, arguments->date_pattern);
  command->callback([arguments, &context] { PrintFigures(*arguments, context); });
}

}  // namespace velumar
