
#include <set>

#include "host/host_fixture.h"

namespace velumar {
namespace {

using Command = ChartRequest::Command;

// Our chart program at the other end of the link, which can be slow, end, and start again.
struct LinkedChart : ChartLink {
  explicit LinkedChart(VirtualPlatform& outside) : outside_(outside) {
    outside.chart.running = false;
    outside.programs.on_start = [this] { Begin(); };
  }

  LinkOutcome Ask(std::uint32_t asked_process, const ChartRequest& request,
                  std::chrono::milliseconds patience) override {
    if (ends_before == static_cast<int>(asked.size())) End();
    const std::optional<ChartRequest> read = ReadChartRequest(ChartRequestText(request));
    EXPECT_TRUE(read) << "what is sent can be read";
    asked.push_back(read->command);
    if (process == 0 || asked_process != process || deaf-- > 0) return LinkOutcome::kNotThere;
    if (delay > patience) {
      waited += patience;
      return LinkOutcome::kNoAnswer;
    }
    if (!read->symbol.empty()) positions = read->positions;
    const auto is = [&](Command command) { return read->command == command; };
    if (is(Command::kOpen) && !symbols.contains(read->symbol)) return LinkOutcome::kRefused;
    if (is(Command::kRefresh) && open.empty()) return LinkOutcome::kRefused;
    if (is(Command::kOpen)) {
      open = read->folder + " " + read->symbol + " " + std::to_string(read->interval.value_or(0)) +
             (read->alone ? " alone" : "");
    }
    if (is(Command::kCloseAll)) open.clear();
    if (is(Command::kRefresh)) ++refreshes;
    if (is(Command::kTheme)) dark = read->dark;
    if (is(Command::kQuit)) End();
    return LinkOutcome::kDone;
  }
  void Begin() {
    outside_.chart.running = true;
    outside_.chart.process = process = next_process_++;
  }
  void End() {
    outside_.chart.running = false;
    process = 0;
    open.clear();
  }

  std::set<std::string> symbols = {"ABC"};
  std::uint32_t process = 0;
  std::chrono::milliseconds delay{1};
  int deaf = 0;                         // the number of requests that come too early
  std::chrono::milliseconds waited{0};  // in vain
  int ends_before = -1;                 // the number of the request that finds nobody
  std::vector<Command> asked;
  std::string open;
  ChartPositions positions;
  std::optional<bool> dark;
  int refreshes = 0;

 private:
  VirtualPlatform& outside_;
  std::uint32_t next_process_ = 100;
};

struct LinkDriverTest : HostFixture {
  LinkDriverTest() {
    session.Run.interval = "5";
    session.BarIndex = -1;
    platform.chart_link = &link;
    platform.chart_folder = registry.ProgramFolder();
  }

  void StartRun() {
    host.CloseCharts();
    host.OpenChart();
    host.MaximizeHost();
    host.BringHostToFront();
    host.RefreshCharts();
  }

