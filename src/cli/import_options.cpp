#include "cli/import_options.h"

#include "base/number_text.h"
#include "cli/option_kinds.h"
#include "import/date_pattern.h"
#include "marketdata/interval.h"

namespace velumar {

namespace {

constexpr const char* kImportNotes =
    "Understands the usual price files, plain or in zip or gz. Stored bars that a file lacks are\n"
    "kept, others are corrected. A file that leaves something open is not imported; the message\n"
    "names the option that decides it, and the other files are imported. Exits with 2 if a file\n"
    "leaves something open, else with 1 if one failed.";

std::string ScaleProblem(const std::string& text) {
  return IsScale(ExactNumber<int>(text).value_or(0))
             ? ""
             : "a scale is 1, 10, 100 ... up to 1000000, not " + text;
}

std::string SymbolProblem(const std::string& text) {
  return text.find_first_not_of(' ') == std::string::npos ? "the symbol is empty" : "";
}

CLI::Option* AddText(CLI::App& command, const std::string& flag, std::optional<std::string>& text,
                     const std::string& help) {
  return command.add_option_function<std::string>(
      flag, [&text](const std::string& given) { text = given; }, help);
}

void AddDates(CLI::App& command, ImportOptions& options) {
  command.add_option_function<std::string>(
      "--date-format",
      [&options](const std::string& pattern) {
        try {
          options.date_format = DatePattern(pattern).Text();
        } catch (const ImportError& error) {
          throw CLI::ValidationError("--date-format", error.what());
        }
      },
      "the format of the dates: %d.%m.%Y, or \"%m/%d/%y %H:%M\" if the column includes the time "
      "(default: recognised)");
  AddChoice(command, "--date-order", options.date_order,
            {{"dmy", DateOrder::kDayMonthYear},
             {"mdy", DateOrder::kMonthDayYear},
             {"ymd", DateOrder::kYearMonthDay}},
            "the order of day, month and year");
  AddChoice(command, "--decimal", options.decimal_comma, {{"comma", true}, {"point", false}},
            "the sign before the decimals (default: recognised)");
  AddChoice(command, "--label", options.label,
            {{"start", BarLabel::kStart}, {"end", BarLabel::kEnd}},
            "whether the times are the start (default) or the end of the bars");
}

void AddPrices(CLI::App& command, ImportOptions& options) {
  CLI::Option* adjusted = command.add_flag_function(
      "--adjusted", [&options](std::int64_t) { options.prices = Prices::kAdjusted; },
      "take the adjusted close, and adjust open, high and low by the same factor");
  command
      .add_flag_function(
          "--unadjusted", [&options](std::int64_t) { options.prices = Prices::kAsTraded; },
          "take the prices as traded")
      ->excludes(adjusted);
  command
      .add_option("--scale", options.scale,
                  "multiply the prices by a power of ten, so that they can be traded in "
                  "hundredths")
      ->check(ScaleProblem);
}

void AddRange(CLI::App& command, ImportOptions& options) {
  AddDay(command, "--from", options.from, "the first day to import, yyyymmdd");
  AddDay(command, "--to", options.to, "the last day to import, yyyymmdd");
  CLI::Option* last = command.add_flag_function(
      "--last", [&options](std::int64_t) { options.too_long = TooLong::kKeepLast; },
      "keep the last 32768 bars of a longer series");
  command
      .add_flag_function(
          "--split-by-year", [&options](std::int64_t) { options.too_long = TooLong::kSplitByYear; },
          "make one series of each year: EURUSD-2023")
      ->excludes(last);
}

void AddZones(CLI::App& command, ImportOptions& options) {
  AddText(command, "--from-zone", options.from_zone,
          "the time zone of the times, such as Europe/Berlin (default: kept as written)");
  AddText(command, "--to-zone", options.to_zone, "the time zone to convert them to (default: UTC)");
  command.add_flag("--utc", options.utc, "convert times that state their offset to UTC");
}

}  // namespace

void AddImportOptions(CLI::App& command, ImportArguments& arguments) {
  command.footer(kImportNotes);
  command
      .add_option("FILE", arguments.paths,
                  "price files, or folders of them; then DIR, the market data directory, which is "
                  "created if missing")
      ->required();
  ImportOptions& options = arguments.options;
  AddText(command, "--symbol", options.symbol,
          "the symbol, up to 14 characters (default: from the file or its name)")
      ->check(SymbolProblem);
  AddText(command, "--name", options.name,
          "the name of the security (default: the stored name, or the symbol)");
  command
      .add_option_function<std::string>(
          "--interval",
          [&options](const std::string& text) { options.interval = IntervalFromText(text); },
          "D for daily bars, or the minutes: 5, 10, 15, 30, 60; finer bars are aggregated "
          "(default: from the file, its name, or the gaps between bars)")
      ->check(CLI::IsMember({"D", "5", "10", "15", "30", "60"}, CLI::ignore_case));
  AddDates(command, options);
  AddPrices(command, options);
  AddRange(command, options);
  AddZones(command, options);
  command.add_flag("--replace", options.replace,
                   "replace the stored series instead of adding to it");
  CLI::Option* dry_run = command.add_flag("--dry-run", arguments.dry_run,
                                          "print what was understood and import nothing");
  command.add_flag("--json", arguments.json, "with --dry-run: as one JSON object")->needs(dry_run);
  command.add_flag("--explain", arguments.explain, "with --dry-run: the reason for each column")
      ->needs(dry_run);
}

}  // namespace velumar
