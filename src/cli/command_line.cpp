#include <exception>
#include <functional>
#include <limits>
#include <ostream>
#include <stdexcept>

#include "base/dates.h"
#include "cli/commands.h"
#include "cli/import_options.h"
#include "cli/option_kinds.h"
#include "cli/replay_world.h"
#include "marketdata/interval.h"

namespace velumar {

namespace {

constexpr int kBadArguments = 2;

constexpr const char* kReplayCommands =
    "Reads commands from stdin, one per line, and answers each with one line of JSON on stdout;\n"
    "the first answer is for \"begin\":\n"
    "  next, prev, ff, rew   make one of the four manual steps\n"
    "  feed [N]              feed N bars (1 by default), each with its refresh and delay\n"
    "  stop                  click \"Pause\"; the feed stops at its next check\n"
    "  pause                 click \"Pause\" and wait until the feed has stopped\n"
    "  long Q, short Q, offset-long Q, offset-short Q\n"
    "                        place an order of quantity Q, as typed into the panel\n"
    "  plan [for=next|last] [stop=P] [target=P] [setup=WORD] [confidence=N] [reasons=TEXT]\n"
    "                        keep a plan for the next order or the last one, by default for the\n"
    "                        last if it is open and has none; TEXT goes to the end of the line\n"
    "  play                  continue from the current bar\n"
    "  return, start         go back to the setup window; click \"Start\" there\n"
    "  figures               show the fourteen figures of the current run\n"
    "  set NAME TEXT         type a text into a control, such as Form2.txtRefresh";

std::string IntervalProblem(const std::string& text) {
  return IntervalFromText(text) ? "" : "an interval is D or a number of minutes, not " + text;
}

void AddDatePattern(CLI::App& command, std::string& pattern) {
  command.add_option("--date-pattern", pattern,
                     "the date format, such as dd/MM/yyyy (default: that of the user's locale)");
}

// The library's own check would name the largest number of all in its message.
CLI::Range NumberFromOne() { return CLI::Range(1, std::numeric_limits<int>::max()); }

// Adds FILE, "--run" and "--session".
void AddScope(CLI::App& command, ScopeArguments& arguments) {
  command.add_option("FILE", arguments.file, "the ledger, such as Portfolio.mdb")->required();
  const auto add = [&](const std::string& flag, LedgerScope (*scope)(int), const char* help) {
    return command
        .add_option_function<int>(
            flag, [&arguments, scope](int number) { arguments.scope = scope(number); }, help)
        ->check(NumberFromOne());
  };
  add("--run", LedgerScope::Run, "the number of a run (default: the current one)")
      ->excludes(add("--session", LedgerScope::Session, "the number of a session: all its runs"));
}

// The program's command line, and the arguments of whichever command was given.
class CommandLine {
 public:
  explicit CommandLine(CliContext& context) : context_(context) {
    app_.set_version_flag("--version", "velumar-cli " VELUMAR_VERSION);
    app_.require_subcommand(1);
    // "/data" is a folder on every system.
    app_.allow_windows_style_options(false);
    AddImportOptions(AddCommand("import", "Import price files into a market data directory.",
                                [this] { code_ = Import(import_, context_); }),
                     import_);
    AddUpdate();
    AddList();
    AddDump();
    AddFigures();
    AddLedger();
    if (const DrawingCommands* drawing = FindDrawingCommands()) {
      AddChart(*drawing);
      AddReport(*drawing);
    }
    AddReplay();
    AddSessions();
    AddJournal();
    AddStats();
    AddCards();
    AddDrills();
  }

  CLI::App& App() { return app_; }
  int Code() const { return code_; }

 private:
  // The command runs as soon as its arguments are parsed.
  CLI::App& AddCommand(const char* name, const char* help, const std::function<void()>& run) {
    return *app_.add_subcommand(name, help)->callback(run);
  }

  void AddUpdate() {
    CLI::App& command =
        AddCommand("update", "Import the files of earlier imports again, where they have changed.",
                   [this] { code_ = UpdateDirectory(update_, context_); });
    command.footer(
        "The directory remembers each imported file with its options. Of folders that were\n"
        "imported, new files are imported, too.");
    command.add_option("DIR", update_, "the market data directory")->required();
  }

