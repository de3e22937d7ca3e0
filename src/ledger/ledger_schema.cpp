#include "ledger/ledger_schema.h"

#include <sqlite3.h>

#include <array>
#include <charconv>
#include <string>

namespace velumar {

namespace {

// The 22 columns of a row; NUMERIC stores whole numbers as such, so any tool shows them plainly.
constexpr std::string_view kRowColumns =
    "Profile NUMERIC, Symbol TEXT, SymbolInterval NUMERIC, ActDate TEXT, ActTime TEXT, "
    "MarketPrice NUMERIC, Position TEXT, LAvgPrice NUMERIC, LAmount NUMERIC, Loffset NUMERIC, "
    "LAccum NUMERIC, LUnrealised NUMERIC, LRealised NUMERIC, SAvgPrice NUMERIC, SAmount NUMERIC, "
    "Soffset NUMERIC, SAccum NUMERIC, SUnrealised NUMERIC, SRealised NUMERIC, "
    "BalancePoint NUMERIC, Commission NUMERIC, Portfolio NUMERIC";

const std::array<OwnTable, 6>& Tables() {
  static const std::string kArchiveColumns =
      "Run INTEGER, Place INTEGER, " + std::string(kRowColumns);
  static const std::array<OwnTable, 6> kTables{
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

constexpr std::array<std::string_view, 12> kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// "2007-01-25 16:30:00" as "25-Jan-07 16:30"; any other text as it is.
std::string DayMonthYearTime(std::string_view text) {
  constexpr std::size_t kJoinedLength = 19;
  if (text.size() != kJoinedLength) return std::string(text);
  unsigned month = 0;
  std::from_chars(text.data() + 5, text.data() + 7, month);
  if (month < 1 || month > kMonths.size()) return std::string(text);
  return std::string(text.substr(8, 2)) + "-" + std::string(kMonths.at(month - 1)) + "-" +
         std::string(text.substr(2, 2)) + " " + std::string(text.substr(11, 5));
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

// Ledgers of earlier versions hold neither the place and the bar of a wiped holding nor all
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

void MakeLedgerTables(SqliteDatabase& database) {
  MakeTables(database, Tables());
  AddNewerColumns(database);
}

}  // namespace

const DatabaseKind& LedgerKind() {
  static const DatabaseKind kKind{"ledger", Tables(), MakeLedgerTables};
  return kKind;
}

void AddLedgerFunctions(SqliteDatabase& database) {
  sqlite3_create_function(database.Handle(), "format", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC,
                          nullptr, FormatJoined, nullptr, nullptr);
}

}  // namespace velumar
