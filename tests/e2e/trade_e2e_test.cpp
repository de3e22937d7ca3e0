#include <cmath>

#include "e2e/trader_fixture.h"
#include "ledger/ledger.h"
#include "platform/typing_target.h"

namespace velumar {
namespace {

// Deals with the mouse, with the keys of the panel and with keys typed to the chart.
class TradeE2e : public TraderFixture {
 protected:
  std::vector<std::vector<LedgerValue>> Rows() {
    const std::string folder = std::filesystem::path(VELUMAR_PROGRAM).parent_path().string();
    LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
    try {
      LedgerOpenToRead(ledger, folder + "/Portfolio.mdb");
      return LedgerQuery(ledger,
                         "select Symbol, Position, MarketPrice From MyPortfolio order by rowid asc")
          .rows;
    } catch (const LedgerError&) {
      return {};
    }
  }
  bool RowsAre(std::size_t count) {
    return Eventually([&] { return Rows().size() == count; }, 10);
  }
  std::string Front() { return hand.FrontTitle(); }
};

TEST_F(TradeE2e, MouseAndKeysDealAndTheLedgerKeepsIt) {
  ClickOn(setup, setup.Image3);
  ASSERT_TRUE(Eventually([&] { return ChartBars() >= kStartBar + 1; }, 60)) << "the chart opens";
  hand.Activate("Velumar");
  hand.Press("space");
  Sleep(4000);  // the bar that still comes
  const int paused = StoreBars();
  EXPECT_EQ(Rows().size(), 0U);

  // The quantity keeps the letters that are typed into it; Enter leaves the box.
  ClickOn(panel, panel.txtContractVol);
  hand.Press("ctrl+a");
  hand.Type("2");
  hand.Press("Return");
  Sleep(300);
  ClickOn(panel, panel.imgLong);
  ASSERT_TRUE(RowsAre(1)) << "long by the mouse";
  hand.Press("Right");
  EXPECT_TRUE(Eventually([&] { return StandsOn(paused + 1); })) << "a step by key";
  Sleep(500);
  hand.Press("shift+l");
  ASSERT_TRUE(RowsAre(2)) << "offset by key";
  EXPECT_EQ(StoreBars(), paused + 1);

  hand.Activate("MetaStock");
  hand.Press("s");
  ASSERT_TRUE(RowsAre(3)) << "short by a key typed to the chart";
  EXPECT_EQ(Front().rfind("MetaStock", 0), 0U) << "an order leaves the chart in front: " << Front();
  hand.Press("Next");
  EXPECT_TRUE(Eventually([&] { return StandsOn(paused + 31); })) << "30 bars from the chart";
  Sleep(500);
  hand.Activate("MetaStock");
  hand.Press("shift+s");
  ASSERT_TRUE(RowsAre(4));

  hand.Press("space");
  EXPECT_TRUE(Eventually([&] { return StoreBars() >= paused + 33; })) << "plays";
  hand.Press("space");
  Sleep(4000);
  const int end = StoreBars();
  // Play has moved the four rows to the archive.
  ClickOn(panel, panel.ImgShort);
  ASSERT_TRUE(RowsAre(1));
  const auto row = Rows().front();
  EXPECT_EQ(std::get<std::string>(row[0]), "ABC");
  EXPECT_EQ(std::get<std::string>(row[1]), "Short");
  EXPECT_NEAR(std::get<double>(row[2]), MadeBar(end - 1, 0).close, 0.005);

  // Over the results no key deals; once they are closed, keys do again.
  ClickOn(panel, panel.imgGraph);
  ASSERT_TRUE(Eventually([&] { return Front().rfind("Velumar", 0) != 0; })) << "they come to front";
  hand.Press("l");
  Sleep(500);
  EXPECT_EQ(Rows().size(), 1U);
  hand.Press("Escape");
  Sleep(500);
  hand.Activate("Velumar");
  hand.Press("l");
  EXPECT_TRUE(RowsAre(2));
}

// Each second a bar comes and the chart is refreshed, while the trader writes a letter full of the
// keys that deal, step and pause.
TEST_F(TradeE2e, WhatIsTypedInAnotherProgramStaysThere) {
  ClickOn(setup, setup.Image3);
  ASSERT_TRUE(Eventually([&] { return ChartBars() >= kStartBar + 1; }, 60)) << "the chart opens";
  Sleep(1500);
  TypingTarget editor(std::getenv("DISPLAY"));
  const Window notes = editor.Open({.title = "Notes"});
  hand.Activate("Notes");
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
  EXPECT_EQ(Front(), "Notes");

  // The window closes, and the focus falls to one of ours, or to the chart.
  editor.Close(notes);
  Sleep(500);
  hand.Press("l");
  Sleep(1000);
  EXPECT_TRUE(Rows().empty()) << "nobody has turned to the run yet";
  ClickOn(panel, panel.Label4);
  hand.Press("l");
  EXPECT_TRUE(RowsAre(1));
  Sleep(3500);
  hand.Press("s");
  EXPECT_TRUE(RowsAre(2)) << "after a refresh has returned the focus";
}

}  // namespace
}  // namespace velumar
