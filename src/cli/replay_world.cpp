#include "cli/replay_world.h"

#include <stdexcept>
#include <utility>

#include "base/dates.h"
#include "base/text.h"
#include "cli/commands.h"
#include "marketdata/index_cache.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_error.h"
#include "marketdata/metalib_reader.h"
#include "platform/system.h"
#include "session/blind_draw.h"
#include "session/run_inputs.h"
#include "session/store_folder.h"

namespace velumar {

namespace {

using Json = nlohmann::ordered_json;

void AddReplayFields(Json& state, const SimSession& s) {
  state["DataDir"] = s.DataDir;
  state["SimDir"] = s.SimDir;
  state["Symbol"] = s.Symbol;
  state["SymbolInterval"] = s.SymbolInterval;
  state["PeriodBySymbol"] = s.PeriodBySymbol;
  state["HostTitle"] = s.HostTitle;
  state["ChartWarning"] = s.ChartWarning;
  state["BarIndex"] = s.BarIndex;
  state["LastBarIndex"] = s.LastBarIndex;
  state["NewestShownBar"] = s.NewestShownBar;
  state["StartDate"] = s.StartDate;
  state["StartTime"] = s.StartTime;
  state["CurrentDate"] = s.CurrentDate;
  state["CurrentTime"] = s.CurrentTime;
  state["StopRequested"] = s.StopRequested;
  state["RefreshDelay"] = s.RefreshDelay;
  state["SetupTop"] = s.SetupTop;
  state["SetupLeft"] = s.SetupLeft;
  state["NavTop"] = s.NavTop;
  state["NavLeft"] = s.NavLeft;
}

void AddBookFields(Json& state, const SimSession& s) {
  state["MarketPrice"] = s.MarketPrice;
  state["InitMargin"] = s.InitMargin;
  state["ProfitPerContract"] = s.ProfitPerContract;
  state["UsedMargin"] = s.UsedMargin;
  state["Commission"] = s.Commission;
  state["VatAmount"] = s.VatAmount;
  state["Balance"] = s.Balance;
  state["Portfolio"] = s.Portfolio;
  state["BalancePoint"] = s.BalancePoint;
  state["LAccum"] = s.LAccum;
  state["SAccum"] = s.SAccum;
  state["LAmount"] = s.LAmount;
  state["SAmount"] = s.SAmount;
  state["LAvgPrice"] = s.LAvgPrice;
  state["SAvgPrice"] = s.SAvgPrice;
  state["LUnrealisedMoney"] = s.LUnrealisedMoney;
  state["SUnrealisedMoney"] = s.SUnrealisedMoney;
  state["LUnrealised"] = s.LUnrealised;
  state["SUnrealised"] = s.SUnrealised;
  state["LRealised"] = s.LRealised;
  state["SRealised"] = s.SRealised;
  state["LRealisedMoney"] = s.LRealisedMoney;
  state["SRealisedMoney"] = s.SRealisedMoney;
}

void AddCaption(Json& state, const Control& label) {
  const std::string name = label.Owner().Name() + "." + label.Name();
  const bool loaded = label.Owner().Loaded();
  state[name] = loaded ? label.Text() : "";
  state[name + ".colour"] = label.ForeColour();
}

void AddCaptions(Json& state, const Desktop::Windows& windows) {
  for (const Control* label : {&windows.form2.Label6, &windows.form3.Label6, &windows.form3.lblinfo,
                               &windows.frmBigScore.lblScore, &windows.frmBigPrice.lblScore,
                               &windows.frmBigDateTime.lblScore}) {
    AddCaption(state, *label);
  }
}

Json StoreState(ReplayWorld& world) {
  Json store = {{"bars", 0}, {"first", nullptr}, {"last", nullptr}};
  const RunSeries& run = world.session.Run;
  const auto series = ReplayableInterval(run.interval);
  if (!series) return store;
  try {
    MetaLibReader reader(world.index_cache);
    reader.OpenDirectory(world.session.SimDir);
    reader.SelectSeries(run.symbol, series->daily, series->minutes);
    reader.ReadSeries();
    const auto& dates = reader.GetDates();
    const auto& times = reader.GetTimes();
    store["bars"] = dates.size();
    if (!dates.empty()) {
      store["first"] = {dates.front(), times.front()};
      store["last"] = {dates.back(), times.back()};
    }
  } catch (const MetaLibError&) {
    // A store that can't be read shows no bars.
  }
  return store;
}

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
  platform.random_seed = arguments.blind;
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
  outside.clock.moment = SystemClock().UtcMoment();
  outside.locale.pattern = DatePatternOrDefault(arguments.date_pattern);
  outside.settings.Save("LastPath", arguments.directory);
  if (arguments.real_prices) outside.settings.Save(kBlindPricesSetting, kRealPrices);
  for (const std::string& assignment : arguments.texts) SetStartText(*this, assignment);
  program.Start();
  for (const std::string& assignment : arguments.texts) SetTextAgain(*this, assignment);
  if (arguments.blind || arguments.symbol == kAnySecurity) {
    ChooseBlind(arguments);
  } else {
    ChooseSeries(arguments);
    desktop.form1().DTPicker1.UserPick(arguments.start);
  }
}

std::string AssignmentProblem(const std::string& assignment) {
  const std::size_t equals = assignment.find('=');
  if (equals == std::string::npos) {
    return "--set needs NAME=TEXT, such as Form1.txtcomm=500, not " + assignment;
  }
  Desktop tables;
  const std::string name = assignment.substr(0, equals);
  return FindControl(tables, name) != nullptr ? "" : "unknown control " + name;
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

void ReplayWorld::ChooseBlind(const ReplayArguments& arguments) {
  Form1& setup = desktop.form1();
  setup.chkBlind.UserToggle();
  if (arguments.symbol == kAnySecurity) {
    setup.cbxPeriod.UserType(arguments.interval);
  } else {
    ChooseSeries(arguments);
  }
}

nlohmann::ordered_json StateOf(ReplayWorld& world) {
  Json state;
  AddReplayFields(state, world.session);
  AddBookFields(state, world.session);
  AddCaptions(state, world.Windows());
  state["feeding"] = world.program.Feeding();
  state["store"] = StoreState(world);
  return state;
}

}  // namespace velumar
