#include "e2e/trader_fixture.h"
#include "ledger/ledger.h"
#include "platform/typing_target.h"

namespace velumar {
namespace {

// Trades with the mouse, with keys in Velumar's windows and with keys in the chart.
class TradeE2e : public TraderFixture, public testing::WithParamInterface<const char*> {
 protected:
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
  hand.Press("l");
  EXPECT_TRUE(RowsAre(1));
  Sleep(3500);
  hand.Press("s");
  EXPECT_TRUE(RowsAre(2)) << "a refresh returned the focus";
}

INSTANTIATE_TEST_SUITE_P(Links, TradeE2e, testing::Values("direct", "keys"));

}  // namespace
}  // namespace velumar
