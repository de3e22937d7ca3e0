#include <functional>

#include "marketdata/metalib_error.h"
#include "session/bar_stepping.h"
#include "support/session_fixture.h"
#include "support/traced_child.h"

namespace velumar {
namespace {

constexpr int kBars = 120;
constexpr int kStart = 60;

using StepFunction = std::function<void(BarStepper&, std::int16_t&)>;

// Makes a step from the bar before kStart, in the process whose disk breaks. Returns where the
// cursor is then.
int StepFrom(const SimSession& chosen, const StepFunction& step) {
  SimSession session = chosen;
  IndexCache cache;
  BarStepper stepper(session, cache);
  try {
    step(stepper, session.BarIndex);
  } catch (const MetaLibError&) {
    // The step was not made.
  }
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
  CopyIndexes();
  Choose("ABC", "D", MadeDate(kStart));
  ASSERT_TRUE(working_store.Prepare());
  working_store.LoadSeries();
  ASSERT_EQ(session.BarIndex, kStart - 1);
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
      const FailedWork failed = FailAt(fault.number, fault.error, fault.stays_broken,
                                       [&] { return StepFrom(session, step); });
      if (!failed.reached) return false;
      EXPECT_GE(failed.exit_code, 0) << "it died";
      taken_back += failed.exit_code == kStart - 1 ? 1 : 0;
      EXPECT_EQ(StoreBars(), DailyBars(std::max(failed.exit_code + 1, 0)));
      // Only a disk that stays broken may leave a step half made.
      EXPECT_TRUE(fault.stays_broken || failed.exit_code == kStart - 1 ||
                  failed.exit_code == target)
          << failed.exit_code;
      return true;
    });
  }
  EXPECT_GT(faults, 40);
  EXPECT_GT(taken_back, 10);
}

}  // namespace
}  // namespace velumar
