#include "marketdata/index_file.h"

#include <algorithm>

#include "marketdata/market_files.h"

namespace velumar {

namespace {

constexpr int kDate = 20301231;
constexpr int kStoredDate = kDate - 19000000;

// The file with the date in each record.
std::string Dated(std::string file, std::size_t record_size, std::size_t offset) {
  for (std::size_t at = record_size; at < file.size(); at += record_size) {
    file.replace(at + offset, 4, RawBytes(kDate));
  }
  return file;
}

// In any number format of index files.
bool HasDate(const std::string& file) {
  const std::string forms[] = {RawBytes(kDate), RawBytes(static_cast<float>(kStoredDate)),
                               Word(kStoredDate)};
  return std::ranges::any_of(
      forms, [&](const std::string& form) { return file.find(form) != std::string::npos; });
}

TEST(IndexCopy, KeepsTheSecuritiesButNotTheirDates) {
  const std::vector<Listed> listed = {
      {.bits = 0x7F, .first = kStoredDate, .last = kStoredDate},
      {.number = 2, .symbol = "BBB", .bits = 0x7F, .first = kStoredDate, .last = kStoredDate}};
  constexpr int kTooFew = 1;  // the count in the headers
  const ScratchFolder from;
  from.Write("Master", Master(listed, kTooFew) + "\x02 torn" + Word(kStoredDate));
  from.Write("emaster", Dated(Emaster(listed, kTooFew), 192, 126));
  from.Write("XMASTER", Dated(Dated(Xmaster(listed, kTooFew), 150, 80), 150, 104));
  from.Write("MASTER.BAK", Master(listed));
  const ScratchFolder to;
  to.Write("XMASTER", "an old one");
  CopyIndexFiles(from / "", to / "");
  EXPECT_THAT(to.Names(), testing::UnorderedElementsAre("Master", "emaster", "XMASTER"));
  for (const std::string& name : to.Names()) {
    ASSERT_TRUE(HasDate(from.Read(name))) << name;
    EXPECT_FALSE(HasDate(to.Read(name))) << name;
    EXPECT_THAT(to.Read(name),
                testing::AllOf(testing::HasSubstr("AAA"), testing::HasSubstr("BBB")));
  }
}

}  // namespace

}  // namespace velumar