  void AddList() {
    CLI::App& command =
        AddCommand("list", "List the securities of a market data directory in index order.",
                   [this] { ListSecurities(list_, context_); });
    command.add_option("DIR", list_.directory, "the market data directory")->required();
    command.add_flag("--json", list_.json,
                     "as one JSON array; interval is -1 for daily bars, first and last are "
                     "yyyymmdd, or 0 without bars");
  }

  void AddDump() {
    CLI::App& command = AddCommand(
        "dump", "Print the bars of one security as CSV, exactly, in the format that import reads.",
        [this] { Dump(dump_, context_); });
    command.add_option("DIR", dump_.directory, "the market data directory")->required();
    command.add_option("SYMBOL", dump_.symbol, "the symbol as in the directory")->required();
    command.add_option("INTERVAL", dump_.interval, "D for daily bars, or the minutes")
        ->required()
        ->check(IntervalProblem);
  }

  void AddFigures() {
    CLI::App& command = AddCommand(
        "figures", "Print the results of a run or session, by default of the newest run.",
        [this] { PrintFigures(figures_, context_); });
    AddScope(command, figures_);
    CLI::Option* json = command.add_flag("--json", figures_.json, "as one JSON object of texts");
    command.add_flag("--explain", figures_.explain, "the statistics, each with its formula")
        ->excludes(json);
    AddDatePattern(command, figures_.date_pattern);
  }

  void AddLedger() {
    CLI::App& command = AddCommand("ledger", "Print the rows of a ledger, oldest first.",
                                   [this] { PrintLedger(ledger_, context_); });
    AddScope(command, ledger_);
    CLI::Option* csv = command.add_flag("--csv", ledger_.csv, "as CSV with a header line");
    CLI::Option* json =
        command.add_flag("--json", ledger_.json, "as one JSON array of objects")->excludes(csv);
    CLI::Option* orders =
        command
            .add_flag("--orders", ledger_.orders,
                      "the orders with quantity, running balance and look-ahead, as CSV")
            ->excludes(json);
    command.add_flag("--runs", ledger_.runs, "the archived runs that have rows")
        ->excludes(orders)
        ->excludes(command.get_option("--run"))
        ->excludes(command.get_option("--session"));
    AddDatePattern(command, ledger_.date_pattern);
  }

  void AddChart(const DrawingCommands& drawing) {
    CLI::App& command = AddCommand("chart", "Draw the portfolio chart of a ledger to a file.",
                                   [this, &drawing] { drawing.draw_chart(chart_); });
    AddScope(command, chart_);
    command.add_option("--out", chart_.out, "the picture: .bmp, .png, .svg or .pdf")->required();
    command.add_option(
        "--type", chart_.type,
        "\"2D Bar\", \"3D Bar\", \"2D Line\", \"2D Area\", \"3D Line\" or \"3D Step\"");
  }

  void AddReport(const DrawingCommands& drawing) {
    CLI::App& command =
        AddCommand("report",
                   "Write a report for a coach: of a run or session with its orders, or over all "
                   "of them.",
                   [this, &drawing] { drawing.write_report(report_, context_); });
    AddScope(command, report_);
    command.add_option("--out", report_.out, "the report, a .pdf file; with --all also .html")
        ->required();
    AddDatePattern(command, report_.date_pattern);
    CLI::Option* all = command.add_flag(
        "--all", report_.all,
        "over all sessions: progress, setups, best and worst trades, what the words mean");
    CLI::App& filters = *command.add_option_group("With --all");
    AddSelection(filters, report_.selection);
    for (CLI::Option* const option : filters.get_options()) option->needs(all);
  }

