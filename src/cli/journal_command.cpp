#include <filesystem>
#include <ostream>
#include <system_error>

#include "base/paths.h"
#include "base/whole_file.h"
#include "cli/commands.h"
#include "cli/json_text.h"
#include "cli/text_table.h"
#include "results/figure_texts.h"
#include "results/journal_list.h"
#include "results/journal_page.h"

namespace velumar {

namespace {

nlohmann::ordered_json NotesArray(const std::vector<LedgerNote>& notes) {
  auto list = nlohmann::ordered_json::array();
  for (const LedgerNote& note : notes) {
    list.push_back({{"text", note.text}, {"written", note.written}});
  }
  return list;
}

nlohmann::ordered_json ValueOf(const OrderCell& cell, bool numeric) {
  const auto* const number = std::get_if<double>(&cell.exact);
  if (number != nullptr) return DecimalNumber(DecimalText(*number));
  if (numeric) return nullptr;
  return ValueAs<std::string>(cell.exact);
}

nlohmann::ordered_json TradeObject(const JournalEntry& entry, int session) {
  nlohmann::ordered_json object;
  const JournalRow row = RowOf(entry, session);
  for (std::size_t i = 0; i < row.size(); ++i) {
    const JournalColumn& column = kJournalColumns.at(i);
    object[std::string(column.field)] = ValueOf(row.at(i), column.numeric);
  }
  object["notes"] = NotesArray(entry.notes);
  return object;
}

std::string JournalJson(const std::vector<Journal>& journals) {
  auto list = nlohmann::ordered_json::array();
  for (const Journal& journal : journals) {
    nlohmann::ordered_json object{{"title", journal.title},
                                  {"session", nullptr},
                                  {"notes", NotesArray(journal.notes)},
                                  {"trades", nlohmann::ordered_json::array()}};
    if (journal.session != 0) object["session"] = journal.session;
    for (const JournalEntry& entry : journal.trades) {
      object["trades"].push_back(TradeObject(entry, journal.session));
    }
    list.push_back(std::move(object));
  }
  return JsonText(list, kIndented);
}

std::string JournalTable(const Journal& journal) {
  std::vector<TextTable::Column> columns;
  for (const std::size_t column : ListedColumns()) {
    const JournalColumn& described = kJournalColumns.at(column);
    columns.push_back(
        {std::string(described.title), described.numeric ? TextTable::kRight : TextTable::kLeft});
  }
  TextTable table(std::move(columns));
  for (const JournalEntry& entry : journal.trades) {
    const JournalRow row = RowOf(entry, journal.session);
    std::vector<std::string> cells;
    for (const std::size_t column : ListedColumns()) cells.push_back(row.at(column).text);
    table.AddRow(std::move(cells));
  }
  return journal.title + "\n" + table.Text();
}

}  // namespace

void PrintJournal(const JournalArguments& arguments, CliContext& context) {
  LedgerConnection ledger = OpenScope({arguments.file, kCurrentRun, arguments.date_pattern});
  const std::vector<Journal> journals =
      arguments.session == 0
          ? ReadJournals(ledger)
          : std::vector{ReadJournal(ledger, LedgerScope::Session(arguments.session))};
  if (!arguments.html.empty()) {
    const std::filesystem::path folder = NativePath(arguments.html);
    std::error_code none;
    std::filesystem::create_directories(folder, none);  // if it fails, the page names the folder
    return ReplaceWholeFile(folder / "journal.html", JournalPage(ledger, journals));
  }
  if (arguments.csv) {
    context.out << JournalCsv(journals);
  } else if (arguments.json) {
    context.out << JournalJson(journals);
  } else {
    for (const Journal& journal : journals) context.out << JournalTable(journal) << "\n";
  }
}

}  // namespace velumar
