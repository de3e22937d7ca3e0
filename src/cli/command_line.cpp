#include <CLI/CLI.hpp>
#include <exception>
#include <functional>
#include <ostream>
#include <stdexcept>

#include "base/dates.h"
#include "cli/commands.h"
#include "cli/replay_world.h"
#include "csv/csv_text.h"
#include "marketdata/interval.h"

// The only file that includes CLI11, whose headers take seconds to compile.

namespace velumar {

namespace {

constexpr int kFailure = 1;
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
    "  play                  continue from the current bar\n"
    "  return, start         go back to the setup window; click \"Start\" there\n"
    "  figures               show the fourteen figures of the current run\n"
    "  set NAME TEXT         type a text into a control, such as Form2.txtRefresh";

std::string DateProblem(const std::string& text) {
  return DateFromDigits(text) ? "" : "START must be a date yyyymmdd, not " + text;
}

std::string IntervalProblem(const std::string& text) {
  return IntervalFromText(text) ? "" : "an interval is D or a number of minutes, not " + text;
}

std::string SymbolProblem(const std::string& text) {
  return text.find_first_not_of(' ') == std::string::npos ? "the symbol is empty" : "";
}

void AddDatePattern(CLI::App& command, std::string& pattern) {
  command.add_option("--date-pattern", pattern,
                     "the date format, such as dd/MM/yyyy (default: that of the user's locale)");
}

// Adds FILE and "--run".
CLI::Option* AddRun(CLI::App& command, RunArguments& arguments) {
  command.add_option("FILE", arguments.file, "the ledger, such as Portfolio.mdb")->required();
  return command.add_option("--run", arguments.run, "the number of an archived run")
      ->check(CLI::PositiveNumber);
}

CLI::Option* AddText(CLI::App& command, const std::string& flag, std::optional<std::string>& text,
                     const std::string& help) {
  return command.add_option_function<std::string>(
      flag, [&text](const std::string& given) { text = given; }, help);
}

// The program's command line, and the arguments of whichever command was given.
class CommandLine {
 public:
  explicit CommandLine(CliContext& context) : context_(context) {
    app_.set_version_flag("--version", "velumar-cli " VELUMAR_VERSION);
    app_.require_subcommand(1);
    // "/data" is a folder on every system.
    app_.allow_windows_style_options(false);
    AddImport();
    AddList();
    AddDump();
    AddFigures();
    AddLedger();
    if (const DrawingCommands* drawing = FindDrawingCommands()) {
      AddChart(*drawing);
      AddReport(*drawing);
    }
    AddReplay();
  }

  CLI::App& App() { return app_; }

 private:
  // The command runs as soon as its arguments are parsed.
  CLI::App& AddCommand(const char* name, const char* help, const std::function<void()>& run) {
    return *app_.add_subcommand(name, help)->callback(run);
  }

