#include <algorithm>

#include "marketdata/data_file.h"
#include "marketdata/market_files.h"
#include "marketdata/metalib_reader.h"

namespace velumar {

namespace {

class DirectoryReading : public DirectoryTest {};

TEST_F(DirectoryReading, EveryRecordLayoutInEveryIndex) {
  // Columns, frame, bits, and a bar with the numbers 1, 2, 3 ... in its columns.
  const std::tuple<int, char, int, Bar> kShapes[] = {
      {4, 'D', 0x0F, {20051107, 0, 0, 2, 3, 4, 0, 0}},
      {5, 'D', 0x1F, {20051107, 0, 0, 2, 3, 4, 5, 0}},
      {6, 'D', 0x3F, {20051107, 0, 1, 2, 3, 4, 5, 0}},
      {7, 'D', 0x7F, {20051107, 0, 1, 2, 3, 4, 5, 6}},
      // Unusable bits mean the usual seven fields.
      {7, 'D', 0x19, {20051107, 0, 1, 2, 3, 4, 5, 6}},
      {7, 'D', 0xFE, {20051107, 0, 1, 2, 3, 4, 5, 6}},
      {7, 'I', 0xBF, {20051107, 93000, 1, 2, 3, 4, 5, 0}},
      {8, 'I', 0xFF, {20051107, 93000, 1, 2, 3, 4, 5, 6}},
  };
  for (const auto& [fields, frame, bits, bar] : kShapes) {
    std::string record = Word(1051107) + (bar.time == 0 ? "" : Word(bar.time));
    for (const float value :
         {bar.open, bar.high, bar.low, bar.close, bar.volume, bar.open_interest}) {
      if (value != 0) record += Word(value);
    }
    const int interval = frame == 'I' ? 15 : -1;
    const Listed low = {.frame = frame, .fields = fields, .minutes = std::max(interval, 0)};
    Listed with_bits = low;
    with_bits.bits = bits;
    Listed bits_alone = with_bits;
    bits_alone.number = 256;
    bits_alone.fields = 0;
    const std::tuple<const char*, std::string, const char*> kIndexes[] = {
        {"MASTER", Master({low}), "F1.DAT"},
        {"EMASTER", Emaster({low}), "F1.DAT"},
        {"EMASTER", Emaster({with_bits}), "F1.DAT"},
        {"XMASTER", Xmaster({bits_alone}), "F256.MWD"}};
    for (const auto& [index, bytes, data] : kIndexes) {
      const ScratchFolder directory;
      directory.Write(index, bytes);
      directory.Write(data, DataBytes(fields, 2, {record}));
      EXPECT_THAT(ReadBars(directory, "AAA", interval), ElementsAre(bar))
          << index << " with bits " << bits;
    }
  }
}

TEST_F(DirectoryReading, CountsAreLimitedToWhatTheFilesHold) {
  constexpr std::size_t kRecord = 28;
  const std::string whole =
      DailyBytes({DailyBar(20050103), DailyBar(20050104), DailyBar(20050105)}).substr(kRecord);
  // The header's count, bytes after the header, and bars.
  const std::tuple<int, std::size_t, std::size_t> kRows[] = {{4, 3 * kRecord, 3},
                                                             {4, 3 * kRecord - 1, 2},
                                                             {2, 3 * kRecord, 1},
                                                             {0, 3 * kRecord, 0},
                                                             {4, 5, 0}};
  for (const auto& [counted, size, bars] : kRows) {
    const ScratchFolder directory;
    directory.Write("MASTER", Master({{}}));
    directory.Write("F1.DAT", DataBytes(7, counted, {whole.substr(0, size)}));
    EXPECT_EQ(ReadBars(directory).size(), bars) << counted << " counted, " << size;
    IndexCache fresh;
    EXPECT_EQ(SecuritiesOf(directory.Text(), fresh)[0].bars, static_cast<int>(bars)) << size;
  }
  directory_.Write("F1.DAT", DataBytes(7, 4, {whole}));
  const DataFile opened(directory_ / "F1.DAT", BarLayout::FromCount(7, false));
  std::filesystem::resize_file(directory_ / "F1.DAT", 3 * kRecord - 1);
  EXPECT_THAT(opened.ReadAll().dates, ElementsAre(20050103)) << "cut by another program since";
}

TEST_F(DirectoryReading, UnusableFilesAreSeriesWithoutBars) {
  directory_.Write("MASTER",
                   Master({{.number = 1, .symbol = "SHORT"},
                           {.number = 2, .symbol = "FOLDER"},
                           {.number = 3, .symbol = "SHAPELESS", .fields = 99},
                           {.number = 4, .symbol = "MISSING", .first = 1050103, .last = 1051107},
                           {.number = 5, .symbol = "DAY", .first = 1050103, .last = 1050103}}));
  directory_.Write("F1.DAT", Hex("00 00 07"));
  std::filesystem::create_directory(directory_ / "F2.DAT");
  directory_.Write("F3.DAT", DailyBytes({DailyBar(20051107)}));
  for (const char* symbol : {"SHORT", "FOLDER", "SHAPELESS", "MISSING"}) {
    EXPECT_TRUE(ReadBars(directory_, symbol).empty()) << symbol;
  }
  const SecurityInfo missing = SecuritiesOf(Text(), cache_)[3];
  EXPECT_EQ(missing.bars, 0);
  EXPECT_EQ(missing.indexed_first_date, 20050103);
  EXPECT_EQ(missing.indexed_last_date, 20051107);
  EXPECT_EQ(SecuritiesOf(Text(), cache_)[4].indexed_first_date, 20050103) << "of a single day";
}

TEST_F(DirectoryReading, NamesMayBeInAnyCaseAndUpperCaseWins) {
  directory_.Write("master", Master({{.number = 12, .symbol = "LOWER"}}));
  directory_.Write("f12.dat", DailyBytes({DailyBar(20051107)}));
  EXPECT_THAT(ReadBars(directory_, "LOWER"), ElementsAre(DailyBar(20051107)));
  directory_.Write("MASTER", Master({{.number = 12, .symbol = "UPPER"}}));
  EXPECT_THAT(List(), ElementsAre("UPPER:-1 F12 Alpha"));
}

TEST_F(DirectoryReading, ThreeIndexesMakeOneList) {
  const std::string long_name = "Alpha and Omega Holdings";
  // MASTER counts more securities than it has; EMASTER ends inside its third record.
  directory_.Write("MASTER", Master({{.number = 2, .symbol = "BBB", .name = "Beta"},
                                     {.number = 0, .symbol = "GONE"},
                                     {.number = 1, .symbol = "AAA", .frame = 'W'}},
                                    40));
  const std::string emaster =
      Emaster({{.number = 1, .symbol = "AAA", .fields = 5, .name = long_name},
               {.number = 9, .symbol = "ONLY", .frame = 'I', .fields = 8, .minutes = 5},
               {.number = 2, .symbol = "BBB", .name = "B"}},
              65535);
  directory_.Write("EMASTER", emaster.substr(0, emaster.size() - 100));
  directory_.Write(
      "XMASTER",
      Xmaster(
          {{.number = 700, .symbol = "CCC", .name = "Caf\xE9", .first = 1980105, .last = 1051107}},
          9));
  const auto list = SecuritiesOf(Text(), cache_);
  EXPECT_THAT(List(), ElementsAre("BBB:-1 F2 Beta", "AAA:-1 F1 " + long_name, "ONLY:5 F9 Alpha",
                                  "CCC:-1 F700 Caf\xC3\xA9"));
  EXPECT_EQ(list[1].fields, 7);
  EXPECT_EQ(list[3].indexed_first_date, 19980105)
      << "a first date after the last is a century late";
  EXPECT_EQ(list[3].indexed_last_date, 20051107);
}

TEST_F(DirectoryReading, AListOfColumnNamesOverridesTheirOrder) {
  directory_.Write("MASTER", Master({{.fields = 5}}));
  directory_.Write("F1.DAT",
                   DataBytes(5, 2, {Word(1) + Word(1051107) + Word(2) + Word(3) + Word(4)}));
  directory_.Write(
      "f1.dop", "\"Close\",2,0\r\n\"Date\",0,0\r\n\"HIGH\",2,0\r\n\"LOW\",2,0\r\n\"VOL\",0,0\r\n");
  EXPECT_THAT(ReadBars(directory_), ElementsAre(Bar{20051107, 0, 0, 2, 3, 1, 4, 0}));
  // Anything but a complete list of known columns leaves the usual order.
  for (const char* unusable : {"", "\"DATE\"\n\"HIGH\"\n\"LOW\"\n\"CLOSE\"\n",
                               "\"DATE\"\n\"HIGH\"\n\"HIGH\"\n\"CLOSE\"\n\"VOL\"\n",
                               "\"DATE\"\n\"HIGH\"\n\"LOW\"\n\"CLOSE\"\n\"MOON\"\n"}) {
    directory_.Write("f1.dop", unusable);
    EXPECT_EQ(ReadBars(directory_).front().volume, 4) << unusable;
    EXPECT_EQ(ReadBars(directory_).front().close, 3) << unusable;
  }
}

TEST_F(DirectoryReading, ADirectoryThatCannotBeReadIsNoEmptyOne) {
  directory_.Write("file", "");
  for (const auto& row : {std::pair("none", "No such file"), {"file", "Not a directory"}}) {
    EXPECT_THAT([&] { DirectoryListing::Read(directory_ / row.first); },
                ThrowsMessage<MetaLibError>(
                    AllOf(HasSubstr(directory_.Sub(row.first)), HasSubstr(row.second))));
  }
}

// One reader goes through several directories and series.
TEST_F(DirectoryReading, AReaderBeginsAnewWithEachDirectoryAndSeries) {
  directory_.Write("MASTER", Master({{.symbol = "AAA"}, {.number = 2, .symbol = "BBB"}}));
  directory_.Write("F1.DAT", DailyBytes({DailyBar(20050103), DailyBar(20050105)}));
  const ScratchFolder other;
  other.Write("MASTER", Master({{.symbol = "CCC"}, {.number = 2, .symbol = "DDD"}}));
  MetaLibReader reader(cache_);
  for (int round = 0; round < 2; ++round) {
    reader.OpenDirectory(Text());
    EXPECT_EQ(ReadSecurities(reader).size(), 2U);
    reader.OpenDirectory(other.Text());
    ASSERT_EQ(reader.NextSecurity(), 1);
    reader.ReadSecurityHeader();
    EXPECT_EQ(reader.SecuritySymbol(), "CCC");
  }
  reader.OpenDirectory(Text());
  reader.SelectSeries("AAA", 1, -1);
  reader.ReadSeries();
  for (const auto& [date, found] : {std::pair("20050104", 20050105), {"20050103", 20050103}}) {
    reader.SeekDate(date, 0);
    EXPECT_EQ(ErrorOf([&] { reader.BarDateAtCursor(); }), MetaLibError::kNoBar) << "not read yet";
    reader.ReadBar();
    EXPECT_EQ(reader.BarDateAtCursor(), found) << date;
  }
  EXPECT_EQ(ErrorOf([&] { reader.SeekDate("20050106", 0); }), MetaLibError::kDateNotFound);
  reader.SelectSeries("BBB", 1, -1);
  EXPECT_EQ(ErrorOf([&] { reader.Bars(); }), MetaLibError::kNoSeries) << "those of AAA";
}

TEST_F(DirectoryReading, MinutesMissingInTheIndexComeFromTheBars) {
  directory_.Write("XMASTER",
                   Xmaster({{.number = 256, .symbol = "AAA", .frame = 'I', .bits = 0xFF},
                            {.number = 257, .symbol = "AAA", .frame = 'I', .bits = 0xFF},
                            {.number = 258, .symbol = "AAA", .frame = 'I', .bits = 0xFF}}));
  directory_.Write("F256.MWD", IntradayBytes({{20050103, 160000},
                                              {20050103, 160000},  // listed once
                                              {20050104, 95500},
                                              {20050104, 101000},
                                              {20050105, 93000},
                                              {20050105, 100000}}));
  directory_.Write("F257.MWD", IntradayBytes({{20050103, 93000}, {20050104, 93000}}));
  EXPECT_THAT(List(), ElementsAre("AAA:15 F256 Alpha", "AAA:0 F257 Alpha", "AAA:0 F258 Alpha"));
  EXPECT_EQ(ReadBars(directory_, "AAA", 15).size(), 5U);
  EXPECT_EQ(ReadBars(directory_, "AAA", 60).size(), 2U);  // the first one of unknown minutes
}

}  // namespace

}  // namespace velumar