  void AddReplay() {
    CLI::App& command =
        AddCommand("replay", "Replay a security without windows, controlled by commands.", [this] {
          if (replay_.session == 0 &&
              (replay_.interval.empty() || (replay_.start == 0 && !replay_.blind))) {
            throw CLI::RequiredError("DIR, SYMBOL, INTERVAL and START, --blind or --session");
          }
          Replay(replay_, context_);
        });
    command.footer(kReplayCommands);
    command.add_option("DIR", replay_.directory, "the market data directory");
    command.add_option("SYMBOL", replay_.symbol,
                       "the security; with --blind, any for a random one");
    command.add_option("INTERVAL", replay_.interval, ReplayIntervalsText());
    CLI::Option* start = AddDay(command, "START", replay_.start, "the start date, yyyymmdd");
    CLI::Option* blind = command.add_option(
        "--blind", replay_.blind,
        "a number: hides symbol, dates and prices of a run whose start is drawn by it");
    command
        .add_flag("--real-prices", replay_.real_prices,
                  "keeps the prices of a blind run; otherwise its first close is 100")
        ->needs(blind);
    command.add_option("--store", replay_.store,
                       "the working store: a new or empty folder, or that of an earlier replay");
    command
        .add_option("--set", replay_.texts,
                    "NAME=TEXT: the start text of a control, such as Form1.txtcomm=500")
        ->check(AssignmentProblem);
    CLI::Option* ledger =
        command.add_option("--ledger", replay_.ledger,
                           "the ledger file, created if missing (by default nothing is saved)");
    command
        .add_option("--session", replay_.session,
                    "resume a session of the ledger; DIR to START are those of the session")
        ->check(NumberFromOne())
        ->needs(ledger)
        ->excludes(start)
        ->excludes(blind);
    AddDatePattern(command, replay_.date_pattern);
  }

  void AddSessions() {
    CLI::App& command =
        AddCommand("sessions", "List the sessions of a ledger, the last played first.",
                   [this] { PrintSessions(sessions_, context_); });
    command.add_option("FILE", sessions_.file, "the ledger, such as Portfolio.mdb")->required();
    CLI::Option* json = command.add_flag("--json", sessions_.json, "as one JSON array of objects");
    command
        .add_option("--reveal", sessions_.reveal,
                    "end this blind session: say what it has played, and put it into its rows")
        ->check(NumberFromOne())
        ->excludes(json);
    AddDatePattern(command, sessions_.date_pattern);
  }

  void AddJournal() {
    CLI::App& command = AddCommand(
        "journal", "List the trades of a ledger with their plans and notes, session by session.",
        [this] { PrintJournal(journal_, context_); });
    command.add_option("FILE", journal_.file, "the ledger, such as Portfolio.mdb")->required();
    command.add_option("--session", journal_.session, "the number of a session (default: all)")
        ->check(NumberFromOne());
    CLI::Option* csv = command.add_flag("--csv", journal_.csv, "as CSV with a header line");
    CLI::Option* json =
        command.add_flag("--json", journal_.json, "as one JSON array, with earlier notes")
            ->excludes(csv);
    command
        .add_option("--html", journal_.html,
                    "write DIR/journal.html, one page with all pictures in it")
        ->type_name("DIR")
        ->excludes(csv)
        ->excludes(json);
    AddDatePattern(command, journal_.date_pattern);
  }

  void AddStats() {
    CLI::App& command = AddCommand(
        "stats", "Print the figures over all sessions of a ledger, with intervals, skill and risk.",
        [this] { PrintStats(stats_, context_); });
    command.add_option("FILE", stats_.file, "the ledger, such as Portfolio.mdb")->required();
    AddSelection(command, stats_);
    command
        .add_option_function<std::vector<int>>(
            "--session",
            [this](const std::vector<int>& numbers) {
              for (const int number : numbers) {
                stats_.filter.sessions.push_back(LedgerScope::Session(number));
              }
            },
            "the numbers of sessions (default: all, and the runs that belong to none)")
        ->check(NumberFromOne());
    CLI::Option* json =
        command.add_flag("--json", stats_.json, "as one JSON object, with the formulas");
    command.add_flag("--csv", stats_.csv, "each trade in full, as CSV, in place of the figures")
        ->excludes(json);
  }

