#include "marketdata/directory_editor.h"

#include <algorithm>
#include <limits>

#include "marketdata/index_file.h"
#include "marketdata/market_files.h"

namespace velumar {

namespace {

struct DirectoryEditor : DirectoryTest {
  void Store(const NewSecurity& security, const std::vector<Bar>& bars) {
    StoreSecurity(Text(), security, bars, cache_);
  }
};

TEST_F(DirectoryEditor, ANewDirectoryGetsBothIndexes) {
  const std::string path = Text() + "\\new\\set";
  const std::vector<Bar> intraday = {TimedBar(20050104, 93000), TimedBar(20050103, 160000)};
  StoreSecurity(path, {"AAA", "Alpha", -1}, {DailyBar(20050103)}, cache_);
  StoreSecurity(path, {"AAA", "Caf\xC3\xA9", 15}, intraday, cache_);
  StoreSecurity(path, {"FOURTEEN CHARS", "", 1440}, {}, cache_);
  EXPECT_TRUE(ReadBars(path, "FOURTEEN CHARS", 1440).empty());
  EXPECT_THAT(ReadBars(path, "AAA", -1), ElementsAre(DailyBar(20050103)));
  EXPECT_THAT(ReadBars(path, "AAA", 15), ElementsAre(intraday[1], intraday[0]));
  for (const char* index : {"MASTER", "EMASTER"}) {
    const ScratchFolder alone;
    const std::filesystem::path from = directory_ / "new/set";
    std::filesystem::copy_file(from / index, alone / index);
    std::filesystem::copy_file(from / "F2.DAT", alone / "F2.DAT");
    EXPECT_EQ(ReadBars(alone, "AAA", 15).size(), 2U) << index;
  }
}

TEST_F(DirectoryEditor, OnlyExistingIndexesGrow) {
  std::string emaster = Emaster({{.number = 3, .symbol = "OLD", .bits = 0x7F}});
  emaster[20] = 'S';         // bytes of other programs, in the header
  emaster[192 + 185] = '*';  // and in a record
  directory_.Write("emaster", emaster + "torn");
  Store({"NEW", "A name of more than sixteen", 5}, {TimedBar(20050103, 93000)});
  EXPECT_THAT(directory_.Names(), ElementsAre("emaster", "f4.dat"));
  EXPECT_THAT(List(), ElementsAre("OLD:-1 F3 Alpha", "NEW:5 F4 A name of more than sixteen"));
  Store({"OLD", "", -1}, {});
  EXPECT_EQ(directory_.Read("emaster").substr(4, 2 * 192 - 4), emaster.substr(4));
  Store({"NEW", "Short", 5}, {});
  EXPECT_THAT(List(), ElementsAre("OLD:-1 F3 Alpha", "NEW:5 F4 Short"));
  const ScratchFolder high;
  high.Write("XMASTER", Xmaster({{.number = 300, .symbol = "OLD"}}));
  StoreSecurity(high.Text(), {"NEW", "New", 5},
                {TimedBar(20050103, 160000), TimedBar(20050103, 93000)}, cache_);
  EXPECT_THAT(high.Names(), ElementsAre("F301.MWD", "XMASTER"));
  // Date and time of the first bar, date of the last.
  EXPECT_EQ(high.Read("XMASTER").substr(2 * 150 + 108, 12),
            Hex("B7 F0 31 01 48 6B 01 00 B7 F0 31 01"));
}

TEST_F(DirectoryEditor, ReplacingKeepsTheFileAndWideningTakesANewOne) {
  directory_.Write("MASTER", Master({{.number = 1, .symbol = "WIDE"},
                                     {.number = 2, .symbol = "SLIM", .fields = 5},
                                     {.number = 3, .symbol = "DAY", .frame = 'I', .minutes = 60}}));
  directory_.Write("EMASTER", Emaster({{.number = 1, .symbol = "WIDE"},
                                       {.number = 2, .symbol = "SLIM", .fields = 5}}));
  directory_.Write("F2.DAT", DataBytes(5, 1, {}));
  directory_.Write("F2.DOP", "\"DATE\"\n\"HIGH\"\n\"LOW\"\n\"CLOSE\"\n\"VOL\"\n");
  directory_.Write("F4.DAT", "nobody knows whose");
  for (const char* symbol : {"WIDE", "SLIM"}) {
    Store({symbol, "Name", -1}, {DailyBar(20050103), DailyBar(20050104)});
    EXPECT_THAT(ReadBars(directory_, symbol), ElementsAre(DailyBar(20050103), DailyBar(20050104)));
  }
  Store({"DAY", "Name", 60}, {TimedBar(20050103, 93000)});
  EXPECT_THAT(ReadBars(directory_, "DAY", 60), ElementsAre(TimedBar(20050103, 93000)));
  EXPECT_THAT(List(), ElementsAre("WIDE:-1 F1 Name", "SLIM:-1 F5 Name", "DAY:60 F6 Name"));
  EXPECT_THAT(directory_.Names(),
              ElementsAre("EMASTER", "F1.DAT", "F4.DAT", "F5.DAT", "F6.DAT", "MASTER"));
}

TEST_F(DirectoryEditor, ReplacingLeavesTheBarsOfASecurityWithTheSameFile) {
  directory_.Write("MASTER", Master({{.symbol = "ONE"}, {.symbol = "TWO"}}));
  directory_.Write("F1.DAT", DailyBytes({DailyBar(20050103)}));
  Store({"ONE", "", -1}, {DailyBar(20050104)});
  EXPECT_THAT(ReadBars(directory_, "ONE"), ElementsAre(DailyBar(20050104)));
  EXPECT_THAT(ReadBars(directory_, "TWO"), ElementsAre(DailyBar(20050103)));
}

TEST_F(DirectoryEditor, XmasterFollowsTheLastNumberOfMaster) {
  std::vector<Listed> full;
  for (int i = 1; i <= 252; ++i) {
    full.push_back(
        {.number = i + (i > 99 ? 1 : 0), .symbol = "S" + std::to_string(i), .fields = 5});
  }
  directory_.Write("MASTER", Master(full));
  directory_.Write("EMASTER", Emaster(full));
  for (const char* symbol : {"A", "B", "GAP", "HIGH", "NEXT"}) {
    Store({symbol, "", -1}, {DailyBar(20050103)});
  }
  Store({"S7", "", -1}, {DailyBar(20050104)});  // wider, so it needs a new number too
  const auto list = List();
  ASSERT_EQ(list.size(), 257U);
  EXPECT_THAT(std::vector(list.begin() + 251, list.end()),
              ElementsAre("A:-1 F254 A", "B:-1 F255 B", "GAP:-1 F100 GAP", "HIGH:-1 F256 HIGH",
                          "NEXT:-1 F257 NEXT", "S7:-1 F258 Alpha"));
  EXPECT_EQ(directory_.Read("XMASTER").substr(0, 20),
            Hex("5D FE 58 4D 00 00 00 00 00 00 03 00 00 00 03 00 00 00 03 01"));
  EXPECT_EQ(directory_.Read("MASTER").substr(0, 4), Hex("FE 00 FF 00"));
  EXPECT_THAT(ReadBars(directory_, "S7"), ElementsAre(DailyBar(20050104)));
}

TEST_F(DirectoryEditor, EachSecurityOfAFailedGroupIsReported) {
  Store({"OLD", "", -1}, {DailyBar(20050103)});
  const auto before = FilesOf(Text());
  std::filesystem::create_directories(directory_ / "MASTER.new/in the way");
  std::vector<NewSeries> all;
  for (const char* symbol : {"AAA", "BBB"}) all.push_back({{symbol, "", -1}, {}});
  const auto problems = HeldDirectory(Text()).Store(std::move(all), cache_);
  ASSERT_EQ(problems.size(), 2U);
  EXPECT_TRUE(problems[0].has_value() && problems[1].has_value());
  EXPECT_EQ(FilesOf(Text()), before);
}

TEST_F(DirectoryEditor, UnstorableValuesAreNamedAndNothingIsCreated) {
  Bar tiny = DailyBar(20050104);
  tiny.close = std::numeric_limits<float>::denorm_min();
  const std::tuple<NewSecurity, Bar, std::string> kRows[] = {
      {{"A\nA", "", -1}, DailyBar(20050103), "symbol"},
      {{"AAA", "\xE4\xB8\xAD", -1}, DailyBar(20050103), "\xE4\xB8\xAD"},
      {{"FIFTEEN LETTERS", "", -1}, DailyBar(20050103), "symbol"},
      {{"AAA", "", 0}, DailyBar(20050103), "interval"},
      {{"AAA", "", -1}, tiny, "close"},
      {{"AAA", "", -1}, TimedBar(20050103, 93000), "time"},
  };
  for (const auto& row : kRows) {
    const std::string& part = std::get<std::string>(row);
    std::string text;
    const auto store = [&] {
      StoreSecurity(Text() + "/new", std::get<NewSecurity>(row), {std::get<Bar>(row)}, cache_);
    };
    EXPECT_EQ(ErrorOf(store, &text), MetaLibError::kNotStorable) << part;
    EXPECT_THAT(text, HasSubstr(part));
  }
  EXPECT_THAT(directory_.Names(), ElementsAre());
}

// The file with a date in each record, where only some programs write it.
std::string Dated(std::string file, std::size_t record_size, std::size_t offset) {
  for (std::size_t at = record_size; at < file.size(); at += record_size) {
    file.replace(at + offset, 4, RawBytes(20301231));
  }
  return file;
}

TEST(IndexCopy, KeepsTheSecuritiesButNotTheirDates) {
  const std::vector<Listed> undated = {{.bits = 0x7F}, {.number = 2, .symbol = "BBB"}};
  std::vector<Listed> listed = undated;
  for (Listed& one : listed) one.first = (one.last = 1301231) - 1;
  constexpr int kTooFew = 1;  // the count in the headers
  const ScratchFolder from;
  from.Write("Master", Master(listed, kTooFew) + "\x02 torn" + Word(1301231));
  from.Write("emaster", Dated(Emaster(listed, kTooFew), 192, 126));
  from.Write("XMASTER", Dated(Dated(Xmaster(listed, kTooFew), 150, 80), 150, 104));
  from.Write("MASTER.BAK", Master(listed));
  const ScratchFolder to;
  to.Write("XMASTER", "an old one");
  CopyIndexFiles(from / "", to / "");
  EXPECT_THAT(to.Names(), testing::UnorderedElementsAre("Master", "emaster", "XMASTER"));
  EXPECT_EQ(to.Read("Master"), Master(undated, kTooFew));
  EXPECT_EQ(to.Read("emaster"), Emaster(undated, kTooFew));
  EXPECT_EQ(to.Read("XMASTER"), Xmaster(undated, kTooFew));
}

}  // namespace

}  // namespace velumar
