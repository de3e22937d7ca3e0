#include <ostream>

#include "cli/commands.h"
#include "cli/json_text.h"
#include "cli/text_table.h"
#include "import/csv_export.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_reader.h"

namespace velumar {

namespace {

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

void ListSecurities(const ListArguments& arguments, CliContext& context) {
  const std::vector<SecurityInfo> securities = SecuritiesOf(arguments.directory, context.cache);
  context.out << (arguments.json ? SecurityJson(securities) : SecurityTable(securities));
}

void Dump(const DumpArguments& arguments, CliContext& context) {
  context.out << CsvOfSeries(arguments.directory, arguments.symbol,
                             *IntervalFromText(arguments.interval), context.cache);
}

}  // namespace velumar
