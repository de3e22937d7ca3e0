#include <fstream>

#include "marketdata/market_files.h"
#include "marketdata/metalib_writer.h"
#include "support/session_fixture.h"

namespace velumar {
namespace {

class PrepareStoreTest : public SessionFixture {
 protected:
  // Bars that the store holds after a start at `date`, -1 when it isn't ready.
  int Prepared(const std::string& symbol, const std::string& interval, int date) {
    CopyIndexes();
    Choose(symbol, interval, date);
    if (working_store.PrepareStore() == 0) return -1;
    return static_cast<int>(StoreBars(interval == "D" ? -1 : std::stoi(interval)).size());
  }
};

TEST_F(PrepareStoreTest, CutsFromTheFirstBarOnOrAfterTheDate) {
  Store("ABC", DailyBars(400));
  Store("B252", DailyBars(252));
  Store("B251", DailyBars(251));
  Store("B101", DailyBars(101));
  Store("B4", DailyBars(4));
  Store("ONE", DailyBars(1));
  const int behind = 20991231;
  EXPECT_EQ(Prepared("ABC", "D", MadeDate(120)), 120);
  EXPECT_EQ(Prepared("ABC", "D", 20000129), 28) << "no bar that day: the next one";
  EXPECT_EQ(Prepared("ABC", "D", MadeDate(0)), 1) << "a run stands on the first bar at least";
  EXPECT_EQ(Prepared("ABC", "D", 19000101), 1);
  EXPECT_EQ(Prepared("ABC", "D", MadeDate(399)), 399);
  // A date behind the last bar: 250 bars on, or the middle, a half to the even neighbour.
  EXPECT_EQ(Prepared("ABC", "D", behind), 250);
  EXPECT_EQ(Prepared("B252", "D", behind), 250);
  EXPECT_EQ(Prepared("B251", "D", behind), 125);
  EXPECT_EQ(Prepared("B101", "D", behind), 50);
  EXPECT_EQ(Prepared("B4", "D", behind), 2) << "half of 3 goes to 2";
  EXPECT_EQ(Prepared("ONE", "D", behind), 1);
  EXPECT_TRUE(outside.boxes.shown.empty());
}

TEST_F(PrepareStoreTest, AnIntradayRunStartsWithAWholeDay) {
  Store("ABC", IntradayBars(100, 15), 15);
  EXPECT_EQ(Prepared("ABC", "15", MadeDate(2)), 40);
  EXPECT_EQ(StoreBars(15).back().date, MadeDate(1));
}

TEST_F(PrepareStoreTest, WhatCannotBeReplayedIsRefusedInWords) {
  Store("ABC", DailyBars(40));
  Store("EMPTY", {});
  Store("LONG", DailyBars(32769));
  Store("I120", IntradayBars(60, 120), 120);
  const struct {
    const char* symbol;
    const char* interval;
    std::vector<std::string> words;
  } cases[] = {
      {"EMPTY", "D", {"EMPTY", "interval D", "no bars", "32768"}},
      {"LONG", "D", {"LONG", "interval D", "32769 bars", "32768"}},
      {"NONE", "D", {"1701", "NONE"}},
      {"ABC", "60", {"1701", "ABC", "60"}},
      {"I120", "120", {"1720", "\"120\"", "I120", "D, 5, 10, 15, 30 or 60"}},
  };
  for (const auto& c : cases) {
    outside.boxes.shown.clear();
    EXPECT_EQ(Prepared(c.symbol, c.interval, 20000201), -1) << c.symbol;
    ASSERT_EQ(outside.boxes.shown.size(), 1U) << c.symbol;
    for (const std::string& word : c.words) {
      EXPECT_THAT(outside.boxes.shown[0], testing::HasSubstr(word));
    }
  }
}

TEST_F(PrepareStoreTest, AStoreInUseIsToldTwice) {
  Store("ABC", DailyBars(40));
  CopyIndexes();
  IndexCache others;
  MetaLibWriter other(others);
  other.OpenDirectory(store);
  EXPECT_EQ(Prepared("ABC", "D", 20000110), -1);
  ASSERT_EQ(outside.boxes.shown.size(), 2U);
  EXPECT_EQ(outside.boxes.shown[0], "File is in used!!");
}

TEST_F(PrepareStoreTest, ASymbolInLowerCaseIsNamedAsTheReason) {
  Store("ABC", DailyBars(40));
  // A directory of another program's making.
  for (const char* name : {"MASTER", "EMASTER"}) {
    const std::filesystem::path file = std::filesystem::path(data) / name;
    std::string bytes(std::filesystem::file_size(file), '\0');
    std::fstream stream(file, std::ios::in | std::ios::out | std::ios::binary);
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    for (std::size_t at = bytes.find("ABC"); at != std::string::npos;
         at = bytes.find("ABC", at + 1)) {
      bytes.replace(at, 3, "abc");
    }
    stream.seekp(0);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }
  EXPECT_EQ(Prepared("ABC", "D", 20000110), -1);
  ASSERT_EQ(outside.boxes.shown.size(), 1U);
  EXPECT_THAT(outside.boxes.shown[0], testing::HasSubstr("lower case"));
}

// Nothing tells the interval of a single bar. The library finds the series under any interval.
TEST_F(PrepareStoreTest, ASeriesOfUnknownMinutesIsNotReplayed) {
  const Scratch other;
  other.Write("MASTER", Master({{.symbol = "ABC", .frame = 'I', .fields = 6, .minutes = 0}}));
  other.Write(
      "F1.DAT",
      DataBytes(6, 4, {Word(1050103) + Word(10) + Word(10) + Word(10) + Word(10) + Word(10)}));
  data = other.Text();
  store = other.Text() + "/Simulate";
  for (const char* interval : {"0", "15"}) {
    outside.boxes.shown.clear();
    EXPECT_EQ(Prepared("ABC", interval, 20050104), -1);
    EXPECT_THAT(outside.boxes.shown, testing::ElementsAre(testing::StartsWith("1720\r")));
  }
}

// None but their places tell its bars apart: the store would keep one a day, and bars of later days
// that stand before the start's would be in it.
TEST_F(PrepareStoreTest, AnIntradayFileWithoutTimesIsNotReplayed) {
  for (const std::vector<int>& dates :
       {std::vector{1050103, 1050103, 1050104}, std::vector{1050104, 1050103, 1050105}}) {
    const Scratch other;
    other.Write("MASTER", Master({{.symbol = "ABC", .frame = 'I', .fields = 6, .minutes = 15}}));
    std::vector<std::string> records;
    for (const int date : dates) {
      records.push_back(Word(date));
      for (int price = 0; price < 5; ++price) records.back() += Word(10);
    }
    other.Write("F1.DAT", DataBytes(6, 4, records));
    EXPECT_EQ(ReadBars(other, "ABC", 15).size(), 3);
    data = other.Text();
    store = other.Text() + "/Simulate";
    outside.boxes.shown.clear();
    EXPECT_EQ(Prepared("ABC", "15", 20050104), -1);
    ASSERT_EQ(outside.boxes.shown.size(), 1U);
    EXPECT_THAT(outside.boxes.shown[0], testing::HasSubstr("20050103 without a time"));
    EXPECT_TRUE(ReadBars(store, "ABC", 15).empty());
  }
}

}  // namespace
}  // namespace velumar
