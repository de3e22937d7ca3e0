#include "support/large_directory.h"

#include <filesystem>

#include "base/paths.h"
#include "support/whole_program.h"

namespace velumar {
namespace {

constexpr int kSecurities = 6000;  // 255 of them in MASTER, the rest in XMASTER
constexpr int kBars = 40;

// A security of either index: listed, chosen and played, with nothing of the others' data copied.
TEST(LargeDirectoryTest, ThousandsOfSecuritiesAreListedChosenAndPlayed) {
  const LargeDirectory directory(kSecurities, kBars, kBars);
  for (const int number : {254, 255, kSecurities - 1}) {
    SCOPED_TRACE(number);
    WholeProgram all(directory.Text());
    all.program.Start();
    ASSERT_EQ(all.Setup().Combo1.Rows().size(), kSecurities);

    const std::string symbol = "S" + std::to_string(number);
    all.Setup().Combo1.UserType(symbol);
    all.Setup().DTPicker1.UserPick(LargeDirectoryDate(20));
    std::vector<std::size_t> in_store;
    all.outside.events.SetOnPending([&] {
      if (all.session.Symbol != symbol) return;
      in_store.push_back(ReadBars(all.session.SimDir, symbol, -1).size());
    });
    all.Setup().Image3.UserClick();

    EXPECT_EQ(all.session.Symbol, symbol);
    EXPECT_EQ(all.session.BarIndex, kBars - 1);
    EXPECT_TRUE(all.outside.boxes.shown.empty());
    ASSERT_GE(in_store.size(), 2);
    EXPECT_EQ(in_store.front(), 20) << "the history before the start date";
    EXPECT_TRUE(std::is_sorted(in_store.begin(), in_store.end()));
    EXPECT_EQ(ReadBars(all.session.SimDir, symbol, -1).size(), kBars);
    std::size_t data_files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(NativePath(all.session.SimDir))) {
      const std::string ending = entry.path().extension().string();
      data_files += ending == ".DAT" || ending == ".MWD" ? 1 : 0;
    }
    EXPECT_EQ(data_files, 1);
  }
}

}  // namespace
}  // namespace velumar
