#include <algorithm>
#include <cstring>
#include <fstream>
#include <map>

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
  all.Setup().DTPicker1.UserPick(MadeDate(kStart));
  all.Setup().Image3.UserClick();
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
  std::ofstream(store + "/.velumar-store");
}

TEST(StoreFault, ABrokenDiskNeverShowsTheFutureNorHarmsTheData) {
  const ScratchFolder original;
  const std::string data = original.Sub("data");
  IndexCache cache;
  StoreSecurity(data, {"ABC", "Abc", -1}, DailyBars(kBars), cache);
  StoreSecurity(data, {"XYZ", "Xyz", -1}, DailyBars(kBars), cache);
  const auto before = FilesOf(data);
  int faults = 0;
  for (int number = 1, reached = 1; reached != 0; ++number) {
    reached = 0;
    for (const auto& [error, stays_broken] : {std::pair(EIO, false), std::pair(ENOSPC, true)}) {
      // A passing fault is the milder one, but while the store is being emptied.
      if (!stays_broken && number > 25 && number % 3 != 0) continue;
      const ScratchFolder scratch;
      const std::string copy = scratch.Sub("data");
      std::filesystem::copy(data, copy);
      if (!stays_broken) KeepOldRun(copy);
      const FailedWork failed =
          FailAt(number, error, stays_broken, [&] { return TradeALittle(copy); });
      if (!failed.traced) GTEST_SKIP() << "no permission to trace a process";
      if (!failed.reached) continue;
      ++reached;
      ++faults;
      const std::string where = "change " + std::to_string(number) + ", " + strerror(error);
      EXPECT_GE(failed.exit_code, 0) << where << ": it died";
      EXPECT_NE(failed.exit_code, kOldBarsShown) << where;
      EXPECT_EQ(FilesOf(copy), before) << where;
      if (failed.exit_code == kRefused) continue;
      std::vector<Bar> stored;
      try {
        stored = ReadBars(copy + "/Simulate", "ABC", -1);
      } catch (const MetaLibError&) {
        continue;  // no index file came into the store
      }
      // The history that the picked date asks for is no future, even of a run that didn't begin.
      EXPECT_LE(static_cast<int>(stored.size()), std::max(failed.exit_code + 1, kStart)) << where;
      for (std::size_t i = 0; i < stored.size(); ++i) {
        EXPECT_EQ(stored[i].date, MadeDate(static_cast<int>(i))) << where << ": a gap";
      }
    }
  }
  EXPECT_GT(faults, 30);
}

}  // namespace
}  // namespace velumar
