#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "marketdata/bar.h"
#include "marketdata/index_cache.h"
#include "marketdata/metalib_error.h"
#include "support/scratch.h"

namespace velumar {

// The bytes of a number, as they are in memory.
std::string RawBytes(auto number) {
  return {reinterpret_cast<const char*>(&number), sizeof number};
}

// "5D FE 58 4D" as four bytes.
std::string Hex(std::string_view digits);

// Data files and index files, built without the code under test but for the numbers' format.
std::string Word(double value);  // four bytes of the number format of data files

struct Listed {
  int number = 1;
  std::string symbol = "AAA";
  char frame = 'D';
  int fields = 7;
  int minutes = 0;
  std::string name = "Alpha";
  int bits = 0;
  int first = 0;  // as stored: years count from 1900
  int last = 0;
};
// `count` is the count in the header; -1: the right one.
std::string Master(const std::vector<Listed>& securities, int count = -1);
std::string Emaster(const std::vector<Listed>& securities, int count = -1);
std::string Xmaster(const std::vector<Listed>& securities, int count = -1);

// A header of `fields` columns with the count `count`, which includes it, and `records`.
std::string DataBytes(int fields, int count, const std::vector<std::string>& records);
// A correct file of seven columns, or of eight with times.
std::string SeriesBytes(int fields, const std::vector<Bar>& bars);
inline std::string DailyBytes(const std::vector<Bar>& bars) { return SeriesBytes(7, bars); }
inline std::string IntradayBytes(const std::vector<Bar>& bars) { return SeriesBytes(8, bars); }

Bar DailyBar(int date, float close = 10);
Bar TimedBar(int date, int time, float close = 10);

// By a new reader with an empty cache.
inline std::vector<Bar> ReadBars(const ScratchFolder& directory, const std::string& symbol = "AAA",
                                 int interval = -1) {
  return ReadBars(directory.Text(), symbol, interval);
}

// A directory, listed with a cache that its writers share.
class DirectoryTest : public testing::Test {
 protected:
  std::string Text() const { return directory_.Text(); }
  // "AAA:-1 F1 Alpha": symbol, interval, file number and name of each security.
  std::vector<std::string> List();

  ScratchFolder directory_;
  IndexCache cache_;
};

// The number of the MetaLibError that `act` throws, or 0; its text goes to `text`.
template <typename Act>
int ErrorOf(Act&& act, std::string* text = nullptr) {
  try {
    act();
  } catch (const MetaLibError& error) {
    if (text != nullptr) *text = error.what();
    return error.Number();
  }
  return 0;
}

}  // namespace velumar
