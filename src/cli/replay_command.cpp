#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "base/dates.h"
#include "cli/commands.h"
#include "cli/common_options.h"
#include "cli/replay_driver.h"
#include "cli/replay_world.h"
#include "marketdata/interval.h"

namespace velumar {

namespace {

constexpr const char* kCommands =
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

std::string RequireDate(const std::string& text) {
  const bool digits = text.size() == 8 && text.find_first_not_of("0123456789") == std::string::npos;
  return digits && IsRealDate(std::stoi(text)) ? "" : "START must be a date yyyymmdd, not " + text;
}

std::string RequireControl(const std::string& assignment) {
  const std::size_t equals = assignment.find('=');
  if (equals == std::string::npos) {
    return "--set needs NAME=TEXT, such as Form1.txtcomm=500, not " + assignment;
  }
  Desktop tables;
  const std::string name = assignment.substr(0, equals);
  return FindControl(tables, name) != nullptr ? "" : "unknown control " + name;
}

void RunReplay(const ReplayArguments& arguments, CliContext& context) {
  ReplayWorld world(arguments, context.cache);
  ReplayDriver(world, context.in, context.out).Run();
}

}  // namespace

void AddReplayCommand(CLI::App& app, CliContext& context) {
  const auto arguments = std::make_shared<ReplayArguments>();
  CLI::App* command =
      app.add_subcommand("replay", "Replay a security without windows, controlled by commands.");
  command->footer(kCommands);
  command->add_option("DIR", arguments->directory, "the market data directory")->required();
  command->add_option("SYMBOL", arguments->symbol, "the security")->required();
  command->add_option("INTERVAL", arguments->interval, ReplayIntervalsText())->required();
  command->add_option("START", arguments->start, "the start date, yyyymmdd")
      ->required()
      ->check(RequireDate);
  command->add_option("--store", arguments->store,
                      "the working store: a new or empty folder, or one of an earlier replay");
  command
      ->add_option("--set", arguments->texts,
                   "NAME=TEXT: the start text of a control, such as Form1.txtcomm=500")
      ->check(RequireControl);
  command->add_option("--ledger", arguments->ledger,
                      "the ledger file, created if missing (by default nothing is saved)");
  AddDatePattern(*command, arguments->date_pattern);
  command->callback([arguments, &context] { RunReplay(*arguments, context); });
}

}  // namespace velumar
