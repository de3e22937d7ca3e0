#include "e2e/trader_fixture.h"
#include "ledger/ledger.h"
#include "platform/typing_target.h"

namespace velumar {
namespace {

using RunE2e = TraderFixture;

TEST_F(RunE2e, ASecondStartBringsTheFirstToTheFront) {
  RunningProgram second(scratch.Path(), scratch.Sub("second"));
  ASSERT_TRUE(Eventually([&] { return second.Ended(); }, 10));
  EXPECT_EQ(second.ExitCode(), 0);
  EXPECT_TRUE(Find(setup).has_value());
  EXPECT_TRUE(Eventually([&] { return hand.FrontTitle().starts_with("Velumar"); }));
  EXPECT_FALSE(program->Ended());
}

// Trades with the mouse, with keys in Velumar's windows and with keys in the chart.
struct TradeE2e : TraderFixture, testing::WithParamInterface<const char*> {
  TradeE2e() { chart_link = GetParam(); }
  std::vector<std::vector<LedgerValue>> Rows() {
    const std::string folder = std::filesystem::path(VELUMAR_PROGRAM).parent_path().string();
    LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
    try {
      LedgerOpenToRead(ledger, folder + "/Portfolio.mdb");
      return LedgerQuery(ledger, "select MarketPrice From MyPortfolio order by rowid").rows;
    } catch (const LedgerError&) {
      return {};
    }
  }
  bool RowsAre(std::size_t count) {
    return Eventually([&] { return Rows().size() == count; }, 10);
  }
  // A key may fall into the moment in which a refresh is typed and no window has the focus.
  bool OrdersBy(const std::string& key) {
    const std::size_t before = Rows().size();
    return Eventually([&] {
      hand.Press(key);
      return Eventually([&] { return Rows().size() > before; }, 3);
    });
  }
};

TEST_P(TradeE2e, OrdersByMouseAndKeysReachTheLedger) {
  ClickOn(setup, setup.Image3);
  WaitForChart();
  hand.Activate("Velumar");
  hand.Press("space");
  const int paused = BarsAfterPause();
  EXPECT_EQ(Rows().size(), 0U);

  ClickOn(panel, panel.imgLong);
  ASSERT_TRUE(RowsAre(1)) << "long by the mouse";
  EXPECT_NEAR(std::get<double>(Rows()[0][0]), MadeBar(paused - 1, 0).close, 0.005);
  Sleep(500);
  hand.Press("shift+l");
  ASSERT_TRUE(RowsAre(2)) << "offset by key";
  EXPECT_EQ(StoreBars(), paused);

  hand.Activate("MetaStock");
  hand.Press("s");
  ASSERT_TRUE(RowsAre(3)) << "short by a key typed to the chart";
  EXPECT_TRUE(hand.FrontTitle().starts_with("MetaStock")) << "an order leaves the chart in front";
  hand.Press("Next");
  EXPECT_TRUE(Shows(paused + 30)) << "30 bars from the chart";
  Sleep(500);
  hand.Activate("MetaStock");
  hand.Press("shift+s");
  ASSERT_TRUE(RowsAre(4));

  // Keys place no orders while the results are in front.
  hand.Activate("Velumar");
  ClickOn(panel, panel.imgGraph);
  ASSERT_TRUE(Eventually([&] { return !hand.FrontTitle().starts_with("Velumar"); }));
  hand.Press("l");
  Sleep(500);
  EXPECT_EQ(Rows().size(), 4U);
}

// Every second the chart is refreshed, while the trader writes a letter full of the keys that
// trade, step and pause.
TEST_P(TradeE2e, KeysTypedInAnotherProgramStayThere) {
  ClickOn(setup, setup.Image3);
  WaitForChart();
  Sleep(1500);
  TypingTarget editor(std::getenv("DISPLAY"));
  const Window notes = editor.Open({.title = "Notes"});
  ASSERT_TRUE(Eventually([&] {
    hand.Activate("Notes");
    return hand.FrontTitle() == "Notes";
  })) << "a refresh that is just typed may take the focus once more";
  const int before = ChartBars();
  const std::string phrase = "lets sell-some-shares b";
  std::string letter;
  while (letter.size() < 200) letter += phrase[letter.size() % phrase.size()];
  for (const char c : letter) {
    hand.Type(std::string(1, c));
    Sleep(40 + static_cast<int>(letter.size() * static_cast<unsigned char>(c)) % 80);
  }
  Sleep(200);
  EXPECT_EQ(editor.TakeTyped(notes), letter);
  EXPECT_TRUE(Rows().empty()) << Rows().size() << " orders";
  EXPECT_GE(ChartBars(), before + 5) << "the chart follows the feed";
  // No window is active for a moment while a refresh is typed.
  EXPECT_TRUE(Eventually([&] { return hand.FrontTitle() == "Notes"; })) << hand.FrontTitle();

  // The window closes, and the focus moves to one of ours, or to the chart.
  editor.Close(notes);
  Sleep(500);
  hand.Press("l");
  Sleep(1000);
  EXPECT_TRUE(Rows().empty()) << "the trader has not returned to the run";
  ClickOn(panel, panel.Label4);
  EXPECT_TRUE(OrdersBy("l"));
  Sleep(3500);
  EXPECT_TRUE(OrdersBy("s")) << "a refresh returned the focus";
}

INSTANTIATE_TEST_SUITE_P(Links, TradeE2e, testing::Values("direct", "keys"));

// The windows at 100 and 200 %.
struct WindowsE2e : TraderFixture, testing::WithParamInterface<int> {
  void SetUp() override {
    setenv("QT_SCALE_FACTOR", std::to_string(GetParam()).c_str(), 1);
    hand.SetScale(GetParam());
    TraderFixture::SetUp();
  }
  void TearDown() override {
    program.reset();
    unsetenv("QT_SCALE_FACTOR");
  }

