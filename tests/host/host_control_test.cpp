
#include <algorithm>
#include <filesystem>

#include "host/host_fixture.h"

namespace velumar {
namespace {

// The chart program's side of a run of 141 bars that has just started.
struct HostControlTest : HostFixture {
  HostControlTest() {
    session.RefreshDelay = 10000;
    session.BarDate.assign(200, 20070125);
    session.BarTime.assign(200, 0);
    for (auto* prices : {&session.BarOpen, &session.BarHigh, &session.BarLow, &session.BarClose}) {
      prices->assign(200, 100.5F);
    }
    session.BarIndex = session.FirstShownBar = 59;
    session.LastBarIndex = 199;
  }

  // The keys of a refresh of so many charts.
  std::vector<std::string> Refresh(int charts) {
    run.charts = charts;
    chart.sent.clear();
    host.RefreshCharts();
    return chart.sent;
  }
  long Now() { return static_cast<long>(outside.events.Now().count()); }

  HostControl host{session, run, run, platform, registry, trader};
};

TEST_F(HostControlTest, TheChartIsOpenedByTheseKeysInThisOrder) {
  host.CloseCharts();
  host.OpenChart();
  EXPECT_THAT(chart.sent, ElementsAre("%Fe", "%FO", "/data/Simulate\\", "{SPACE}", "{SPACE}",
                                      "{SPACE}", "{ENTER}", "ABC", "{SPACE}", "{SPACE}", "{SPACE}",
                                      "{END}", "{TAB}", "S", "{ENTER}"));
  EXPECT_TRUE(outside.programs.started.empty());
  EXPECT_EQ(chart.focused, RecordingChart::kOwnWindow) << "the trader goes on where he was";
  EXPECT_EQ(run.line, "Ready to rock with [ABC] ....");
}

TEST_F(HostControlTest, EachOpenChartIsRefreshedAndTheFirstIsActiveAgain) {
  const std::tuple<int, std::vector<std::string>, int> cases[] = {
      {1, {"%VR"}, 500},
      {3, {"%VR", "^{TAB}", "%VR", "^{TAB}", "%VR", "^{TAB}"}, 1530},
      {-3, {"%VR"}, 500}};
  for (const auto& [charts, keys, waited] : cases) {
    const long before = Now();
    outside.events.Schedule(std::chrono::milliseconds(1),
                            [&] { EXPECT_TRUE(run.chart_count_locked); });
    EXPECT_EQ(Refresh(charts), keys) << charts;
    EXPECT_EQ(Now() - before, waited) << charts;
    EXPECT_FALSE(run.chart_count_locked);
  }
  EXPECT_EQ(run.status.prices, "O: 100.50 H: 100.50 L: 100.50 C: 100.50");
}

// The remaining charts are only passed, until the one in front is in front again.
TEST_F(HostControlTest, APauseEndsARefreshBetweenTwoCharts) {
  outside.events.Schedule(std::chrono::milliseconds(700), [this] { session.StopRequested = -1; });
  EXPECT_THAT(Refresh(4), ElementsAre("%VR", "^{TAB}", "%VR", "^{TAB}", "^{TAB}", "^{TAB}"));
  EXPECT_EQ(Refresh(4).size(), 8U) << "a step after the pause refreshes all";
}

TEST_F(HostControlTest, AProgramOrDialogThatIsNotThereIsStartedOrWaitedFor) {
  chart.running = false;
  host.CloseCharts();
  EXPECT_THAT(outside.programs.started,
              ElementsAre("C:\\Program Files\\Equis\\MetaStock\\MSWIN.EXE /l /e"));
  chart.running = true;
  chart.sent.clear();
  chart.dialog_comes = false;
  host.OpenChart();
  EXPECT_GE(Now(), 15000);
  EXPECT_THAT(chart.sent, ElementsAre("%FO")) << "nothing is typed into no dialog";
  const std::string store = (std::filesystem::path("/data") / "Simulate").make_preferred().string();
  EXPECT_THAT(outside.boxes.shown, ElementsAre(HasSubstr(store))) << "separators of one kind";
}

TEST_F(HostControlTest, TheStatusLineSaysWhatIsWrongWithTheChart) {
  const std::tuple<bool, KeyOutcome, std::string, const char*> cases[] = {
      {true, KeyOutcome::kNotSent, "Chart not refreshed: another window is in front! ",
       "Another window is in front of the chart"},
      {false, KeyOutcome::kAccepted, "No chart program, start it! ", "Start the chart program"},
      {true, KeyOutcome::kNotAnswered, "Chart program busy, wait for it! ", "The chart program is"},
      {true, KeyOutcome::kAccepted, "", ""}};
  for (const auto& [running, outcome, warning, advice] : cases) {
    chart.running = running;
    chart.outcome = outcome;
    Refresh(1);
    EXPECT_EQ(run.line, warning + "[ABC]  Date: 1/25/2007 00:00:00  Close: 100.5");
    EXPECT_THAT(run.advice, StartsWith(advice));
    session.BarIndex = -1;
    run.line.clear();
    Refresh(1);
    EXPECT_EQ(run.line, warning) << "before the first bar only what is wrong";
    session.BarIndex = 59;
  }
  // The keys after one that was not answered may be accepted.
  chart.outcome = KeyOutcome::kNotAnswered;
  outside.events.Schedule(std::chrono::milliseconds(505),
                          [this] { chart.outcome = KeyOutcome::kAccepted; });
  Refresh(2);
  EXPECT_THAT(run.line, StartsWith("Chart program busy"));
}

TEST_F(HostControlTest, ProgressCountsBarsAndEstimatesTheTimeLeft) {
  const std::tuple<int, int, int, const char*> cases[] = {
      {59, 10000, 1, "0 of 140 bars, about 25 min left"},
      {20, 10000, 1, "0 of 140 bars, about 25 min left"},    // stepped back before the start
      {194, 11490, 1, "135 of 140 bars, about 1 min left"},  // 60.0 s
      {194, 11290, 1, "135 of 140 bars, about 59 s left"},
      {59, 25200, 1, "0 of 140 bars, about 1 h 0 min left"},
      {59, 32000, 20, "0 of 140 bars, about 1 h 38 min left"},
      {199, 10000, 1, "140 of 140 bars"}};
  for (const auto& [bar, delay, charts, text] : cases) {
    session.BarIndex = static_cast<std::int16_t>(bar);
    session.RefreshDelay = static_cast<std::int16_t>(delay);
    Refresh(charts);
    EXPECT_EQ(run.progress, text);
    EXPECT_FLOAT_EQ(run.done, static_cast<float>(std::max(bar - 59, 0)) / 140);
  }
}

}  // namespace
}  // namespace velumar