  LinkedChart link{outside};
  HostControl host{session, run, run, platform, registry, trader};
};

TEST_F(LinkDriverTest, ARunTypesNothingAndMovesNoFocus) {
  for (int program = 0; program < 2; ++program) {
    const auto before = outside.events.Now();
    StartRun();
    EXPECT_LE((outside.events.Now() - before).count(), program == 0 ? 100 : 0);
  }
  EXPECT_EQ(outside.programs.started.size(), 1U);
  EXPECT_EQ(link.open, "/data/Simulate\\ ABC 5");
  session.Run.blind = true;
  host.OpenChart();
  EXPECT_EQ(link.open, "/data/Simulate\\ ABC 5 alone") << "nothing is compared in a blind run";
  EXPECT_EQ(link.refreshes, 2);
  EXPECT_THAT(chart.sent, IsEmpty());
  EXPECT_THAT(chart.front, IsEmpty());
  EXPECT_THAT(chart.maximized, IsEmpty());
  EXPECT_EQ(run.advice, "");
}

TEST_F(LinkDriverTest, AProgramThatIsNotOursGetsKeys) {
  StartRun();
  chart.process = 7;  // another program owns the chart window
  host.RefreshCharts();
  EXPECT_THAT(chart.sent, ElementsAre("%VR"));
  chart.process = link.process;
  host.RefreshCharts();
  EXPECT_EQ(chart.sent.size(), 1U);
  link.process = 0;  // the link is gone, but the window is there
  host.RefreshCharts();
  EXPECT_EQ(chart.sent.size(), 2U);
  chart.running = false;
  platform.chart_folder = "/elsewhere";
  HostControl other(session, run, run, platform, registry, trader);
  const auto before = outside.events.Now();
  other.CloseCharts();
  EXPECT_GE((outside.events.Now() - before).count(), 14000) << "the waits for any chart program";
}

// Whichever message is the last one, a later refresh starts the program again and opens the chart.
TEST_F(LinkDriverTest, AProgramThatEndsBetweenTwoMessagesIsStartedAgain) {
  StartRun();
  host.RefreshCharts();
  const int messages = static_cast<int>(link.asked.size());
  for (int end = 0; end < 5; ++end) {
    link.End();
    host.RefreshCharts();
    EXPECT_EQ(run.advice, "") << "only restarts in a row are limited";
  }
  for (int last = 1; last < messages; ++last) {
    VirtualPlatform fresh;
    SimSession same = session;
    LinkedChart other(fresh);
    Platform all = fresh.References();
    all.chart_link = &other;
    all.chart_folder = platform.chart_folder;
    TraderFocus focus(fresh.chart);
    HostControl control(same, run, run, all, registry, focus);
    other.ends_before = last;
    control.CloseCharts();
    control.OpenChart();
    for (int refresh = 0; refresh < 5; ++refresh) control.RefreshCharts();
    EXPECT_EQ(fresh.programs.started.size(), 2U) << last;
    EXPECT_EQ(other.open, "/data/Simulate\\ ABC 5") << last;
    EXPECT_GE(other.refreshes, 2) << last;
    EXPECT_EQ(run.advice, "") << last;
  }
}

// Clicks run while the program is started once more.
TEST_F(LinkDriverTest, AStepDuringTheStartStartsNoSecondProgram) {
  StartRun();
  link.End();
  outside.events.Schedule(std::chrono::milliseconds(5), [&] { host.RefreshCharts(); });
  host.RefreshCharts();
  EXPECT_EQ(outside.programs.started.size(), 2U);
  EXPECT_EQ(run.advice, "");
  EXPECT_EQ(link.refreshes, 2);
}

TEST_F(LinkDriverTest, AProgramThatHangsStopsNeitherARunNorAnOrder) {
  StartRun();
  link.delay = std::chrono::milliseconds(1999);
  host.RefreshCharts();
  EXPECT_EQ(run.advice, "");
  link.delay = std::chrono::milliseconds(2001);
  host.RefreshCharts();
  EXPECT_EQ(run.line, "Chart program busy, wait for it! ");
  EXPECT_EQ(link.waited.count(), 2000);
  for (int order = 0; order < 20; ++order) {
    host.ShowPositions();
    host.TakePicture("picture");
  }
  EXPECT_EQ(link.waited.count(), 2000) << "orders wait for nobody";
  host.RefreshCharts();
  EXPECT_LE(link.waited.count(), 2200) << "not for two seconds at each bar";

  session.Run.symbol = "XYZ";
  link.symbols.insert("XYZ");
  host.CloseCharts();
  host.OpenChart();
  EXPECT_EQ(outside.programs.started.size(), 1U) << "no second chart program";
  EXPECT_THAT(chart.sent, IsEmpty());
  link.delay = std::chrono::milliseconds(1);
  host.RefreshCharts();
  EXPECT_EQ(link.open, "/data/Simulate\\ XYZ 5") << "opened as soon as it answers";
  EXPECT_THAT(run.advice, IsEmpty());
}

// No refresh follows the last bar of a feed, nor an order in a pause.
TEST_F(LinkDriverTest, AMissedRefreshIsRepeatedOnceTheProgramAnswers) {
  StartRun();
  host.CatchUp();
  EXPECT_EQ(link.refreshes, 1) << "nothing was missed";
  const auto hang = [this](auto act) {
    const int before = link.refreshes;
    link.delay = std::chrono::milliseconds(2001);
    act();
    host.CatchUp();
    link.delay = std::chrono::milliseconds(1);
    host.CatchUp();
    host.CatchUp();
    EXPECT_EQ(link.refreshes, before + 1);
    EXPECT_EQ(run.advice, "");
  };
  hang([this] { host.RefreshCharts(); });
  hang([this] { host.ShowPositions(); });
  link.ends_before = static_cast<int>(link.asked.size()) + 1;
  host.RefreshCharts();
  host.CatchUp();
  EXPECT_EQ(link.refreshes, 4);
  link.open.clear();
  host.RefreshCharts();
  const std::size_t asked = link.asked.size();
  host.CatchUp();
  EXPECT_EQ(link.asked.size(), asked) << "the trader has closed the chart";
}

TEST_F(LinkDriverTest, WhatTheTraderClosesStaysClosed) {
  StartRun();
  link.open.clear();
  host.RefreshCharts();
  EXPECT_EQ(run.line, "No chart of this run is open! ");
  const std::uint32_t process = link.process;
  link.End();
  host.ChartClosedByTrader(process + 1);  // another one
  host.RefreshCharts();
  EXPECT_EQ(outside.programs.started.size(), 2U);
  host.ChartClosedByTrader(link.process);
  link.End();
  host.RefreshCharts();
  EXPECT_EQ(outside.programs.started.size(), 2U);
  EXPECT_EQ(run.line, "No chart program, start it! ");
}

TEST_F(LinkDriverTest, OnlyAProgramThatWasStartedHereIsClosedAndOneThatAlwaysEndsGivenUp) {
  StartRun();
  HostControl other(session, run, run, platform, registry, trader);
  other.RefreshCharts();
  other.QuitStarted();
  EXPECT_TRUE(chart.running) << "another Velumar's";
  host.QuitStarted();
  EXPECT_FALSE(chart.running);
  for (int refresh = 0; refresh < 10; ++refresh) {
    link.ends_before = static_cast<int>(link.asked.size()) + 1;
    host.RefreshCharts();
  }
  EXPECT_LE(outside.programs.started.size(), 5U);
  outside.events.Schedule(std::chrono::milliseconds(5), [&] {
    link.deaf = 5;
    host.QuitStarted();
    EXPECT_FALSE(chart.running) << "Velumar ends while the chart program starts";
  });
  host.RefreshCharts();
}

TEST_F(LinkDriverTest, TheThemeReachesTheChartProgramAtItsStartAndLater) {
  host.SetTheme(true);
  StartRun();
  EXPECT_THAT(outside.programs.started.front(), HasSubstr("--theme=dark"));
  EXPECT_EQ(link.dark, true);
  host.SetTheme(false);
  EXPECT_EQ(link.dark, false);
  link.delay = std::chrono::milliseconds(2001);
  host.SetTheme(true);
  link.delay = std::chrono::milliseconds(1);
  host.RefreshCharts();
  EXPECT_EQ(link.dark, true) << "as soon as it answers";
  link.End();
  link.dark.reset();
  link.Begin();
  host.RefreshCharts();
  EXPECT_EQ(link.dark, true) << "another chart program, which the trader has started";
}

TEST_F(LinkDriverTest, ChartsShowTheOrdersUpToTheCurrentBarAndWhatIsHeld) {
  session.Orders = {{5, 10.5, true, true}, {7, 11, true, false}, {9, 12, false, true}};
  session.BarIndex = 8;
  session.SAccum = 2;
  session.SAvgPrice = 12;
  session.MarketPrice = 11.5;
  session.ProfitPerContract = 100;
  StartRun();
  EXPECT_EQ(link.positions.orders,
            (std::vector<OrderMark>{{5, 10.5, true, true}, {7, 11, true, false}}));
  EXPECT_EQ(link.positions.held, (std::vector<HeldLine>{{false, 12, 2, 100}}));
  session.BarIndex = 9;
  session.SAccum = 0;
  EXPECT_EQ(link.positions.quantity, 1);
  EXPECT_EQ(link.positions.profit_per_point, 100);
  run.quantity = "2,000.5";
  host.ShowPositions();
  EXPECT_EQ(link.positions.orders.size(), 3U);
  session.EarlierOrders = {{4, 10, true, true, true}, {10, 12, true, false, true}};
  for (const bool shows : {true, false}) {
    session.ShowsEarlier = shows;
    host.ShowPositions();
    EXPECT_EQ(link.positions.orders.size(), shows ? 4U : 3U) << "none after the current bar";
  }
  EXPECT_TRUE(link.positions.held.empty());
  EXPECT_EQ(link.positions.quantity, 2000.5);
  run.quantity = "-1";
  host.ShowPositions();
  EXPECT_EQ(link.positions.quantity, 0);
  for (int i = 0; i <= 40; ++i) {
    LedgerPlan plan;
    plan.stop = i;
    session.Plans.Add({.is_long = true, .entry = true, .bar = 5, .held = 1, .plan = plan});
  }
  host.ShowPositions();
  ASSERT_EQ(link.positions.plans.size(), 40U) << "the oldest is left out";
  EXPECT_EQ(link.positions.plans.front().price, 1);
  EXPECT_EQ(link.positions.plans.back().price, 40);
}

TEST_F(LinkDriverTest, AChartThatCannotBeOpenedShowsABox) {
  session.Run.symbol = "XYZ";
  StartRun();
  EXPECT_THAT(outside.boxes.shown, ElementsAre(HasSubstr("open the chart of XYZ yourself")));
}

TEST(ChartRequestText, OnlyRequestsOfThisProtocolAreRead) {
  const std::string good = ChartRequestText({Command::kOpen, "/d\xff", "A \"B\"", -1});
  const std::optional<ChartRequest> read = ReadChartRequest(good);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->symbol, "A \"B\"");
  EXPECT_EQ(read->interval, -1);
  for (const char* const bad :
       {"", "{}", "[]", "1", R"({"protocol":2,"do":"hello"})", R"({"protocol":1,"do":"format"})",
        R"({"protocol":1,"do":"open","folder":5})",
        R"({"protocol":1,"do":"open","interval":"5"})"}) {
    EXPECT_FALSE(ReadChartRequest(bad)) << bad;
  }
}

}  // namespace
}  // namespace velumar