  void PressTimes(int times, const std::string& key) {
    for (int i = 0; i < times; ++i) hand.Press(key);
  }
  // From the path box through all boxes to the start button.
  void StartByKeys() {
    PressTimes(2, "Tab");
    hand.Press("ctrl+a");
    hand.Type("made");  // a word of its name
    Sleep(300);
    hand.Press("Down");
    hand.Press("Return");
    PressTimes(12, "Tab");
    hand.Press("Return");
  }
  // The slide may end a step early.
  void ExpectNear(const std::optional<ScreenRect>& now, const ScreenRect& before) {
    ASSERT_TRUE(now);
    EXPECT_EQ(now->x, before.x);
    EXPECT_NEAR(now->y, before.y, 4 * GetParam());
  }
};

TEST_P(WindowsE2e, ARunByKeysAloneAndWindowsThatKeepTheirPlace) {
  const auto setup_place = Find(setup);
  ASSERT_TRUE(setup_place);
  StartByKeys();
  WaitForChart();
  const auto window = Find(navigator);
  ASSERT_TRUE(window);
  hand.Activate(*window);
  hand.Press("space");
  const int paused = BarsAfterPause();
  hand.Press("Right");
  EXPECT_TRUE(Shows(paused + 1));

  hand.Drag(*window, 60, 900, 130, -90);
  const auto moved = Find(navigator);
  ASSERT_TRUE(moved);
  EXPECT_EQ(moved->x, window->x + 130);
  EXPECT_EQ(moved->y, window->y - 90);
  hand.Tap(*moved, 60, 900);
  hand.PointAt(moved->x + 300, moved->y - 200);
  Sleep(500);
  EXPECT_EQ(Find(navigator)->x, moved->x) << "a tap does not drag the window";

  hand.Activate(*moved);
  PressTimes(2, "Tab");
  hand.Press("Return");
  ASSERT_TRUE(Eventually([&] { return Find(setup).has_value(); }));
  Sleep(2500);
  ExpectNear(Find(setup), *setup_place);
  hand.Press("Escape");
  hand.Press("alt+F4");
  ASSERT_TRUE(Eventually([&] { return program->Ended(); })) << "Alt+F4 quits";

  program.reset();
  StartProgram();
  ExpectNear(Find(setup), *setup_place);
  PressTimes(14, "Tab");
  hand.Press("Return");
  ASSERT_TRUE(Eventually([&] { return Find(panel).has_value(); }, 60));
  Sleep(3000);
  ExpectNear(Find(navigator), *moved);
  EXPECT_EQ(Find(panel)->x, moved->x) << "the panel opens below the navigator";
}

INSTANTIATE_TEST_SUITE_P(Scales, WindowsE2e, testing::Values(1, 2));

}  // namespace
}  // namespace velumar
