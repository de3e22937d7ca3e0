#include "ledger/ledger_tables.h"

#include <array>
#include <initializer_list>
#include <string>

namespace velumar {

namespace {

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

void AddColumns(SqliteDatabase& database, const std::string& table,
                std::initializer_list<const char*> columns) {
  for (const char* column : columns) {
    const std::string name = std::string(column).substr(0, std::string_view(column).find(' '));
    if (database.HasColumn(table, name)) continue;  // of a copy that has lost its version
    database.Execute("ALTER TABLE " + table + " ADD COLUMN " + column);
  }
}

// Ledgers of earlier versions have neither the place and bar of a wiped-out holding nor all
// decimals of an order's price.
void AddNewerColumns(SqliteDatabase& database) {
  if (!database.HasColumn("Wiped", "Place")) {
    AddColumns(database, "Wiped",
               {"Place INTEGER", "BarDate TEXT", "BarTime TEXT", "MarketPrice NUMERIC"});
  }
  if (!database.HasColumn("Details", "ClosePrice")) {
    AddColumns(database, "Details", {"ClosePrice NUMERIC"});
  }
}

void CreateLedgerTables(SqliteDatabase& database) {
  CreateTables(database, Tables());
  AddNewerColumns(database);
}

// What a session has to write after each step is in a table of its own, so that a step changes one
// page. AUTOINCREMENT, so that no session gets the number of a forgotten one, whose runs it would
// take over.
void AddSessions(SqliteDatabase& database) {
  static constexpr std::array<TableSchema, 2> kTables{
      {{"Sessions",
        "Id INTEGER PRIMARY KEY AUTOINCREMENT, Directory TEXT, Symbol TEXT, SymbolInterval TEXT, "
        "StartDay INTEGER, StartingMoney TEXT, Margin TEXT, MoneyPerPoint TEXT, Commission TEXT, "
        "Vat TEXT, Begun TEXT, Ended INTEGER DEFAULT 0, Mask TEXT, Note TEXT"},
       {"SessionMoments",
        "Session INTEGER PRIMARY KEY, BarIndex INTEGER, NewestShown INTEGER, FirstShown INTEGER, "
        "BarDate INTEGER, BarTime INTEGER, BarsCheck TEXT, Book TEXT, AsShown INTEGER, Touched "
        "TEXT"}}};
  CreateTables(database, kTables);
  AddColumns(database, "Runs", {"Session INTEGER"});
}

// A plan without a run waits for the next order of its session. Each change of a note is a row; one
// without a run is about the session. A session that plays a trade again names its entry.
void AddJournal(SqliteDatabase& database) {
  static constexpr std::array<TableSchema, 2> kTables{
      {{"Plans",
        "Id INTEGER PRIMARY KEY, Session INTEGER, Run INTEGER, Place INTEGER, Stop NUMERIC, Target "
        "NUMERIC, Setup TEXT, Confidence INTEGER, Reasons TEXT, Risk NUMERIC, StopSince INTEGER, "
        "TargetSince INTEGER, Written TEXT"},
       {"Notes",
        "Id INTEGER PRIMARY KEY, Session INTEGER, Run INTEGER, Place INTEGER, Note TEXT, Written "
        "TEXT"}}};
  CreateTables(database, kTables);
  AddColumns(database, "Sessions", {"AgainRun INTEGER", "AgainPlace INTEGER"});
}

// What closed trades were, computed from rows and bars, and the bars that were played: see
// trades.h. A revealed order has the price at which the account counted it: reveal.h.
void AddTrades(SqliteDatabase& database) {
  static constexpr std::array<TableSchema, 2> kTables{
      {{"PlayedBars",
        "Session INTEGER, Run INTEGER, Orders INTEGER, NewestShown INTEGER, FirstBar INTEGER, "
        "FirstDay INTEGER, LastDay INTEGER, Closes BLOB, PRIMARY KEY (Session, Run)"},
       {"Trades",
        "Key INTEGER PRIMARY KEY, Session INTEGER, Run INTEGER, EntryRun INTEGER, EntryPlace "
        "INTEGER, EntryDay INTEGER, "
        "EntryTime INTEGER, EntryBar INTEGER, EntryPrice NUMERIC, ExitRun INTEGER, ExitPlace "
        "INTEGER, ExitDay INTEGER, ExitTime INTEGER, ExitBar INTEGER, ExitPrice NUMERIC, Side "
        "TEXT, Quantity NUMERIC, EntryShare NUMERIC, Wiped INTEGER, LookAhead INTEGER, "
        "MoneyPerPoint NUMERIC, Money NUMERIC, Costs NUMERIC, Adverse NUMERIC, AdverseBar INTEGER, "
        "Favourable NUMERIC, FavourableBar INTEGER"}}};
  CreateTables(database, kTables);
  AddColumns(database, "Details", {"Counted NUMERIC"});
  // The rows of one session or run are found among those of thousands; trades by their keys.
  for (const char* const index : {"ArchiveOfRun ON Archive (Run)", "DetailsOfRun ON Details (Run)",
                                  "WipedOfRun ON Wiped (Run)", "PlansOfRun ON Plans (Run)"}) {
    database.Execute(std::string("CREATE INDEX IF NOT EXISTS ") + index);
  }
}

// See cards.h. What a card shows is masked, so that a look at the ledger doesn't answer it.
void AddCards(SqliteDatabase& database) {
  static constexpr std::array<TableSchema, 2> kTables{
      {{"Cards",
        "Id INTEGER PRIMARY KEY AUTOINCREMENT, Kind INTEGER, Session INTEGER, Run INTEGER, Place "
        "INTEGER, Directory TEXT, Symbol TEXT, SymbolInterval TEXT, Mask TEXT, Position TEXT "
        "UNIQUE, BarIndex INTEGER, BarDate INTEGER, BarTime INTEGER, BarsCheck TEXT, Made TEXT, "
        "FirstDue INTEGER"},
       {"CardAnswers",
        "Id INTEGER PRIMARY KEY, Card INTEGER, Answered TEXT, Decision INTEGER, Stop NUMERIC, "
        "Confidence INTEGER, Bars INTEGER, Points NUMERIC, R NUMERIC, Verdict INTEGER, Step "
        "INTEGER, Due INTEGER"}}};
  CreateTables(database, kTables);
  database.Execute("CREATE INDEX IF NOT EXISTS AnswersOfCard ON CardAnswers (Card)");
}

// A drill and the sessions of its charts.
void AddDrills(SqliteDatabase& database) {
  static constexpr std::array<TableSchema, 2> kTables{
      {{"Drills",
        "Id INTEGER PRIMARY KEY AUTOINCREMENT, Began TEXT, Charts INTEGER, Bars INTEGER, "
        "SecondsEach INTEGER, Directory TEXT, SymbolInterval TEXT, Finished INTEGER DEFAULT 0"},
       {"DrillSessions",
        "Drill INTEGER, Place INTEGER, Session INTEGER, PRIMARY KEY (Drill, Place)"}}};
  CreateTables(database, kTables);
}

}  // namespace

const DatabaseKind& LedgerKind() {
  static constexpr std::array kMigrations{CreateLedgerTables, AddSessions, AddJournal,
                                          AddTrades,          AddCards,    AddDrills};
  static const DatabaseKind kKind{"ledger", Tables(), kMigrations};
  return kKind;
}

}  // namespace velumar
