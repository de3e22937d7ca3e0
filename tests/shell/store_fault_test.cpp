#include <algorithm>

#include "marketdata/metalib_error.h"
#include "support/traced_child.h"
#include "support/whole_program.h"

namespace velumar {
namespace {

constexpr int kBars = 120;
constexpr int kStart = 60;

constexpr int kOldBarsShown = 200;
constexpr int kRefused = 201;

// A run of three bars, a pause, and one step of each kind. Returns the newest bar that was shown,
// kRefused if no chart was opened, kOldBarsShown if one was opened while the store held bars.
int TradeALittle(const std::string& data) {
  WholeProgram all(data);
  bool opened = false;
  bool old_bars = false;
  for (int ms = 0; ms < 20000; ms += 200) {
    all.At(ms, [&] {
      const auto& keys = all.outside.chart.sent;
      if (opened || std::ranges::count(keys, "%FO") == 0) return;
      opened = true;
      old_bars = FilesOf(data + "/Simulate").contains("F1.DAT");
    });
  }
  int passes = 0;
  all.outside.events.SetOnPending([&] {
    if (++passes == 3) all.At(1000, [&] { all.Navigator().Image4.UserClick(); });
  });
  all.program.Start();
  all.Play(kStart);
  all.Navigator().Image1.UserClick();
  all.Navigator().Image7.UserClick();
  all.Navigator().Image2.UserClick();
  if (old_bars) return kOldBarsShown;
  return opened ? all.session.NewestShownBar : kRefused;
}

// The store of a run that went on to the last bar.
void KeepOldRun(const std::string& data) {
  const std::string store = data + "/Simulate";
  IndexCache cache;
  StoreSecurity(store, {"ABC", "Abc", -1}, DailyBars(kBars), cache);
  WriteFile(store + "/.velumar-store", "");
}

TEST(StoreFault, ABrokenDiskNeverShowsTheFutureNorHarmsTheData) {
  if (!CanTrace()) GTEST_SKIP() << "no permission to trace a process";
  const ScratchFolder original(MemoryFolder());
  const std::string data = original.Sub("data");
  IndexCache cache;
  StoreSecurity(data, {"ABC", "Abc", -1}, DailyBars(kBars), cache);
  StoreSecurity(data, {"XYZ", "Xyz", -1}, DailyBars(kBars), cache);
  const auto before = FilesOf(data);
  const int faults = ForEachFault([&](const DiskFault& fault) {
    // Passing faults are the milder ones, except while the store is being emptied.
    if (!fault.stays_broken && fault.number > 25 && fault.number % 3 != 0) return false;
    const ScratchFolder scratch(MemoryFolder());
    const std::string copy = scratch.Sub("data");
    std::filesystem::copy(data, copy);
    if (!fault.stays_broken) KeepOldRun(copy);
    const FailedWork failed =
        FailAt(fault.number, fault.error, fault.stays_broken, [&] { return TradeALittle(copy); });
    if (!failed.reached) return false;
    EXPECT_GE(failed.exit_code, 0) << "it died";
    EXPECT_NE(failed.exit_code, kOldBarsShown);
    EXPECT_EQ(FilesOf(copy), before);
    if (failed.exit_code == kRefused) return true;
    std::vector<Bar> stored;
    try {
      stored = ReadBars(copy + "/Simulate", "ABC", -1);
    } catch (const MetaLibError&) {
      return true;  // the store has no index file yet
    }
    // The history before the start date may be there even if the run didn't begin.
    EXPECT_LE(static_cast<int>(stored.size()), std::max(failed.exit_code + 1, kStart));
    for (std::size_t i = 0; i < stored.size(); ++i) {
      EXPECT_EQ(stored[i].date, MadeDate(static_cast<int>(i))) << "a gap";
    }
    return true;
  });
  EXPECT_GT(faults, 30);
}

}  // namespace
}  // namespace velumar
