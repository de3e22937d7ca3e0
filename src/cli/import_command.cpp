#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>
#include <string>

#include "base/paths.h"
#include "cli/commands.h"
#include "csv/csv_import.h"
#include "csv/csv_text.h"
#include "marketdata/interval.h"

namespace velumar {

namespace {

struct ImportArguments {
  std::string file;
  std::string directory;
  CsvImportOptions options;
};

// Of a number of bars, as a sentence begins with it: "1 bar has", "2 bars have".
std::string BarsHave(int count) {
  return std::to_string(count) + (count == 1 ? " bar has" : " bars have");
}

void Import(const ImportArguments& arguments, CliContext& context) {
  const CsvImportReport report =
      ImportCsv(NativePath(arguments.file), arguments.directory, arguments.options, context.cache);
  if (report.contradictions > 0) {
    context.err << arguments.file << ": " << BarsHave(report.contradictions)
                << " prices that contradict each other, taken in as they stand (first on line "
                << report.first_contradiction_line << ")\n";
  }
  if (report.times_left_out > 0) {
    context.err << arguments.file << ": " << BarsHave(report.times_left_out)
                << " a time, left out since a daily series keeps none\n";
  }
  context.out << report.symbol << ' ' << IntervalText(report.interval) << ": " << report.bars
              << (report.bars == 1 ? " bar, " : " bars, ") << report.first_date << " to "
              << report.last_date << '\n';
}

CLI::Option* AddText(CLI::App* command, const std::string& flag, std::optional<std::string>& text,
                     const std::string& help) {
  return command->add_option_function<std::string>(
      flag, [&text](const std::string& given) { text = given; }, help);
}

void AddOptions(CLI::App* command, CsvImportOptions& options) {
  AddText(command, "--symbol", options.symbol,
          "the symbol, up to 14 characters; without it the file's name tells (AAPL_D.csv)")
      ->check([](const std::string& text) {
        return text.find_first_not_of(' ') == std::string::npos ? "the symbol is empty" : "";
      });
  AddText(command, "--name", options.name,
          "the security's name; without it a stored one stays, else it is the symbol");
  command
      ->add_option_function<std::string>(
          "--interval",
          [&options](const std::string& text) { options.interval = IntervalFromText(text); },
          "D for daily bars, or the minutes: 5, 10, 15, 30, 60; without it the file's name or the "
          "gaps between the bars tell")
      ->check(CLI::IsMember({"D", "5", "10", "15", "30", "60"}, CLI::ignore_case));
  command->add_option_function<std::string>(
      "--date-format",
      [&options](const std::string& pattern) {
        try {
          options.date_format = CsvDateFormat(pattern);
        } catch (const CsvError& error) {
          throw CLI::ValidationError("--date-format", error.what());
        }
      },
      "how dates are written, if not yyyymmdd or yyyy-mm-dd: %d.%m.%Y, or \"%m/%d/%y %H:%M\" with "
      "the time in the same column");
}

}  // namespace

void AddImportCommand(CLI::App& app, CliContext& context) {
  const auto arguments = std::make_shared<ImportArguments>();
  CLI::App* command = app.add_subcommand(
      "import",
      "Add the bars of a CSV file to a market data directory as one security, or replace the "
      "security of the same symbol and interval. The first line names the columns: Date, Open, "
      "High, Low, Close and, where there are, Time, Volume and OpenInterest. If a line can't be "
      "taken in, nothing is written.");
  command->add_option("CSV", arguments->file, "the file, separated by commas, semicolons or tabs")
      ->required();
  command
      ->add_option("DIR", arguments->directory, "the market data directory, made if it is missing")
      ->required();
  AddOptions(command, arguments->options);
  command->callback([arguments, &context] { Import(*arguments, context); });
}

}  // namespace velumar
