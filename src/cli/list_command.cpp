#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "cli/json_text.h"
#include "cli/text_table.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_reader.h"

namespace velumar {

namespace {

struct ListArguments {
  std::string directory;
  bool json = false;
};

std::vector<SecurityInfo> Securities(const std::string& directory, IndexCache& cache) {
  MetaLibReader reader(cache);
  reader.OpenDirectory(directory);
  std::vector<SecurityInfo> securities;
  while (reader.NextSecurity() > 0) {
    reader.ReadSecurityHeader();
    securities.push_back(reader.Security());
  }
  return securities;
}

std::string Json(const std::vector<SecurityInfo>& securities) {
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

void AddListCommand(CLI::App& app, CliContext& context) {
  const auto arguments = std::make_shared<ListArguments>();
  CLI::App* command = app.add_subcommand(
      "list", "List the securities of a market data directory in the order of its index.");
  command->add_option("DIR", arguments->directory, "the market data directory")->required();
  command->add_flag("--json", arguments->json,
                    "one JSON array; interval is -1 for daily bars, first and last are yyyymmdd, 0 "
                    "without bars");
  command->callback([arguments, &context] {
    const std::vector<SecurityInfo> securities = Securities(arguments->directory, context.cache);
    context.out << (arguments->json ? Json(securities) : SecurityTable(securities));
  });
}

}  // namespace velumar
