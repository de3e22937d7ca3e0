#include "marketdata/index_file.h"

#include <algorithm>

#include "marketdata/market_files.h"

namespace velumar {

namespace {

constexpr int kFirst = 20050103;
constexpr int kLast = 20301231;

// The file with the last date in each record.
std::string Dated(std::string file, std::size_t record_size, std::size_t offset) {
  for (std::size_t at = record_size; at < file.size(); at += record_size) {
    file.replace(at + offset, 4, RawBytes(kLast));
  }
  return file;
}

// In any number format of index files.
bool HasDate(const std::string& file, int date) {
  const int stored = date - 19000000;
  const std::string forms[] = {RawBytes(date), RawBytes(static_cast<float>(stored)), Word(stored)};
  return std::ranges::any_of(
      forms, [&](const std::string& form) { return file.find(form) != std::string::npos; });
}

TEST(IndexCopy, KeepsTheSecuritiesButNotTheirDates) {
  const Listed one = {.bits = 0x7F, .first = kFirst - 19000000, .last = kLast - 19000000};
  std::vector<Listed> listed = {one, one};
  listed[1].number = 2;
  listed[1].symbol = "BBB";
  constexpr int kTooFew = 1;  // the count in the headers
  const ScratchFolder from;
  from.Write("Master", Master(listed, kTooFew) + "\x02 torn" + Word(one.last));
  from.Write("emaster", Dated(Emaster(listed, kTooFew), 192, 126));
  from.Write("XMASTER", Dated(Dated(Xmaster(listed, kTooFew), 150, 80), 150, 104));
  from.Write("MASTER.BAK", Master(listed));
  const ScratchFolder to;
  to.Write("XMASTER", "an old one");
  CopyIndexFiles(from / "", to / "");
  EXPECT_THAT(to.Names(), testing::UnorderedElementsAre("Master", "emaster", "XMASTER"));
  for (const std::string& name : to.Names()) {
    for (const int date : {kFirst, kLast}) {
      ASSERT_TRUE(HasDate(from.Read(name), date)) << name;
      EXPECT_FALSE(HasDate(to.Read(name), date)) << name;
    }
    EXPECT_THAT(to.Read(name),
                testing::AllOf(testing::HasSubstr("AAA"), testing::HasSubstr("BBB")));
  }
}

}  // namespace

}  // namespace velumar
