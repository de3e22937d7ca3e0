#include <cstring>
#include <map>

#include "marketdata/metalib_error.h"
#include "support/traced_child.h"
#include "support/whole_program.h"

namespace velumar {
namespace {

constexpr int kBars = 120;
constexpr int kStart = 60;

// A run of three bars, a pause, and one step of each kind. Answers the newest bar that was shown.
int TradeALittle(const std::string& data) {
  WholeProgram all(data);
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
  return all.session.NewestShownBar;
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
      if (!stays_broken && number % 3 != 0) continue;  // a passing fault is the milder one
      const ScratchFolder scratch;
      const std::string copy = scratch.Sub("data");
      std::filesystem::copy(data, copy);
      const FailedWork failed =
          FailAt(number, error, stays_broken, [&] { return TradeALittle(copy); });
      if (!failed.traced) GTEST_SKIP() << "no permission to trace a process";
      if (!failed.reached) continue;
      ++reached;
      ++faults;
      const std::string where = "change " + std::to_string(number) + ", " + strerror(error);
      EXPECT_GE(failed.exit_code, 0) << where << ": it died";
      EXPECT_EQ(FilesOf(copy), before) << where;
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
