#include "marketdata/market_files.h"
#include "marketdata/metalib_writer.h"
#include "support/session_fixture.h"

namespace velumar {
namespace {

struct PrepareStoreTest : SessionFixture {
  // Bars that the store holds after a start at `date`, -1 when it isn't ready.
  int Prepared(const std::string& symbol, const std::string& interval, int date) {
    CopyIndexes();
    Choose(symbol, interval, date);
    if (!working_store.Prepare()) return -1;
    return static_cast<int>(StoreBars().size());
  }
  void ExpectRefused(const char* symbol, const char* interval,
                     const std::vector<std::string>& words) {
    outside.boxes.shown.clear();
    EXPECT_EQ(Prepared(symbol, interval, 20050104), -1) << symbol;
    for (const std::string& word : words) {
      EXPECT_THAT(outside.boxes.shown, ElementsAre(HasSubstr(word)));
    }
  }
};

TEST_F(PrepareStoreTest, CutsFromTheFirstBarOnOrAfterTheDate) {
  Store("ABC", DailyBars(400));
  Store("B251", DailyBars(251));
  Store("ONE", DailyBars(1));
  Store("SIX", DailyBars(6));
  const int after = 20991231;
  EXPECT_EQ(Prepared("ABC", "D", MadeDate(120)), 120);
  EXPECT_EQ(Prepared("ABC", "D", 20000129), 28) << "no bar that day: the next one";
  EXPECT_EQ(Prepared("ABC", "D", MadeDate(0)), 1) << "a run needs at least the first bar";
  EXPECT_EQ(Prepared("ABC", "D", MadeDate(399)), 399);
  // A date after the last bar: 250 bars on, or the middle, a half to the even neighbour.
  EXPECT_EQ(Prepared("ABC", "D", after), 250);
  EXPECT_EQ(Prepared("B251", "D", after), 125);
  EXPECT_EQ(Prepared("ONE", "D", after), 1);
  Store("I30", IntradayBars(100, 30), 30);
  EXPECT_EQ(Prepared("I30", "30", after), 40) << "with the first bar of the day";
  EXPECT_EQ(Prepared("SIX", "D", after), 2);
  EXPECT_TRUE(outside.boxes.shown.empty());
}

TEST_F(PrepareStoreTest, WhatCannotBeReplayedIsRefusedInWords) {
  Store("ABC", DailyBars(40));
  Store("EMPTY", {});
  Store("FITS", DailyBars(32768));
  Store("LONG", DailyBars(32769));
  Store("I120", IntradayBars(60, 120), 120);
  const std::tuple<const char*, const char*, std::vector<std::string>> cases[] = {
      {"EMPTY", "D", {"1720", "EMPTY", "interval D", "no bars", "32768"}},
      {"LONG", "D", {"1720", "LONG", "interval D", "32769 bars", "32768"}},
      {"NONE", "D", {"1701", "NONE"}},
      {"I120", "120", {"1720", "\"120\"", "I120", "D, 5, 10, 15, 30 or 60"}},
  };
  for (const auto& [symbol, interval, words] : cases) ExpectRefused(symbol, interval, words);
  EXPECT_EQ(Prepared("FITS", "D", MadeDate(1)), 1);
}

// Without times the store would keep one bar a day, and bars of later days that come before the
// start's in the file would be in it. A series of unknown minutes is found under any interval.
TEST_F(PrepareStoreTest, FilesOfOtherProgramsThatCannotBeReplayedAreRefusedToo) {
  const Listed lower_case{.symbol = "abc", .fields = 6};
  const Listed unknown{.symbol = "ABC", .frame = 'I', .fields = 6, .minutes = 0};
  const Listed quarters{.symbol = "ABC", .frame = 'I', .fields = 6, .minutes = 15};
  const std::tuple<Listed, std::vector<int>, const char*, const char*> cases[] = {
      {lower_case, {1050103}, "D", "lower case"},
      {unknown, {1050103}, "0", "can't be replayed"},
      {unknown, {1050103}, "15", "minutes of its bars are unknown"},
      {quarters, {1050103, 1050103, 1050104}, "15", "at 20050103 its bars are out of order"},
      {quarters, {1050104, 1050103, 1050105}, "15", "at 20050103 its bars are out of order"},
  };
  for (const auto& [listed, dates, interval, words] : cases) {
    const ScratchFolder other;
    std::vector<std::string> records;
    for (const int date : dates) {
      records.push_back(Word(date));
      for (int price = 0; price < 5; ++price) records.back() += Word(10);
    }
    other.Write("MASTER", Master({listed}));
    other.Write("F1.DAT", DataBytes(6, static_cast<int>(records.size()) + 1, records));
    data = other.Text();
    store = other.Text() + "/Simulate";
    ExpectRefused("ABC", interval, {words});
    EXPECT_FALSE(FilesOf(store).contains("F1.DAT"));
  }
}

TEST_F(PrepareStoreTest, AnotherSecuritysUnreadableFileStopsNoRun) {
  Store("AAA", DailyBars(40));
  Store("ABC", DailyBars(40));
  const std::filesystem::path neighbour = data + "/F1.DAT";
  ASSERT_TRUE(std::filesystem::remove(neighbour));
  std::filesystem::create_directory(neighbour);
  EXPECT_EQ(Prepared("ABC", "D", MadeDate(20)), 20);
  working_store.LoadSeries();
  EXPECT_EQ(session.LastBarIndex, 39);
}

TEST_F(PrepareStoreTest, AStoreInUseIsReportedTwice) {
  Store("ABC", DailyBars(40));
  CopyIndexes();
  MetaLibWriter other(cache);
  other.OpenDirectory(store);
  EXPECT_EQ(Prepared("ABC", "D", 20000110), -1);
  EXPECT_THAT(outside.boxes.shown, ElementsAre("File is in used!!", testing::_));
}

}  // namespace
}  // namespace velumar
