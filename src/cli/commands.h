#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "import/price_import.h"
#include "progress/summary.h"
#include "results/run_record.h"

namespace velumar {

class IndexCache;
struct ReplayArguments;

// What the commands work with. main builds it; tests pass string streams.
struct CliContext {
  IndexCache& cache;
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
  bool shows_progress = false;  // on `err`, which is a terminal
};

// Runs one command; `arguments` are those after the program's name. Returns the exit code: 0, 1
// after a failure, 2 if the arguments are invalid or a file leaves open how it is to be imported.
// After 1 and 2 `context.err` has the reason.
int RunCli(const std::vector<std::string>& arguments, CliContext& context);

// The commands, with their arguments as they are parsed. A command throws if it fails.

inline constexpr int kFailure = 1;
inline constexpr int kUndecided = 2;

struct ImportArguments {
  std::vector<std::string> paths;  // files and folders, and the directory as the last one
  ImportOptions options;
  bool dry_run = false;
  bool json = false;
  bool explain = false;
};
// Imports what can be imported. Returns kUndecided if a file leaves something open, else kFailure
// if one failed, else 0.
int Import(const ImportArguments& arguments, CliContext& context);
int UpdateDirectory(const std::string& directory, CliContext& context);

struct ListArguments {
  std::string directory;
  bool json = false;
};
void ListSecurities(const ListArguments& arguments, CliContext& context);

struct DumpArguments {
  std::string directory;
  std::string symbol;
  std::string interval;
};
void Dump(const DumpArguments& arguments, CliContext& context);

// The run or session that a command reads from a ledger.
struct ScopeArguments {
  std::string file;
  LedgerScope scope = kCurrentRun;
  std::string date_pattern;  // empty for that of the user's locale
};
// Opens the ledger read-only. Throws LedgerError, also if no run or session has the number.
LedgerConnection OpenScope(const ScopeArguments& arguments);

struct LedgerArguments : ScopeArguments {
  bool csv = false;
  bool json = false;
  bool runs = false;
  bool orders = false;
};
void PrintLedger(const LedgerArguments& arguments, CliContext& context);

struct FiguresArguments : ScopeArguments {
  bool json = false;
  bool explain = false;
};
void PrintFigures(const FiguresArguments& arguments, CliContext& context);

struct ChartArguments : ScopeArguments {
  std::string out;
  std::string type = "2D Line";
};
// The trades that a command is about, over all sessions, and how they are resampled.
struct SelectionArguments {
  std::string file;
  std::string symbol;  // empty: any
  std::string setup;
  std::string interval;  // "D" or the minutes
  TradeFilter filter;    // what it has of these three does not count
  int rounds = 10'000;
  std::uint64_t seed = 1;
};
// Throws std::runtime_error for a name that no trade has.
TradeFilter FilterOf(const SelectionArguments& arguments, const Played& played);
ProgressSummary SummaryOf(const Played& played, const TradeFilter& filter,
                          const SelectionArguments& arguments, CliContext& context);

struct ReportArguments : ScopeArguments {
  std::string out;
  bool all = false;  // over all sessions, or the one of the scope
  SelectionArguments selection;
};
struct DrawingCommands {
  void (*draw_chart)(const ChartArguments& arguments);
  void (*write_report)(const ReportArguments& arguments, CliContext& context);
};
// Null if the program was built without the windows.
const DrawingCommands* FindDrawingCommands();

struct SessionsArguments {
  std::string file;
  int reveal = 0;  // the number of a blind session; 0: list them
  bool json = false;
  std::string date_pattern;  // empty for that of the user's locale
};
void PrintSessions(const SessionsArguments& arguments, CliContext& context);

struct JournalArguments {
  std::string file;
  int session = 0;  // 0: all, and the runs that belong to none
  bool csv = false;
  bool json = false;
  std::string html;          // the folder of the page; empty: none
  std::string date_pattern;  // empty for that of the user's locale
};
void PrintJournal(const JournalArguments& arguments, CliContext& context);

struct CardsArguments {
  std::string file;
  int losses = 0;  // make cards of so many losses; 0: none
  int card = 0;    // delete this one; 0: none
  bool due = false;
  bool json = false;
  std::string date_pattern;  // empty for that of the user's locale
};
// Makes or deletes cards, or lists them.
void Cards(const CardsArguments& arguments, CliContext& context);

struct StatsArguments : SelectionArguments {
  bool json = false;
  bool csv = false;  // the trades
};
void PrintStats(const StatsArguments& arguments, CliContext& context);

struct DrillsArguments {
  std::string file;
  bool json = false;
};
void PrintDrills(const DrillsArguments& arguments, CliContext& context);

void Replay(const ReplayArguments& arguments, CliContext& context);
// Why NAME=TEXT does not set a control; empty if it does.
std::string AssignmentProblem(const std::string& assignment);

// The given date pattern, or that of the user's locale if it is empty.
std::string DatePatternOrDefault(const std::string& given);

}  // namespace velumar
