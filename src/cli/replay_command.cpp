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
    "Commands come on stdin, one a line, and each is answered by one line of JSON on stdout, the\n"
    "first being \"begin\":\n"
    "  next, prev, ff, rew   the four steps by hand\n"
    "  feed [N]              N passes of the feed, each with its refresh and its pause\n"
    "  stop                  the click on \"Pause\" alone; the feed ends at its next look\n"
    "  pause                 the click, and the feed to its end\n"
    "  long Q, short Q, offset-long Q, offset-short Q\n"
    "                        an order of the quantity Q, as typed into the panel\n"
    "  play                  a run that goes on from the current bar\n"
    "  return, start         back to the setup window; \"Start\" there\n"
    "  figures               the fourteen figures of the ledger's rows\n"
    "  set NAME TEXT         a text typed into a control, such as Form2.txtRefresh";

std::string RequireDate(const std::string& text) {
  const bool digits = text.size() == 8 && text.find_first_not_of("0123456789") == std::string::npos;
  return digits && IsRealDate(std::stoi(text)) ? "" : "START is a date yyyymmdd, not " + text;
}

std::string RequireControl(const std::string& assignment) {
  const std::size_t equals = assignment.find('=');
  if (equals == std::string::npos) {
    return "--set takes NAME=TEXT, such as Form1.txtcomm=500, not " + assignment;
  }
  Desktop tables;
  const std::string name = assignment.substr(0, equals);
  return FindControl(tables, name) != nullptr ? "" : "there is no control " + name;
}

void RunReplay(const ReplayArguments& arguments, CliContext& context) {
  ReplayWorld world(arguments, context.cache);
  ReplayDriver(world, context.in, context.out).Run();
}

}  // namespace

void AddReplayCommand(CLI::App& app, CliContext& context) {
  const auto arguments = std::make_shared<ReplayArguments>();
  CLI::App* command =
      app.add_subcommand("replay", "Replay one security without a window, driven by commands.");
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
                   "NAME=TEXT: what a control starts with, such as Form1.txtcomm=500")
      ->check(RequireControl);
  command->add_option("--ledger", arguments->ledger,
                      "the ledger's file, made when it is missing (by default nothing is kept)");
  AddDatePattern(*command, arguments->date_pattern);
  command->callback([arguments, &context] { RunReplay(*arguments, context); });
}

}  // namespace velumar