  // The options that say which trades count.
  static void AddSelection(CLI::App& command, SelectionArguments& selection) {
    TradeFilter& filter = selection.filter;
    command.add_option("--symbol", selection.symbol, "only trades of this security");
    command.add_option("--interval", selection.interval, "D for daily bars, or the minutes")
        ->check(IntervalProblem);
    command.add_option("--setup", selection.setup, "only trades whose plan names this setup");
    AddChoice(command, "--side", filter.is_long, {{"long", true}, {"short", false}},
              "long or short");
    CLI::Option* blind = command.add_flag_callback(
        "--blind", [&filter] { filter.blind = true; }, "only blind sessions");
    command
        .add_flag_callback(
            "--not-blind", [&filter] { filter.blind = false; }, "only sessions that were not blind")
        ->excludes(blind);
    AddDay(command, "--from", filter.from_day, "entered on this day (yyyymmdd) or later");
    AddDay(command, "--to", filter.to_day, "entered on this day or earlier");
    AddPlayedDay(command, "--played-from", filter.played_from, "played on this day or later");
    AddPlayedDay(command, "--played-to", filter.played_to, "played on this day or earlier");
    command.add_option("--confidence", filter.confidence, "of the plan, 1 to 5; 0: none")
        ->check(CLI::Range(0, 5));
    command
        .add_option_function<int>(
            "--weekday", [&filter](int day) { filter.weekday = static_cast<std::int8_t>(day - 1); },
            "of the entry, 1 for Monday to 7")
        ->check(CLI::Range(1, 7));
    command.add_option("--hour", filter.hour, "of the entry, 0 to 23")->check(CLI::Range(0, 23));
    command.add_flag("--look-ahead", filter.look_ahead, "also trades that knew later bars");
    command.add_option("--rounds", selection.rounds, "of resampling (default: 10000)")
        ->check(CLI::Range(100, 1'000'000));
    command.add_option("--seed", selection.seed, "of the random numbers (default: 1)");
  }

  void AddCards() {
    CLI::App& command = AddCommand("cards", "List the cards of a ledger, those that are due first.",
                                   [this] { Cards(cards_, context_); });
    command.require_subcommand(0, 1);
    command.add_option("FILE", cards_.file, "the ledger, such as Portfolio.mdb")->required();
    command.add_flag("--due", cards_.due, "only those that are due");
    command.add_flag("--json", cards_.json, "as one JSON array of objects, with all answers");
    AddDatePattern(command, cards_.date_pattern);
    command
        .add_subcommand("make",
                        "Make cards of the largest losses that have none yet. The file comes "
                        "first: velumar-cli cards FILE make --losses 5")
        ->add_option("--losses", cards_.losses, "how many")
        ->required()
        ->check(NumberFromOne());
    command
        .add_subcommand("delete",
                        "Delete a card and its answers. The file comes first: velumar-cli cards "
                        "FILE delete 3")
        ->add_option("CARD", cards_.card, "the number of the card")
        ->required()
        ->check(NumberFromOne());
  }

  void AddDrills() {
    CLI::App& command = AddCommand("drills", "List the drills of a ledger with their results.",
                                   [this] { PrintDrills(drills_, context_); });
    command.add_option("FILE", drills_.file, "the ledger, such as Portfolio.mdb")->required();
    command.add_flag("--json", drills_.json, "as one JSON array of objects");
  }

  static void AddPlayedDay(CLI::App& command, const char* flag, std::string& day,
                           const char* help) {
    command
        .add_option_function<std::string>(
            flag, [&day](const std::string& text) { day = IsoDate(*DateFromDigits(text)); }, help)
        ->check(DayProblem)
        ->type_name("DATE");
  }

  CliContext& context_;
  CLI::App app_{"Velumar without a window: market data, ledgers and replays on the command line.",
                "velumar-cli"};
  int code_ = 0;  // of the command that has run
  ImportArguments import_;
  std::string update_;
  ListArguments list_;
  DumpArguments dump_;
  FiguresArguments figures_;
  LedgerArguments ledger_;
  ChartArguments chart_;
  ReportArguments report_;
  ReplayArguments replay_;
  SessionsArguments sessions_;
  JournalArguments journal_;
  StatsArguments stats_;
  CardsArguments cards_;
  DrillsArguments drills_;
};

}  // namespace

int RunCli(const std::vector<std::string>& arguments, CliContext& context) {
  CommandLine line(context);
  try {
    line.App().parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    context.out.flush();
    if (!context.out) throw std::runtime_error("could not write the output");
  } catch (const CLI::ParseError& error) {
    return line.App().exit(error, context.out, context.err) == 0 ? 0 : kBadArguments;
  } catch (const std::exception& error) {
    context.err << "velumar-cli: " << error.what() << '\n';
    return kFailure;
  }
  return line.Code();
}

}  // namespace velumar
