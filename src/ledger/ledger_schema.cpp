#include "ledger/ledger_schema.h"

#include <sqlite3.h>

#include <array>
#include <sstream>
#include <string>

#include "base/dates.h"
#include "ledger/ledger.h"

namespace velumar {

namespace {

// The 22 columns of a row. NUMERIC stores whole numbers as integers, so other tools show them
// plainly.
constexpr std::string_view kRowColumns =
    "Profile NUMERIC, Symbol TEXT, SymbolInterval NUMERIC, ActDate TEXT, ActTime TEXT, "
    "MarketPrice NUMERIC, Position TEXT, LAvgPrice NUMERIC, LAmount NUMERIC, Loffset NUMERIC, "
    "LAccum NUMERIC, LUnrealised NUMERIC, LRealised NUMERIC, SAvgPrice NUMERIC, SAmount NUMERIC, "
    "Soffset NUMERIC, SAccum NUMERIC, SUnrealised NUMERIC, SRealised NUMERIC, "
    "BalancePoint NUMERIC, Commission NUMERIC, Portfolio NUMERIC";

const std::array<TableSchema, 6>& Tables() {
  static const std::string kArchiveColumns =
      "Run INTEGER, Place INTEGER, " + std::string(kRowColumns);
  static const std::array<TableSchema, 6> kTables{
      {{"MyPortfolio", kRowColumns},
       {"Portfolio_Profile", "[Profile Name] TEXT, [Start Period] TEXT, [End Period] TEXT"},
       {"Runs",
        "Id INTEGER PRIMARY KEY AUTOINCREMENT, Directory TEXT, Symbol TEXT, SymbolInterval TEXT, "
        "StartDate TEXT, StartTime TEXT, Market TEXT, StartingMoney NUMERIC, Margin NUMERIC, "
        "MoneyPerPoint NUMERIC"},
       {"Archive", kArchiveColumns},
       {"Details",
        "Run INTEGER, Place INTEGER, Quantity NUMERIC, Vat NUMERIC, BarIndex INTEGER, "
        "NewestShown INTEGER"},
       {"Wiped",
        "Run INTEGER, Position TEXT, Held NUMERIC, AvgPrice NUMERIC, Quantity NUMERIC, "
        "BarIndex INTEGER, NewestShown INTEGER"}}};
  return kTables;
}

// "2007-01-25 16:30:00" as "25-Jan-07 16:30"; any other text unchanged.
std::string DayMonthYearTime(const std::string& text) {
  constexpr std::size_t kDateLength = 10;
  constexpr std::size_t kJoinedLength = 19;
  if (text.size() != kJoinedLength) return text;
  return IsoDateText(text.substr(0, kDateLength), "dd-MMM-yy") + text.substr(kDateLength, 6);
}

void FormatJoined(sqlite3_context* context, int, sqlite3_value** arguments) {
  const auto* bytes = reinterpret_cast<const char*>(sqlite3_value_text(arguments[0]));
  if (bytes == nullptr) {
    sqlite3_result_null(context);
    return;
  }
  const std::string shown = DayMonthYearTime(bytes);
  sqlite3_result_text(context, shown.c_str(), static_cast<int>(shown.size()), SQLITE_TRANSIENT);
}

bool HasColumn(const SqliteDatabase& database, const std::string& table,
               const std::string& column) {
  return database.FirstValue("SELECT 1 FROM pragma_table_info(?) WHERE name = ?",
                             {table, column}) != LedgerValue();
}

// Ledgers of earlier versions have neither the place and bar of a wiped-out holding nor all
// decimals of an order's price.
void AddNewerColumns(SqliteDatabase& database) {
  if (!HasColumn(database, "Wiped", "Place")) {
    for (const char* column :
         {"Place INTEGER", "BarDate TEXT", "BarTime TEXT", "MarketPrice NUMERIC"}) {
      database.Execute("ALTER TABLE Wiped ADD COLUMN " + std::string(column));
    }
  }
  if (!HasColumn(database, "Details", "ClosePrice")) {
    database.Execute("ALTER TABLE Details ADD COLUMN ClosePrice NUMERIC");
  }
}

void CreateLedgerTables(SqliteDatabase& database) {
  CreateTables(database, Tables());
  AddNewerColumns(database);
}

}  // namespace

const std::vector<std::string>& PortfolioColumns() {
  static const std::vector<std::string> kColumns = [] {
    std::vector<std::string> columns;
    std::istringstream declared{std::string(kRowColumns)};
    for (std::string name, type; declared >> name >> type;) columns.push_back(name);
    return columns;
  }();
  return kColumns;
}

const DatabaseKind& LedgerKind() {
  static const DatabaseKind kKind{"ledger", Tables(), CreateLedgerTables};
  return kKind;
}

void AddLedgerFunctions(SqliteDatabase& database) {
  sqlite3_create_function(database.Handle(), "format", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC,
                          nullptr, FormatJoined, nullptr, nullptr);
}

}  // namespace velumar
