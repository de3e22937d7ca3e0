#include "cli/replay_state.h"

#include <string>

#include "marketdata/interval.h"
#include "marketdata/metalib_error.h"
#include "marketdata/metalib_reader.h"

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

}  // namespace

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
