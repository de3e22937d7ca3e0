#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "support/whole_program.h"

namespace velumar {
namespace {

// Of this process, as the system counts it.
struct Use {
  Use() { std::ifstream("/proc/self/statm") >> size >> pages; }

  long size = 0;
  long pages = 0;
  long files = std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
};

// A whole working life at the shortest delay, with an order every eighth bar.
TEST(LongRun, MemoryAndFilesStayFlatAndEveryOrderIsServed) {
  const ScratchFolder scratch;
  const std::string data = scratch.Sub("data");
  IndexCache cache;
  StoreSecurity(data, {"ABC", "Abc", -1}, DailyBars(32000), cache);
  WholeProgram all(data);
  double clicks = 0;
  std::optional<Use> warm;
  all.outside.events.SetOnPending([&] {
    all.outside.chart.sent.clear();
    const int bar = all.session.BarIndex;
    if (bar == 2000) warm.emplace();
    if (bar % 8 != 0) return;
    ++clicks;
    all.At(1 + bar % 900, [&all, bar] {
      (bar % 16 == 0 ? all.Panel().imgLong : all.Panel().imgOffsetLong).UserClick();
    });
  });
  all.program.Start();
  all.Panel().Combo2.SetText("1");
  all.Play(16);
  EXPECT_EQ(ReadBars(all.session.SimDir, "ABC", -1).size(), 32000U);
  EXPECT_GT(clicks, 3900);
  EXPECT_EQ(LedgerQuery(all.ledger, "select count(*) From MyPortfolio").rows.at(0).at(0),
            LedgerValue(clicks));
  const Use end;
  EXPECT_LE(end.files, warm->files + 1);
  EXPECT_LT(end.pages - warm->pages, 2000) << "pages of memory, including 4000 rows";
  EXPECT_TRUE(all.outside.boxes.shown.empty());
}

}  // namespace
}  // namespace velumar
