#include <ostream>

#include "base/paths.h"
#include "cli/commands.h"
#include "cli/json_text.h"
#include "cli/text_table.h"
#include "csv/csv_export.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_reader.h"

namespace velumar {

namespace {

// "1 bar has", "2 bars have".
std::string BarsHave(int count) {
  return std::to_string(count) + (count == 1 ? " bar has" : " bars have");
}

std::string SecurityJson(const std::vector<SecurityInfo>& securities) {
  auto rows = nlohmann::ordered_json::array();
  for (const SecurityInfo& security : securities) {
    rows.push_back({{"symbol", security.symbol},
                    {"name", security.name},
                    {"interval", security.interval},
                    {"fields", security.fields},
                    {"file", security.file_number},
                    {"bars", security.bars},
                    {"first", security.first_date},
                    {"last", security.last_date}});
  }
  return JsonText(rows, kIndented);
}

std::string SecurityTable(const std::vector<SecurityInfo>& securities) {
  TextTable table({{"symbol"},
                   {"name"},
                   {"interval", TextTable::kRight},
                   {"fields", TextTable::kRight},
                   {"file", TextTable::kRight},
                   {"bars", TextTable::kRight},
                   {"first", TextTable::kRight},
                   {"last", TextTable::kRight}});
  for (const SecurityInfo& security : securities) {
    table.AddRow({security.symbol, security.name, IntervalText(security.interval),
                  std::to_string(security.fields), std::to_string(security.file_number),
                  std::to_string(security.bars), std::to_string(security.first_date),
                  std::to_string(security.last_date)});
  }
  return table.Text();
}

}  // namespace

void Import(const ImportArguments& arguments, CliContext& context) {
  const CsvImportReport report =
      ImportCsv(NativePath(arguments.file), arguments.directory, arguments.options, context.cache);
  if (report.contradictions > 0) {
    context.err << arguments.file << ": " << BarsHave(report.contradictions)
                << " contradictory prices, imported unchanged (first on line "
                << report.first_contradiction_line << ")\n";
  }
  if (report.times_left_out > 0) {
    context.err << arguments.file << ": " << BarsHave(report.times_left_out)
                << " a time, ignored because the series is daily\n";
  }
  context.out << report.symbol << ' ' << IntervalText(report.interval) << ": " << report.bars
              << (report.bars == 1 ? " bar, " : " bars, ") << report.first_date << " to "
              << report.last_date << '\n';
}

void ListSecurities(const ListArguments& arguments, CliContext& context) {
  const std::vector<SecurityInfo> securities = SecuritiesOf(arguments.directory, context.cache);
  context.out << (arguments.json ? SecurityJson(securities) : SecurityTable(securities));
}

void Dump(const DumpArguments& arguments, CliContext& context) {
  context.out << CsvOfSeries(arguments.directory, arguments.symbol,
                             *IntervalFromText(arguments.interval), context.cache);
}

}  // namespace velumar
