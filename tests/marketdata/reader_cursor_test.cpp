#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "marketdata/index_cache.h"
#include "marketdata/market_files.h"
#include "marketdata/metalib_reader.h"

namespace velumar {

namespace {

class ReaderCursor : public testing::Test {
 protected:
  ReaderCursor() {
    directory_.Write("MASTER", Master({{.number = 1}, {.number = 2, .symbol = "NONE"}}));
    directory_.Write("F1.DAT",
                     DailyBytes({DailyBar(20050103), DailyBar(20050105), DailyBar(20050110)}));
    reader_.OpenDirectory(directory_.Text());
  }

  void Read(const char* symbol) {
    reader_.SelectSeries(symbol, 1, -1);
    reader_.ReadSeries();
  }

  int DateAfter(const char* sought) {
    reader_.SeekDate(sought, 0);
    reader_.ReadBar();
    return reader_.BarDateAtCursor();
  }

  ScratchFolder directory_;
  IndexCache cache_;
  MetaLibReader reader_{cache_};
};

TEST_F(ReaderCursor, SeeksTheFirstBarOnOrAfterADate) {
  Read("AAA");
  EXPECT_EQ(DateAfter("19000101"), 20050103);
  EXPECT_EQ(DateAfter("20050105"), 20050105);
  EXPECT_EQ(DateAfter("20050106"), 20050110);
  for (const char* sought : {"20050111", "soon", ""}) {
    EXPECT_EQ(ErrorOf([&] { reader_.SeekDate(sought, 0); }), MetaLibError::kDateNotFound) << sought;
  }
  Read("NONE");
  EXPECT_EQ(ErrorOf([&] { reader_.SeekDate("20050103", 0); }), MetaLibError::kDateNotFound);
}

TEST_F(ReaderCursor, MovesInsideTheSeriesAlone) {
  Read("AAA");
  reader_.MoveToEnd();
  EXPECT_EQ(ErrorOf([&] { reader_.ReadBar(); }), MetaLibError::kNoBar);
  reader_.MoveBy(-1);
  EXPECT_EQ(ErrorOf([&] { reader_.BarDateAtCursor(); }), MetaLibError::kNoBar) << "not read yet";
  reader_.ReadBar();
  EXPECT_EQ(reader_.BarDateAtCursor(), 20050110);
  reader_.MoveToStart();
  for (const int bars : {-1, 3}) {
    EXPECT_EQ(ErrorOf([&] { reader_.MoveBy(bars); }), MetaLibError::kNoBar);
  }
}

TEST_F(ReaderCursor, ASeriesThatIsNotThereIsNamed) {
  std::string text;
  EXPECT_EQ(ErrorOf([&] { reader_.SelectSeries("AAA", 0, 15); }, &text),
            MetaLibError::kSeriesNotFound);
  for (const std::string& part :
       {std::string("AAA"), std::string("15 minutes"), directory_.Text()}) {
    EXPECT_THAT(text, testing::HasSubstr(part));
  }
  EXPECT_EQ(ErrorOf([&] { reader_.SelectSeries("aaa", 1, -1); }), MetaLibError::kSeriesNotFound);
}

}  // namespace

}  // namespace velumar
