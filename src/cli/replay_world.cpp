#include "cli/replay_world.h"

#include <stdexcept>
#include <utility>

#include "base/dates.h"
#include "base/text.h"
#include "cli/commands.h"
#include "marketdata/index_cache.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_reader.h"
#include "session/store_folder.h"

namespace velumar {

namespace {

// Checked first, since the program would ask for another directory.
void RequireData(const std::string& directory, IndexCache& cache) {
  MetaLibReader reader(cache);
  reader.OpenDirectory(directory);
}

// Checked first, since the run would only show a box.
void RequireStore(const ReplayArguments& arguments) {
  const std::string store =
      arguments.store.empty() ? arguments.directory + "\\Simulate" : arguments.store;
  const StoreFolder claimed(store, arguments.directory);
}

[[noreturn]] void RefuseSeries(const ReplayArguments& wanted, const std::string& why) {
  throw std::runtime_error("no series " + wanted.symbol + " at interval " + wanted.interval +
                           " in " + wanted.directory + ": " + why);
}

Platform PlatformFor(const ReplayArguments& arguments, VirtualPlatform& outside) {
  Platform platform = outside.References();
  platform.store_dir = arguments.store;
  if (!arguments.ledger.empty()) platform.ledger_file = arguments.ledger;
  return platform;
}

std::pair<std::string, std::string> Parts(const std::string& assignment) {
  const std::size_t equals = assignment.find('=');
  return {assignment.substr(0, equals), assignment.substr(equals + 1)};
}

// For each load of its window, including the first.
void SetStartText(ReplayWorld& world, const std::string& assignment) {
  const auto [name, text] = Parts(assignment);
  world.NamedControl(name).SetStartText(text);
}

// The start has filled boxes from the settings and the market's defaults. Directory, symbol and
// interval are arguments of their own.
void SetTextAgain(ReplayWorld& world, const std::string& assignment) {
  const auto [name, text] = Parts(assignment);
  Control& control = world.NamedControl(name);
  const Form1& setup = world.Windows().form1;
  const bool argument =
      &control == &setup.Text3 || &control == &setup.Combo1 || &control == &setup.cbxPeriod;
  const bool typable =
      dynamic_cast<TextBox*>(&control) != nullptr || dynamic_cast<ComboBox*>(&control) != nullptr;
  if (typable && !argument && control.Owner().Loaded()) control.SetText(text);
}

}  // namespace

ReplayWorld::ReplayWorld(const ReplayArguments& arguments, IndexCache& cache)
    : platform(PlatformFor(arguments, outside)),
      ledger([this](std::string_view date) { return IsoDateText(date, outside.locale.pattern); }),
      program(session, desktop, platform, cache, ledger),
      index_cache(cache) {
  RequireData(arguments.directory, cache);
  RequireStore(arguments);
  outside.locale.pattern = DatePatternOrDefault(arguments.date_pattern);
  outside.settings.Save("LastPath", arguments.directory);
  for (const std::string& assignment : arguments.texts) SetStartText(*this, assignment);
  program.Start();
  for (const std::string& assignment : arguments.texts) SetTextAgain(*this, assignment);
  ChooseSeries(arguments);
  desktop.form1().DTPicker1.UserPick(arguments.start);
}

Control* FindControl(Desktop& desktop, const std::string& name) {
  const std::size_t dot = name.find('.');
  if (dot == std::string::npos) return nullptr;
  Form* form = desktop.Find(name.substr(0, dot));
  return form == nullptr ? nullptr : form->Find(name.substr(dot + 1));
}

Control& ReplayWorld::NamedControl(const std::string& name) {
  Control* control = FindControl(desktop, name);
  if (control == nullptr) throw std::invalid_argument("unknown control \"" + name + "\"");
  return *control;
}

void ReplayWorld::ChooseSeries(const ReplayArguments& arguments) {
  Form1& setup = desktop.form1();
  const std::string symbol = NormalisedSymbol(arguments.symbol);
  int found = -1;
  bool exact = false;
  for (int i = 0; i < static_cast<int>(setup.Combo1.Rows().size()) && !exact; ++i) {
    const ComboBox::Row& row = setup.Combo1.Rows()[static_cast<std::size_t>(i)];
    if (row.text != symbol && row.text != arguments.symbol) continue;
    found = i;
    exact = IntervalToMatch(session.PeriodBySymbol.at(static_cast<std::size_t>(row.data))) ==
            IntervalToMatch(arguments.interval);
  }
  if (found < 0) RefuseSeries(arguments, "no such symbol");
  setup.Combo1.UserChoose(found);
  if (exact) return;
  // A series of unknown interval is found under any.
  const auto series = ReplayableInterval(arguments.interval);
  if (!series) RefuseSeries(arguments, "no such interval");
  MetaLibReader reader(index_cache);
  reader.OpenDirectory(arguments.directory);
  reader.SelectSeries(session.Symbol, series->daily, series->minutes);
  setup.cbxPeriod.UserType(arguments.interval);
}

}  // namespace velumar
