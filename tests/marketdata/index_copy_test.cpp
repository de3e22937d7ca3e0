#include "marketdata/index_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "marketdata/market_files.h"

namespace velumar {

namespace {

std::string RawBytes(auto value) {
  std::string bytes(sizeof value, '\0');
  std::memcpy(bytes.data(), &value, sizeof value);
  return bytes;
}

// Into each record.
std::string WithNumber(std::string file, std::size_t record_size, std::size_t offset, int number) {
  for (std::size_t at = record_size; at < file.size(); at += record_size) {
    file.replace(at + offset, 4, RawBytes(number));
  }
  return file;
}

constexpr int kFirst = 20050103;
constexpr int kLast = 20301231;
constexpr int kCollected = 20310105;

// In each number format that index files use.
bool HoldsDate(const std::string& file) {
  for (const std::int32_t date : {kFirst, kLast, kCollected}) {
    const std::int32_t stored = date - 19000000;
    for (const std::string& word :
         {RawBytes(date), RawBytes(static_cast<float>(stored)), Word(stored)}) {
      if (file.find(word) != std::string::npos) return true;
    }
  }
  return false;
}

TEST(IndexCopy, ListsTheSecuritiesWithoutTheirDates) {
  const Listed one = {.bits = 0x7F, .first = kFirst - 19000000, .last = kLast - 19000000};
  Listed two = one;
  two.number = 2;
  two.symbol = "BBB";
  constexpr int kTooFew = 1;  // the count in the headers
  const ScratchFolder from;
  from.Write("Master", Master({one, two}, kTooFew) + "\x02 torn" + Word(kLast - 19000000));
  from.Write("emaster", WithNumber(Emaster({one, two}, kTooFew), 192, 126, kFirst));
  const std::string xmaster = WithNumber(Xmaster({one, two}, kTooFew), 150, 80, kLast);
  from.Write("XMASTER", WithNumber(xmaster, 150, 104, kCollected));
  for (const char* other : {"MASTER.BAK", "EMASTER.new", "F1.DAT", "notes"}) {
    from.Write(other, xmaster);
  }
  const ScratchFolder to;
  to.Write("XMASTER", "an old one");
  CopyIndexFiles(from / "", to / "");
  EXPECT_THAT(to.Names(), testing::UnorderedElementsAre("Master", "emaster", "XMASTER"));
  for (const std::string& name : to.Names()) {
    ASSERT_TRUE(HoldsDate(from.Read(name))) << name;
    EXPECT_FALSE(HoldsDate(to.Read(name))) << name;
    EXPECT_THAT(to.Read(name),
                testing::AllOf(testing::HasSubstr("AAA"), testing::HasSubstr("BBB")));
  }
}

}  // namespace

}  // namespace velumar
