#include "marketdata/market_files.h"

#include <algorithm>

#include "marketdata/metalib_reader.h"
#include "marketdata/number_format.h"

namespace velumar {

namespace {

using Field = std::pair<std::size_t, std::string>;  // offset and bytes

std::string Filled(std::size_t size, const std::vector<Field>& fields) {
  std::string record(size, '\0');
  for (const auto& [offset, bytes] : fields) record.replace(offset, bytes.size(), bytes);
  return record;
}

std::string Padded(const std::string& text, std::size_t size, char padding) {
  return (text + std::string(size, padding)).substr(0, size);
}

std::string Byte(int value) { return {static_cast<char>(value)}; }
std::string Short(int value) { return RawBytes(static_cast<std::uint16_t>(value)); }
std::string WholeDate(int stored) { return RawBytes(stored == 0 ? 0 : stored + 19000000); }

std::string HighestNumber(const std::vector<Listed>& securities, int more = 0) {
  return Short(std::ranges::max(securities, {}, &Listed::number).number + more);
}

std::string CountOf(const std::vector<Listed>& securities, int count) {
  return Short(count < 0 ? static_cast<int>(securities.size()) : count);
}

}  // namespace

std::string Hex(std::string_view digits) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 3) {
    bytes += static_cast<char>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16));
  }
  return bytes;
}

std::string Word(double value) { return RawBytes(MbfFromFloat(static_cast<float>(value)).value()); }

std::string Master(const std::vector<Listed>& securities, int count) {
  std::string file = Filled(53, {{0, CountOf(securities, count) + HighestNumber(securities)}});
  for (const Listed& listed : securities) {
    file += Filled(53, {{0, Byte(listed.number)},
                        {1, Byte(0x65)},
                        {3, Byte(4 * listed.fields) + Byte(listed.fields)},
                        {7, Padded(listed.name, 16, ' ')},
                        {25, Word(listed.first) + Word(listed.last)},
                        {33, Byte(listed.frame) + Short(listed.minutes)},
                        {36, Padded(listed.symbol, 14, ' ')}});
  }
  return file;
}

std::string Emaster(const std::vector<Listed>& securities, int count) {
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

std::string Xmaster(const std::vector<Listed>& securities, int count) {
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

std::string DataBytes(int fields, int count, const std::vector<std::string>& records) {
  std::string file = Filled(4 * static_cast<std::size_t>(fields), {{2, Short(count)}});
  for (const std::string& record : records) file += record;
  return file;
}

std::string SeriesBytes(int fields, const std::vector<Bar>& bars) {
  std::vector<std::string> records;
  for (const Bar& bar : bars) {
    records.push_back(Word(bar.date - 19000000) + (fields == 8 ? Word(bar.time) : "") +
                      Word(bar.open) + Word(bar.high) + Word(bar.low) + Word(bar.close) +
                      Word(bar.volume) + Word(bar.open_interest));
  }
  return DataBytes(fields, static_cast<int>(bars.size()) + 1, records);
}

Bar DailyBar(int date, float close) { return TimedBar(date, 0, close); }

Bar TimedBar(int date, int time, float close) {
  return {date, time, close - 1, close + 2, close - 2, close, 1000 * close, 7};
}

std::vector<std::string> DirectoryTest::List() {
  std::vector<std::string> list;
  for (const SecurityInfo& info : SecuritiesOf(Text(), cache_)) {
    list.push_back(info.symbol + ":" + std::to_string(info.interval) + " F" +
                   std::to_string(info.file_number) + " " + info.name);
  }
  return list;
}

}  // namespace velumar
