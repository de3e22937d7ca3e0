#include <algorithm>

#include "forms/desktop.h"
#include "marketdata/market_files.h"
#include "shell/start_days.h"
#include "shell/symbol_catalogue.h"
#include "support/session_fixture.h"

namespace velumar {
namespace {

struct CatalogueTest : SessionFixture {
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
  Store("low", DailyBars(10));
  catalogue.BuildSymbolList();
  ComboBox& list = desktop.form1().Combo1;
  std::string lines;
  for (const ComboBox::Row& row : list.Rows()) lines += row.text;
  EXPECT_EQ(lines, "ABCClow");
  EXPECT_THAT(session.PeriodBySymbol, ElementsAre("15", "D", "D", "5", "D", ""));
  EXPECT_EQ(session.Symbol, "A");
  list.UserChoose(1);
  EXPECT_EQ(session.Symbol + " " + Period(), "B 15");
  list.UserChoose(2);
  EXPECT_EQ(Period(), "D") << "a click takes the clicked line's interval";
  list.UserChoose(4);
  EXPECT_EQ(session.Symbol, "LOW");
  list.UserType(" c ");
  EXPECT_EQ(session.Symbol, "C");
  EXPECT_EQ(Period(), "5") << "typed, the last of equal lines decides";
  EXPECT_EQ(session.SymbolInterval, "5");
  list.UserType("nope");
  EXPECT_EQ(session.Symbol + " " + Period(), "NOPE 5");
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
  std::vector<Listed> full;
  for (int i = 0; i < 255; ++i) {
    const std::string symbol = "S" + std::to_string(1000 + i);
    full.push_back({.number = i + 1, .symbol = symbol, .name = symbol + " name"});
  }
  std::filesystem::create_directory(data);
  WriteFile(data + "/MASTER", Master(full));
  for (int i = 1255; i < 1260; ++i) Store("S" + std::to_string(i), DailyBars(2));
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
  // A data file that is read for the interval of its bars, and can't be.
  full[149] = {.number = 150, .symbol = "GONE", .frame = 'I', .fields = 8};
  session.DataDir = scratch.Sub("broken");
  std::filesystem::create_directory(session.DataDir);
  WriteFile(session.DataDir + "/MASTER", Master(full));
  WriteFile(session.DataDir + "/F150.DAT", IntradayBytes({{20050103, 93000}}));
  outside.events.SetOnPending([&] {
    std::filesystem::remove(session.DataDir + "/F150.DAT");
    std::filesystem::create_directory(session.DataDir + "/F150.DAT");
  });
  catalogue.BuildSymbolList();
  EXPECT_EQ(desktop.form1().Combo1.Rows().size(), 149U) << "those before it stay listed";
  session.DataDir = data;
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

std::vector<std::int32_t> Days(int bars, int bars_a_day = 1) {
  std::vector<std::int32_t> days;
  for (int bar = 0; bar < bars; ++bar) days.push_back(MadeDate(bar / bars_a_day));
  return days;
}

TEST(StartDays, FirstAndLastLeaveARunBarsBeforeItsStart) {
  std::mt19937_64 random(1);
  for (const std::vector<std::int32_t>& days : {Days(0), Days(1), Days(20, 20)}) {
    for (const DayChoice choice : {DayChoice::kFirst, DayChoice::kLast, DayChoice::kRandom}) {
      EXPECT_EQ(StartDay(days, choice, random), std::nullopt) << "one day of " << days.size();
    }
  }
  EXPECT_EQ(StartDay(Days(2), DayChoice::kFirst, random), MadeDate(1));
  EXPECT_EQ(StartDay(Days(2), DayChoice::kLast, random), MadeDate(1));
  EXPECT_EQ(StartDay(Days(60, 20), DayChoice::kFirst, random), MadeDate(1));
  EXPECT_EQ(StartDay(Days(60, 20), DayChoice::kLast, random), MadeDate(2));
}

TEST(StartDays, RandomLeavesHistoryAndFutureWhereTheSeriesHasThem) {
  std::mt19937_64 random(2);
  for (const int bars_a_day : {1, 20}) {
    for (const int bars : {2 * bars_a_day, 340, 350, 360, 2000}) {
      const std::vector<std::int32_t> days = Days(bars, bars_a_day);
      std::ptrdiff_t lowest = bars;
      std::ptrdiff_t highest = 0;
      for (int i = 0; i < 2000; ++i) {
        const std::int32_t day = *StartDay(days, DayChoice::kRandom, random);
        const std::ptrdiff_t bar = std::ranges::find(days, day) - days.begin();
        lowest = std::min(lowest, bar);
        highest = std::max(highest, bar);
      }
      EXPECT_GE(lowest, bars >= 400 ? 250 : 1) << bars;
      EXPECT_LE(highest, bars >= 400 ? bars - 101 : bars - 1) << bars;
    }
  }
}

}  // namespace
}  // namespace velumar
