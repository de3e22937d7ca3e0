#include "marketdata/index_copy.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "marketdata/market_files.h"

namespace velumar {

namespace {

std::string Bytes(auto value) {
  std::string bytes(sizeof value, '\0');
  std::memcpy(bytes.data(), &value, sizeof value);
  return bytes;
}

void Put(std::string& file, std::size_t record_size, std::size_t offset, std::int32_t value) {
  for (std::size_t at = record_size; at + record_size <= file.size(); at += record_size) {
    file.replace(at + offset, 4, Bytes(value));
  }
}

constexpr int kFirst = 20050103;
constexpr int kLast = 20301231;
constexpr int kCollected = 20310105;

// In each number format that index files use.
bool TellsDate(const std::string& file) {
  for (const std::int32_t date : {kFirst, kLast, kCollected}) {
    const std::int32_t stored = date - 19000000;
    for (const std::string& word : {Bytes(date), Bytes(static_cast<float>(stored)), Word(stored)}) {
      if (file.find(word) != std::string::npos) return true;
    }
  }
  return false;
}

TEST(IndexCopy, ListsTheSecuritiesAndTellsNoDate) {
  std::vector<Listed> securities;
  for (int number = 1; number <= 3; ++number) {
    securities.push_back({.number = number,
                          .symbol = "S" + std::to_string(number),
                          .bits = 0x7F,
                          .first = kFirst - 19000000,
                          .last = kLast - 19000000});
  }
  constexpr int kTooFew = 1;  // what the headers tell
  const Scratch from;
  std::string emaster = Emaster(securities, kTooFew);
  Put(emaster, 192, 126, kFirst);
  for (Listed& security : securities) security.number += 255;
  std::string xmaster = Xmaster(securities, kTooFew);
  Put(xmaster, 150, 80, kLast);
  Put(xmaster, 150, 104, kCollected);
  for (Listed& security : securities) security.number -= 255;
  from.Write("Master", Master(securities, kTooFew) + "\x02 torn" + Word(kLast - 19000000));
  from.Write("emaster", emaster);
  from.Write("XMASTER", xmaster);
  for (const char* other : {"MASTER.BAK", "EMASTER.new", "F1.DAT", "notes"}) {
    from.Write(other, emaster);
  }
  const Scratch to;
  to.Write("XMASTER", "an old one");
  CopyIndexFiles(from / "", to / "");
  EXPECT_THAT(to.Names(), testing::UnorderedElementsAre("Master", "emaster", "XMASTER"));
  for (const std::string& name : to.Names()) {
    ASSERT_TRUE(TellsDate(from.Read(name))) << name;
    EXPECT_FALSE(TellsDate(to.Read(name))) << name;
    for (const Listed& security : securities) {
      EXPECT_THAT(to.Read(name), testing::HasSubstr(security.symbol)) << name;
    }
  }
  EXPECT_TRUE(ReadBars(to, "S1").empty());
}

}  // namespace

}  // namespace velumar