  void AddImport() {
    CLI::App& command =
        AddCommand("import", "Import a CSV file into a market data directory as one security.",
                   [this] { Import(import_, context_); });
    command.footer(
        "A security with the same symbol and interval is replaced. The first line names the\n"
        "columns: Date, Open, High, Low, Close and optionally Time, Volume and OpenInterest.\n"
        "If a line cannot be read, nothing is written.");
    command.add_option("CSV", import_.file, "the file, separated by commas, semicolons or tabs")
        ->required();
    command.add_option("DIR", import_.directory, "the market data directory, created if missing")
        ->required();
    AddText(command, "--symbol", import_.options.symbol,
            "the symbol, up to 14 characters (default: from the file name, as in AAPL_D.csv)")
        ->check(SymbolProblem);
    AddText(command, "--name", import_.options.name,
            "the name of the security (default: the stored name, or the symbol)");
    command
        .add_option_function<std::string>(
            "--interval",
            [this](const std::string& text) { import_.options.interval = IntervalFromText(text); },
            "D for daily bars, or the minutes: 5, 10, 15, 30, 60 (default: from the file name, or "
            "from the gaps between bars)")
        ->check(CLI::IsMember({"D", "5", "10", "15", "30", "60"}, CLI::ignore_case));
    command.add_option_function<std::string>(
        "--date-format",
        [this](const std::string& pattern) {
          try {
            import_.options.date_format = CsvDateFormat(pattern);
          } catch (const CsvError& error) {
            throw CLI::ValidationError("--date-format", error.what());
          }
        },
        "the format of dates other than yyyymmdd and yyyy-mm-dd: %d.%m.%Y, or \"%m/%d/%y %H:%M\" "
        "if the column includes the time");
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
    CLI::App& command = AddCommand("figures", "Print the results of the newest or an archived run.",
                                   [this] { PrintFigures(figures_, context_); });
    AddRun(command, figures_);
    CLI::Option* json = command.add_flag("--json", figures_.json, "as one JSON object of texts");
    command.add_flag("--explain", figures_.explain, "the statistics, each with its formula")
        ->excludes(json);
    AddDatePattern(command, figures_.date_pattern);
  }

  void AddLedger() {
    CLI::App& command = AddCommand("ledger", "Print the rows of a ledger, oldest first.",
                                   [this] { PrintLedger(ledger_, context_); });
    CLI::Option* run = AddRun(command, ledger_);
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
        ->excludes(run);
    AddDatePattern(command, ledger_.date_pattern);
  }

  void AddChart(const DrawingCommands& drawing) {
    CLI::App& command = AddCommand("chart", "Draw the portfolio chart of a ledger to a file.",
                                   [this, &drawing] { drawing.draw_chart(chart_); });
    AddRun(command, chart_);
    command.add_option("--out", chart_.out, "the picture: .bmp, .png, .svg or .pdf")->required();
    command.add_option(
        "--type", chart_.type,
        "\"2D Bar\", \"3D Bar\", \"2D Line\", \"2D Area\", \"3D Line\" or \"3D Step\"");
  }

  void AddReport(const DrawingCommands& drawing) {
    CLI::App& command =
        AddCommand("report", "Write the figures, statistics, chart and orders of a run as a PDF.",
                   [this, &drawing] { drawing.write_report(report_); });
    AddRun(command, report_);
    command.add_option("--out", report_.out, "the report, a .pdf file")->required();
    AddDatePattern(command, report_.date_pattern);
  }

  void AddReplay() {
    CLI::App& command =
        AddCommand("replay", "Replay a security without windows, controlled by commands.",
                   [this] { Replay(replay_, context_); });
    command.footer(kReplayCommands);
    command.add_option("DIR", replay_.directory, "the market data directory")->required();
    command.add_option("SYMBOL", replay_.symbol, "the security")->required();
    command.add_option("INTERVAL", replay_.interval, ReplayIntervalsText())->required();
    command.add_option("START", replay_.start, "the start date, yyyymmdd")
        ->required()
        ->check(DateProblem);
    command.add_option("--store", replay_.store,
                       "the working store: a new or empty folder, or that of an earlier replay");
    command
        .add_option("--set", replay_.texts,
                    "NAME=TEXT: the start text of a control, such as Form1.txtcomm=500")
        ->check(AssignmentProblem);
    command.add_option("--ledger", replay_.ledger,
                       "the ledger file, created if missing (by default nothing is saved)");
    AddDatePattern(command, replay_.date_pattern);
  }

  CliContext& context_;
  CLI::App app_{"Velumar without a window: market data, ledgers and replays on the command line.",
                "velumar-cli"};
  ImportArguments import_;
  ListArguments list_;
  DumpArguments dump_;
  FiguresArguments figures_;
  LedgerArguments ledger_;
  ChartArguments chart_;
  ReportArguments report_;
  ReplayArguments replay_;
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
  return 0;
}

}  // namespace velumar
