#include "session/compared_series.h"

#include <algorithm>
#include <random>

#include "session/run_control.h"
#include "support/session_fixture.h"

namespace velumar {
namespace {

// A directory with series of several intervals: A and B daily, M and N of 5 and H of 60 minutes.
struct ComparedSeriesTest : SessionFixture {
  ComparedSeriesTest() {
    const std::vector<Bar> days = DailyBars(40);
    Store("A", days);
    std::vector<Bar> gaps = days;
    std::erase_if(gaps, [](const Bar& bar) { return bar.date % 3 == 0; });
    Store("B", gaps);
    Store("M", IntradayBars(700, 5), 5);
    Store("N", IntradayBars(690, 5), 5);
    Store("H", IntradayBars(800, 60), 60);
    for (const SecurityInfo& listed : SecuritiesOf(data, cache)) all.push_back(listed);
    session.DataDir = data;
    session.SimDir = store;
  }
  int NumberOf(const std::string& symbol) const {
    return std::ranges::find(all, symbol, &SecurityInfo::symbol)->file_number;
  }
  std::vector<Bar> Stored(const SecurityInfo& of) {
    if (!std::filesystem::exists(store + "/F" + std::to_string(of.file_number) + ".DAT")) return {};
    return ReadBars(store, of.symbol, of.interval);
  }
  // Every bar that is certainly over at the moment of the newest played bar, and no other.
  void ExpectTheSamePast(int played, int interval) {
    const auto moment = [](const Bar& bar) { return TimestampKey(bar.date, bar.time); };
    const auto now = TimestampKey(session.BarDate.at(static_cast<std::size_t>(played)),
                                  session.BarTime.at(static_cast<std::size_t>(played)));
    for (const SecurityInfo& one : all) {
      if (one.symbol == session.Run.symbol) continue;
      const std::vector<Bar> whole = ReadBars(data, one.symbol, one.interval);
      std::vector<Bar> past;
      for (std::size_t i = 0; i < whole.size(); ++i) {
        const bool next_began = i + 1 < whole.size() && moment(whole[i + 1]) <= now;
        const bool over = one.interval == interval ? moment(whole[i]) <= now : next_began;
        if (over) past.push_back(whole[i]);
      }
      EXPECT_EQ(Stored(one), past)
          << one.symbol << " next to " << session.Run.symbol << " at " << now;
    }
  }

  std::vector<SecurityInfo> all;
  LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
};

TEST_F(ComparedSeriesTest, AreNeverLaterThanThePlayedMoment) {
  std::mt19937 random(5);
  for (const auto& [symbol, text, interval] :
       {std::tuple("A", "D", -1), std::tuple("M", "5", 5), std::tuple("H", "60", 60)}) {
    std::filesystem::remove_all(store);
    CopyIndexes();
    Choose(symbol, text, MadeDate(20));
    ASSERT_TRUE(working_store.Prepare());
    working_store.LoadSeries();
    ComparedSeries compared(session, cache);
    BarStepper stepper(session, cache, compared);
    for (const SecurityInfo& one : all) compared.Add(one.file_number);
    compared.Follow(session.BarIndex);
    const std::function<void()> moves[] = {
        [&] { stepper.FeedBar(session.BarIndex); }, [&] { stepper.FastFeed(session.BarIndex); },
        [&] {
          if (session.BarIndex > 0) stepper.UnfeedBar(session.BarIndex);
        },
        [&] { stepper.FastUnfeed(session.BarIndex); },
        [&] {
          stepper.MoveTo(session.BarIndex, static_cast<int>(random() % session.BarDate.size()));
        }};
    for (int step = 0; step < 60; ++step) {
      ExpectTheSamePast(session.BarIndex, interval);
      moves[random() % std::size(moves)]();
    }
    compared.Remove(NumberOf("B"));
    EXPECT_TRUE(ReadBars(store, "B", -1).empty());
    session.ForgetBars();
  }
}

// The trader opens a second chart while a run is being prepared.
TEST_F(ComparedSeriesTest, WhatWasAskedForInAFailedPreparationIsForgotten) {
  struct AskingCharts : RecordedCharts {
    std::function<void()> on_open;
    void OpenChart() override { on_open(); }
  } charts;
  RunControl control(session, run, run, platform, cache, ledger, charts);
  charts.on_open = [&] { control.Compare(NumberOf("B")); };
  session.Symbol = run.symbol = "NONE";
  run.start_day = MadeDate(20);
  EXPECT_FALSE(control.ClaimStore() && control.Start());
  charts.on_open = [] {};
  session.Symbol = run.symbol = "A";
  ASSERT_TRUE(control.ClaimStore() && control.Start());
  EXPECT_TRUE(ReadBars(store, "B", -1).empty());
  // So is what an earlier run was compared with, and what was closed again while it was prepared.
  control.Compare(NumberOf("B"));
  charts.on_open = [&] {
    for (const char* symbol : {"M", "N"}) control.Compare(NumberOf(symbol));
    control.EndCompare(NumberOf("M"));
  };
  ASSERT_TRUE(control.ClaimStore() && control.Start());
  EXPECT_TRUE(ReadBars(store, "B", -1).empty() && ReadBars(store, "M", 5).empty());
  EXPECT_FALSE(ReadBars(store, "N", 5).empty());
}

TEST_F(ComparedSeriesTest, WhatTheChartProgramAsksForIsFedOrRefusedInWords) {
  for (int i = 1; i <= 8; ++i) Store("X" + std::to_string(i), DailyBars(30));
  all = SecuritiesOf(data, cache);
  RecordedCharts charts;
  RunControl control(session, run, run, platform, cache, ledger, charts);
  session.Symbol = run.symbol = "A";
  run.start_day = MadeDate(20);
  control.Compare(NumberOf("B"));  // no run yet
  bool paused = false;
  outside.events.SetOnPending([&] {
    if (session.BarIndex < 22 || std::exchange(paused, true)) return;
    control.EndRun();
    const std::size_t asked = charts.asked.size();
    control.Compare(NumberOf("B"));
    EXPECT_EQ(charts.asked.size(), asked + 1);
  });
  ASSERT_TRUE(control.ClaimStore() && control.Start());
  EXPECT_EQ(Stored(all[1]).back().date, MadeDate(session.BarIndex) - 1)
      << "the 24th is no bar of B";
  control.Compare(NumberOf("A"));
  EXPECT_TRUE(outside.boxes.shown.empty()) << "it is the played one";
  for (const int i : {1, 1, 2, 3, 4, 5, 6, 7, 8})
    control.Compare(NumberOf("X" + std::to_string(i)));
  control.Compare(999);
  EXPECT_THAT(outside.boxes.shown,
              ElementsAre(AllOf(HasSubstr("X8"), HasSubstr("at most 8 series")),
                          HasSubstr("file number 999")));
  control.EndCompare(NumberOf("B"));
  EXPECT_TRUE(ReadBars(store, "B", -1).empty());
  control.GoNext();
  EXPECT_EQ(ReadBars(store, "X1", -1), ReadBars(store, "A", -1));
}

}  // namespace
}  // namespace velumar
