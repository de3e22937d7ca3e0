#include <algorithm>
#include <fstream>

#include "platform/key_notation.h"
#include "support/run_fixture.h"

namespace velumar {
namespace {

using ChartRoadTest = RunFixture;

TEST_F(ChartRoadTest, TheChartIsOpenedByTheseKeysInThisOrder) {
  std::vector<std::string> keys;
  all->outside.events.SetOnPending([&] {
    if (keys.empty()) keys = all->outside.chart.sent;
  });
  StartAt(198);
  const std::string folder = EscapedKeys(data);
  EXPECT_EQ(keys,
            (std::vector<std::string>{"%Fe", "%FO", folder + "\\Simulate\\", "{SPACE}", "{SPACE}",
                                      "{SPACE}", "{ENTER}", "ABC", "{SPACE}", "{SPACE}", "{SPACE}",
                                      "{END}", "{TAB}", "S", "{ENTER}"}));
  EXPECT_TRUE(all->outside.programs.started.empty());
  EXPECT_EQ(all->outside.chart.maximized.size(), 3U);
  EXPECT_EQ(all->outside.chart.front, "Velumar");
}

TEST_F(ChartRoadTest, EachOpenChartIsRefreshedAndTheRingClosed) {
  InPauseOf(61, [this] { all->Navigator().Image4.UserClick(); });
  StartAt(60);
  const struct {
    const char* charts;
    std::vector<std::string> keys;
    int waited;
  } cases[] = {{"1", {"%VR"}, 500},
               {"2", {"%VR", "^{TAB}", "%VR", "^{TAB}"}, 1020},
               {"3", {"%VR", "^{TAB}", "%VR", "^{TAB}", "%VR", "^{TAB}"}, 1530},
               {"0", {"%VR"}, 500},
               {"abc", {"%VR"}, 500},
               {"-3", {"%VR"}, 500}};
  for (const auto& c : cases) {
    all->Navigator().txtRefresh.UserType(c.charts);
    all->outside.chart.sent.clear();
    const long before = all->Now();
    all->Navigator().Image1.UserClick();
    EXPECT_EQ(all->outside.chart.sent, c.keys) << c.charts;
    EXPECT_EQ(all->Now() - before, c.waited) << c.charts;
    EXPECT_TRUE(all->Navigator().txtRefresh.Enabled());
  }
}

TEST_F(ChartRoadTest, MoreChartsThanAScreenHoldsAreRefused) {
  TextBox& count = all->Navigator().txtRefresh;
  count.SetStartText("500");
  all->program.Start();
  EXPECT_EQ(count.Text(), "1");
  all->outside.boxes.shown.clear();
  all->Navigator().Show();
  for (const char* text : {"20", "21", "99999999999", "1,000"}) {
    count.UserType(text);
    EXPECT_EQ(count.Text(), "20") << text;
  }
  EXPECT_EQ(all->outside.boxes.shown.size(), 3U);
  EXPECT_THAT(all->outside.boxes.shown[0], testing::HasSubstr("not 21"));
}

// The remaining charts are only passed by, until the one in front is in front again.
TEST_F(ChartRoadTest, APauseEndsARefreshBetweenTwoCharts) {
  all->outside.events.SetOnPending([this] {
    if (all->session.BarIndex != 59) return;
    all->Navigator().txtRefresh.UserType("4");
    all->outside.chart.sent.clear();
    all->At(700, [this] { all->Navigator().Image4.UserClick(); });
  });
  StartAt(60);
  const auto& sent = all->outside.chart.sent;
  EXPECT_EQ(sent, (std::vector<std::string>{"%VR", "^{TAB}", "%VR", "^{TAB}", "^{TAB}", "^{TAB}"}));
  EXPECT_EQ(all->session.BarIndex, 60);
  all->outside.chart.sent.clear();
  all->Navigator().Image1.UserClick();
  EXPECT_EQ(std::count(sent.begin(), sent.end(), "%VR"), 4) << "a step in the pause refreshes all";
}

TEST_F(ChartRoadTest, AProgramThatIsNotThereIsStartedFromItsFolder) {
  all->outside.chart.running = false;
  auto& registry = all->outside.registry;
  RegistryKey key = 0;
  registry.CreateKey(RegistryRoot::kLocalMachine,
                     "SOFTWARE\\Equis International\\MetaStock Professional\\9.0");
  registry.CreateKey(RegistryRoot::kCurrentUser, "Software\\Equis\\Common\\9.0\\File Paths");
  registry.OpenKey(RegistryRoot::kCurrentUser, "Software\\Equis\\Common\\9.0\\File Paths",
                   Registry::kWrite, key);
  registry.SetValue(key, "ProgramPath", RegistryType::kString, "/opt/chart program");
  StartAt(198);
  EXPECT_EQ(all->outside.programs.started,
            std::vector<std::string>{"/opt/chart program\\MSWIN.EXE /l /e"});
}

TEST_F(ChartRoadTest, ADialogThatNeverComesEndsTheWaitWithABox) {
  all->outside.chart.dialog_comes = false;
  long begun = 0;
  all->outside.events.SetOnPending([&] {
    if (begun == 0) begun = all->Now();
  });
  StartAt(197);
  ASSERT_EQ(all->outside.boxes.shown.size(), 1U);
  EXPECT_THAT(all->outside.boxes.shown[0], testing::HasSubstr("ABC"));
  const auto store = (std::filesystem::path(data) / "Simulate").make_preferred().string();
  EXPECT_THAT(all->outside.boxes.shown[0], testing::HasSubstr(store)) << "separators of one kind";
  EXPECT_EQ(all->outside.chart.sent[2], "%VR") << "nothing was typed into no dialog";
  EXPECT_GT(begun, 15000);
  EXPECT_EQ(all->session.BarIndex, 199);
}

TEST_F(ChartRoadTest, TheStatusLineSaysWhatIsWrongWithTheChart) {
  InPauseOf(61, [this] { all->Navigator().Image4.UserClick(); });
  StartAt(60);
  const auto line = [&] {
    all->Navigator().Image1.UserClick();
    return all->Navigator().Label6.Text();
  };
  all->outside.chart.outcome = KeyOutcome::kNotSent;
  EXPECT_THAT(line(), testing::MatchesRegex("Keys held back.*! \\[ABC\\]  Date: .*"));
  all->outside.chart.running = false;
  EXPECT_THAT(line(), testing::MatchesRegex("No chart program, start it! \\[ABC\\]  Date: .*"));
  all->outside.chart.running = true;
  all->outside.chart.outcome = KeyOutcome::kNotAnswered;
  EXPECT_THAT(line(),
              testing::MatchesRegex("Chart program busy, wait for it! \\[ABC\\]  Date: .*"));
  all->outside.chart.outcome = KeyOutcome::kAccepted;
  EXPECT_THAT(line(), testing::StartsWith("[ABC]  Date: "));
}

// A folder of the trader's own that happens to be called so.
TEST_F(ChartRoadTest, AFolderThatIsNoStoreLeavesTheSetupWindowAsItWas) {
  const auto store = std::filesystem::path(data) / "Simulate";
  std::filesystem::create_directories(store);
  std::ofstream(store / "F1.DAT") << "mine";
  StartAt(60);
  ASSERT_EQ(all->outside.boxes.shown.size(), 1U);
  EXPECT_THAT(all->outside.boxes.shown[0], testing::HasSubstr("F1.DAT"));
  EXPECT_TRUE(all->Setup().Visible());
  EXPECT_TRUE(all->Setup().Image3.Reachable());
  EXPECT_TRUE(all->outside.chart.sent.empty());
  std::filesystem::remove(store / "F1.DAT");
  InPauseOf(61, [this] { all->Navigator().Image4.UserClick(); });
  all->Setup().Image3.UserClick();
  EXPECT_GT(StoreSize(), 60);
}

}  // namespace
}  // namespace velumar
