#include "shell/symbol_catalogue.h"

#include "forms/desktop.h"
#include "support/session_fixture.h"

namespace velumar {
namespace {

class CatalogueTest : public SessionFixture {
 protected:
  CatalogueTest() {
    Form1& form = desktop.form1();
    form.Show();
    form.Combo1.on_click = [this] { catalogue.SymbolChosen(); };
    form.Combo1.on_key_up = [this](int) { catalogue.SymbolTyped(); };
    form.Text3.on_change = [this] { session.DataDir = desktop.form1().Text3.Text(); };
    session.DataDir = data;
    form.cbxPeriod.SetIndex(2);
  }
  std::string Period() { return desktop.form1().cbxPeriod.Text(); }
  Desktop desktop;
  FileImporter importer{cache};
  ImportWindow import{desktop, platform, importer, {}};
  SymbolCatalogue catalogue{session, desktop, platform, cache, import};
};

TEST_F(CatalogueTest, LinesAreSortedAndKeepTheirOwnIntervals) {
  std::filesystem::create_directories(data);
  WriteFile(data + "/MASTER", std::string(53, '\0'));  // no securities
  session.Symbol = "KEPT";
  catalogue.BuildSymbolList();
  EXPECT_EQ(session.Symbol + " " + Period(), "KEPT 30");
  std::filesystem::remove(data + "/MASTER");
  Store("B", IntradayBars(60, 15), 15);
  Store("A", DailyBars(10));
  Store("C", DailyBars(10));
  Store("C", IntradayBars(60, 5), 5);
  catalogue.BuildSymbolList();
  ComboBox& list = desktop.form1().Combo1;
  std::vector<std::string> lines;
  for (const ComboBox::Row& row : list.Rows()) lines.push_back(row.text);
  EXPECT_EQ(lines, (std::vector<std::string>{"A", "B", "C", "C"}));
  EXPECT_EQ(session.PeriodBySymbol, (std::vector<std::string>{"15", "D", "D", "5", ""}));
  EXPECT_EQ(session.Symbol, "A");
  list.UserChoose(1);
  EXPECT_EQ(session.Symbol, "B");
  EXPECT_EQ(Period(), "15");
  list.UserChoose(2);
  EXPECT_EQ(Period(), "D") << "a click takes the clicked line's interval";
  list.UserType(" c ");
  EXPECT_EQ(session.Symbol, "C");
  EXPECT_EQ(Period(), "5") << "typed, the last of equal lines decides";
  EXPECT_EQ(session.SymbolInterval, "5");
  list.UserType("nope");
  EXPECT_EQ(session.Symbol, "NOPE");
  EXPECT_EQ(Period(), "5");
}

TEST_F(CatalogueTest, ADirectoryWithoutDataAsksUntilOneHasDataAndOffersAWayOut) {
  Store("A", DailyBars(10));
  const std::string nowhere = scratch.Sub("nowhere");
  platform.default_data_dir = data;
  session.DataDir = nowhere;
  outside.folders.answers = {"", nowhere, "", "", "", ""};
  outside.boxes.answers = {2, 1};
  catalogue.BuildSymbolList();
  EXPECT_TRUE(outside.folders.answers.empty()) << "asked after the fourth and the sixth dialog";
  EXPECT_EQ(outside.boxes.shown.size(), 6U + 2U);
  EXPECT_EQ(session.Symbol, "A");
  EXPECT_EQ(outside.settings.texts["LastPath"], data);
  desktop.form1().on_close = [&] { desktop.Unload(desktop.form1()); };
  session.DataDir = nowhere;
  outside.folders.answers = {"", ""};
  outside.boxes.answers = {0};
  catalogue.BuildSymbolList();
  EXPECT_FALSE(desktop.Untouched().form1.Loaded());
}

TEST_F(CatalogueTest, ClicksWhileALargeDirectoryIsListed) {
  for (int i = 0; i < 260; ++i) Store("S" + std::to_string(1000 + i), DailyBars(2));
  const std::string other = scratch.Sub("other");
  StoreSecurity(other, {"ZED", "Zed", 60}, IntradayBars(60, 60), cache);
  int pauses = 0;
  outside.events.SetOnPending([&] {
    ++pauses;
    EXPECT_TRUE(catalogue.Building());
  });
  catalogue.BuildSymbolList();
  EXPECT_EQ(pauses, 2);
  EXPECT_EQ(desktop.form1().Combo1.Rows().size(), 260U);
  EXPECT_EQ(desktop.form1().Combo1.Rows().front().note, "S1000 name, daily");
  // A security of the second index can be replayed too.
  CopyIndexes();
  Choose("S1259", "D", MadeDate(1));
  EXPECT_TRUE(working_store.Prepare());
  EXPECT_EQ(StoreBars().size(), 1U);
  EXPECT_TRUE(FilesOf(store).contains("F260.MWD") && !FilesOf(store).contains("F1.DAT"));
  // Another directory, listed inside a wait of the first: the newer one counts.
  outside.events.SetOnPending([&] {
    session.DataDir = other;
    catalogue.BuildSymbolList();
  });
  catalogue.BuildSymbolList();
  EXPECT_EQ(desktop.form1().Combo1.Rows().size(), 1U);
  EXPECT_EQ(session.Symbol, "ZED");
  EXPECT_EQ(Period(), "60");
  // A listing doesn't reload a window that was closed.
  session.DataDir = data;
  outside.events.SetOnPending([&] { desktop.Unload(desktop.Untouched().form1); });
  catalogue.BuildSymbolList();
  EXPECT_FALSE(desktop.Untouched().form1.Loaded());
  EXPECT_FALSE(catalogue.Building());
}

}  // namespace
}  // namespace velumar
