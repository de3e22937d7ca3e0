#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <utility>

#include "marketdata/bar.h"
#include "marketdata/index_cache.h"
#include "marketdata/metalib_error.h"
#include "marketdata/number_format.h"
#include "support/matchers.h"
#include "support/scratch.h"

namespace velumar {

// The bytes of a number, as they are in memory.
std::string RawBytes(auto number) {
  return {reinterpret_cast<const char*>(&number), sizeof number};
}

// "5D FE 58 4D" as four bytes.
inline std::string Hex(std::string_view digits) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 3) {
    bytes += static_cast<char>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16));
  }
  return bytes;
}

// Data files and index files, built without the code under test but for the numbers' format.

// Four bytes of the number format of data files.
inline std::string Word(double value) {
  return RawBytes(MbfFromFloat(static_cast<float>(value)).value());
}

using Field = std::pair<std::size_t, std::string>;  // offset and bytes

inline std::string Filled(std::size_t size, const std::vector<Field>& fields) {
  std::string record(size, '\0');
  for (const auto& [offset, bytes] : fields) record.replace(offset, bytes.size(), bytes);
  return record;
}

inline std::string Padded(const std::string& text, std::size_t size) {
  return (text + std::string(size, ' ')).substr(0, size);
}

inline std::string Byte(int value) { return {static_cast<char>(value)}; }
inline std::string Short(int value) { return RawBytes(static_cast<std::uint16_t>(value)); }
inline std::string WholeDate(int stored) { return RawBytes(stored == 0 ? 0 : stored + 19000000); }

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

inline std::string HighestNumber(const std::vector<Listed>& securities, int more = 0) {
  return Short(std::ranges::max(securities, {}, &Listed::number).number + more);
}

inline std::string CountOf(const std::vector<Listed>& securities, int count) {
  return Short(count < 0 ? static_cast<int>(securities.size()) : count);
}

// `count` is the count in the header; -1: the right one.
inline std::string Master(const std::vector<Listed>& securities, int count = -1) {
  std::string file = Filled(53, {{0, CountOf(securities, count) + HighestNumber(securities)}});
  for (const Listed& listed : securities) {
    file += Filled(53, {{0, Byte(listed.number)},
                        {1, Byte(0x65)},
                        {3, Byte(4 * listed.fields) + Byte(listed.fields)},
                        {7, Padded(listed.name, 16)},
                        {25, Word(listed.first) + Word(listed.last)},
                        {33, Byte(listed.frame) + Short(listed.minutes)},
                        {36, Padded(listed.symbol, 14)}});
  }
  return file;
}

inline std::string Emaster(const std::vector<Listed>& securities, int count = -1) {
  std::string file = Filled(192, {{0, CountOf(securities, count) + HighestNumber(securities)}});
  for (const Listed& listed : securities) {
    file += Filled(192, {{0, "30" + Byte(listed.number)},
                         {6, Byte(listed.fields) + Byte(listed.bits)},
                         {11, listed.symbol},
                         {32, listed.name.substr(0, 16)},
                         {60, Byte(listed.frame)},
                         {62, Short(listed.minutes)},
                         {64, RawBytes(static_cast<float>(listed.first))},
                         {72, RawBytes(static_cast<float>(listed.last))},
                         {139, listed.name.size() > 16 ? listed.name : ""}});
  }
  return file;
}

inline std::string Xmaster(const std::vector<Listed>& securities, int count = -1) {
  const std::string records = CountOf(securities, count);
  std::string file = Filled(
      150,
      {{0, Hex("5D FE 58 4D")}, {10, records}, {14, records}, {18, HighestNumber(securities, 1)}});
  for (const Listed& listed : securities) {
    file += Filled(150, {{0, Byte(1) + listed.symbol},
                         {16, listed.name},
                         {62, Byte(listed.frame) + Short(listed.minutes) + Short(listed.number)},
                         {70, Byte(listed.bits)},
                         {108, WholeDate(listed.first)},
                         {116, WholeDate(listed.last)}});
  }
  return file;
}

// A header of `fields` columns with the count `count`, which includes it, and `records`.
inline std::string DataBytes(int fields, int count, const std::vector<std::string>& records) {
  std::string file = Filled(4 * static_cast<std::size_t>(fields), {{2, Short(count)}});
  for (const std::string& record : records) file += record;
  return file;
}

// A correct file of seven columns, or of eight with times.
inline std::string SeriesBytes(int fields, const std::vector<Bar>& bars) {
  std::vector<std::string> records;
  for (const Bar& bar : bars) {
    records.push_back(Word(bar.date - 19000000) + (fields == 8 ? Word(bar.time) : "") +
                      Word(bar.open) + Word(bar.high) + Word(bar.low) + Word(bar.close) +
                      Word(bar.volume) + Word(bar.open_interest));
  }
  return DataBytes(fields, static_cast<int>(bars.size()) + 1, records);
}

inline std::string DailyBytes(const std::vector<Bar>& bars) { return SeriesBytes(7, bars); }
inline std::string IntradayBytes(const std::vector<Bar>& bars) { return SeriesBytes(8, bars); }

inline Bar TimedBar(int date, int time, float close = 10) {
  return {date, time, close - 1, close + 2, close - 2, close, 1000 * close, 7};
}

inline Bar DailyBar(int date, float close = 10) { return TimedBar(date, 0, close); }

// By a new reader with an empty cache.
inline std::vector<Bar> ReadBars(const ScratchFolder& directory, const std::string& symbol = "AAA",
                                 int interval = -1) {
  return ReadBars(directory.Text(), symbol, interval);
}

// A directory, listed with a cache that its writers share.
struct DirectoryTest : testing::Test {
  std::string Text() const { return directory_.Text(); }
  // "AAA:-1 F1 Alpha": symbol, interval, file number and name of each security.
  std::vector<std::string> List() {
    std::vector<std::string> list;
    for (const SecurityInfo& info : SecuritiesOf(Text(), cache_)) {
      list.push_back(info.symbol + ":" + std::to_string(info.interval) + " F" +
                     std::to_string(info.file_number) + " " + info.name);
    }
    return list;
  }

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
