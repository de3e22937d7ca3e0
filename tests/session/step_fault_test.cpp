#include <algorithm>
#include <functional>

#include "base/ignoring.h"
#include "marketdata/market_files.h"
#include "session/run_control.h"
#include "support/session_fixture.h"
#include "support/traced_child.h"

namespace velumar {
namespace {

constexpr int kBars = 120;
constexpr int kStart = 60;
constexpr std::size_t kRecordSize = 28;  // bytes, of a daily bar

using StepFunction = std::function<void(BarStepper&, std::int16_t&)>;

// Makes a step from the bar before kStart, in the process whose disk breaks, and lets the compared
// series follow once more if asked for. Returns where the cursor is then.
int StepFrom(SimSession& session, ComparedSeries& compared, const StepFunction& step,
             bool once_more) {
  IndexCache cache;
  BarStepper stepper(session, cache, compared);
  try {
    step(stepper, session.BarIndex);
  } catch (const MetaLibError&) {
    // The step was not made.
  }
  if (once_more) IgnoringErrors([&] { compared.Follow(session.BarIndex); });
  return session.BarIndex;
}

using StepFaultTest = SessionFixture;

// Whichever write of a step fails, the store holds the bars up to the cursor and no other: a chart
// ahead of it would show the future, one before it would hide bars that were traded.
TEST_F(StepFaultTest, AStepIsCompleteOrRolledBack) {
  if (!CanTrace()) GTEST_SKIP() << "no permission to trace a process";
  const ScratchFolder memory(MemoryFolder());
  data = memory.Sub("data");
  store = data + "/Simulate";
  Store("ABC", DailyBars(kBars));
  Store("XYZ", DailyBars(kBars));
  CopyIndexes();
  Choose("ABC", "D", MadeDate(kStart));
  ASSERT_TRUE(working_store.Prepare());
  working_store.LoadSeries();
  ASSERT_EQ(session.BarIndex, kStart - 1);
  ComparedSeries compared(session, cache);
  compared.Add(2);
  compared.Follow(session.BarIndex);
  const std::string kept = memory.Sub("kept");
  std::filesystem::copy(store, kept);
  int faults = 0;
  int taken_back = 0;
  const auto to = [](int bar) {
    return [bar](BarStepper& stepper, std::int16_t& index) { stepper.MoveTo(index, bar); };
  };
  const std::pair<StepFunction, int> steps[] = {
      {&BarStepper::FeedBar, kStart},         {&BarStepper::FastFeed, kStart + 29},
      {to(kStart + 50), kStart + 50},         {&BarStepper::UnfeedBar, kStart - 2},
      {&BarStepper::FastUnfeed, kStart - 31}, {to(kStart - 50), kStart - 50}};
  for (const auto& [step, target] : steps) {
    faults += ForEachFault([&, step = step, target = target](const DiskFault& fault) {
      std::filesystem::remove_all(store);
      std::filesystem::copy(kept, store);
      const bool once_more = fault.number % 2 == 0;
      const FailedWork failed = FailAt(fault.number, fault.error, fault.stays_broken, [&] {
        return StepFrom(session, compared, step, once_more);
      });
      if (!failed.reached) return false;
      EXPECT_GE(failed.exit_code, 0) << "it died";
      taken_back += failed.exit_code == kStart - 1 ? 1 : 0;
      const int bars = std::max(failed.exit_code + 1, 0);
      EXPECT_EQ(StoreBars(), DailyBars(bars));
      const std::string next_to_it = store + "/F2.DAT";
      EXPECT_TRUE(!std::filesystem::exists(next_to_it) ||
                  std::filesystem::file_size(next_to_it) <= kRecordSize * (bars + 1U));
      const bool put_back = target < kStart && failed.exit_code == kStart - 1;
      if (!fault.stays_broken && (once_more || put_back)) {
        EXPECT_EQ(ReadBars(store, "XYZ", -1), DailyBars(bars)) << "next to it";
      }
      // Only a disk that stays broken may leave a step half made, or bytes of later bars.
      EXPECT_TRUE(fault.stays_broken ||
                  std::filesystem::file_size(store + "/F1.DAT") == kRecordSize * (bars + 1U));
      EXPECT_TRUE(fault.stays_broken || failed.exit_code == kStart - 1 ||
                  failed.exit_code == target)
          << failed.exit_code;
      return true;
    });
  }
  EXPECT_GT(faults, 40);
  EXPECT_GT(taken_back, 10);
}

// A chart side that looks into the store when the chart opens.
struct WatchingCharts : RecordedCharts {
  void OpenChart() override {
    opened = true;
    old_bars = std::filesystem::exists(store + "/F1.DAT");
  }

  std::string store;
  bool opened = false;
  bool old_bars = false;
};

// Whichever write of a start fails, over the store of a run that went on to the last bar: no chart
// opens while bars of that run are left, and no bar after the newest one that was shown is stored.
TEST_F(StepFaultTest, AStartNeverShowsTheFutureNorHarmsTheData) {
  if (!CanTrace()) GTEST_SKIP() << "no permission to trace a process";
  constexpr int kOldBarsShown = 200;
  constexpr int kRefused = 201;
  const ScratchFolder memory(MemoryFolder());
  data = memory.Sub("data");
  store = data + "/Simulate";
  Choose("ABC", "D", run.start_day = MadeDate(kStart));
  session.Symbol = "ABC";
  for (const char* symbol : {"ABC", "XYZ"}) Store(symbol, DailyBars(kBars));
  const auto before = FilesOf(data);
  const std::string kept = memory.Sub("kept");
  StoreSecurity(kept, {"ABC", "ABC name", -1}, DailyBars(kBars), cache);
  WriteFile(kept + "/.velumar-store", "");
  LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
  const auto start = [&] {
    WatchingCharts charts;
    charts.store = store;
    RunControl control(session, run, run, platform, cache, ledger, charts);
    outside.events.SetOnPending([&control] { control.EndRun(); });
    if (control.ClaimStore()) control.Start();
    if (charts.old_bars) return kOldBarsShown;
    return charts.opened ? std::max<int>(session.NewestShownBar, 0) : kRefused;
  };
  int shown = 0;
  const int faults = ForEachFault([&](const DiskFault& fault) {
    // Passing faults are the milder ones, except while the store is being emptied.
    if (!fault.stays_broken && fault.number > 25 && fault.number % 3 != 0) return false;
    std::filesystem::remove_all(store);
    std::filesystem::copy(kept, store);
    const FailedWork failed = FailAt(fault.number, fault.error, fault.stays_broken, start);
    if (!failed.reached) return false;
    EXPECT_GE(failed.exit_code, 0) << "it died";
    EXPECT_NE(failed.exit_code, kOldBarsShown);
    EXPECT_EQ(FilesOf(data), before);
    if (failed.exit_code == kRefused) return true;
    ++shown;
    std::vector<Bar> stored;
    ErrorOf([&] { stored = StoreBars(); });  // there may be no index file yet
    // The history before the start date may be there even if the run didn't begin.
    EXPECT_LE(static_cast<int>(stored.size()), std::max(failed.exit_code + 1, kStart));
    const std::vector<Bar> whole = DailyBars(kBars);
    EXPECT_TRUE(std::equal(stored.begin(), stored.end(), whole.begin())) << "a gap";
    return true;
  });
  EXPECT_GT(faults, 30);
  EXPECT_GT(shown, 5);
}

}  // namespace
}  // namespace velumar
