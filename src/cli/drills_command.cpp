#include <ostream>

#include "cli/commands.h"
#include "cli/json_text.h"
#include "cli/text_table.h"
#include "results/figure_texts.h"
#include "trading/drill_list.h"

namespace velumar {

namespace {

nlohmann::ordered_json DrillObject(const DrillResult& result) {
  const LedgerDrill& drill = result.drill;
  const DrillFigures& figures = result.figures;
  nlohmann::ordered_json object{{"drill", drill.number},
                                {"began", drill.began},
                                {"charts", drill.charts},
                                {"bars", drill.bars},
                                {"seconds", drill.seconds},
                                {"directory", drill.directory},
                                {"interval", drill.interval},
                                {"finished", drill.finished},
                                {"sessions", drill.sessions},
                                {"trades", figures.trades},
                                {"wins", figures.wins},
                                {"win_rate", nullptr},
                                {"r", nullptr},
                                {"money", figures.money},
                                {"usual_moves", nullptr},
                                {"rank", nullptr},
                                {"ranked", result.ranked}};
  if (figures.WinRate()) object["win_rate"] = *figures.WinRate();
  if (figures.R()) object["r"] = *figures.R();
  if (figures.moves) object["usual_moves"] = *figures.moves;
  if (result.rank > 0) object["rank"] = result.rank;
  return object;
}

std::string DrillTable(const std::vector<DrillResult>& results) {
  std::vector<TextTable::Column> columns{{"No.", TextTable::kRight}, {"Begun (UTC)"}};
  for (const DrillColumn& column : kDrillColumns) {
    columns.push_back(
        {std::string(column.title), column.numeric ? TextTable::kRight : TextTable::kLeft});
  }
  TextTable table(std::move(columns));
  for (const DrillResult& result : results) {
    std::vector<std::string> cells{std::to_string(result.drill.number), result.drill.began};
    for (std::size_t i = 0; i < kDrillColumns.size(); ++i) cells.push_back(DrillCell(result, i));
    table.AddRow(std::move(cells));
  }
  return table.Text();
}

}  // namespace

void PrintDrills(const DrillsArguments& arguments, CliContext& context) {
  LedgerConnection ledger = OpenScope({arguments.file, kCurrentRun, {}});
  const std::vector<DrillResult> results = ListDrills(ledger, context.cache);
  if (!arguments.json) {
    context.out << DrillTable(results);
    return;
  }
  auto list = nlohmann::ordered_json::array();
  for (const DrillResult& result : results) list.push_back(DrillObject(result));
  context.out << JsonText(list, kIndented);
}

}  // namespace velumar
