#include "marketdata/market_files.h"

#include <algorithm>
#include <cmath>

#include "marketdata/metalib_reader.h"

namespace velumar {

namespace {

void Put(std::string& bytes, std::size_t offset, std::string_view what) {
  bytes.replace(offset, what.size(), what);
}

void PutNumber(std::string& bytes, std::size_t offset, std::uint32_t value, int size) {
  for (int i = 0; i < size; ++i) bytes[offset + i] = static_cast<char>(value >> (8 * i));
}

std::string Padded(std::string text, std::size_t size, char padding) {
  text.resize(size, padding);
  return text;
}

std::string IeeeWord(float value) { return {reinterpret_cast<const char*>(&value), sizeof value}; }

int HighestNumber(const std::vector<Listed>& securities) {
  int highest = 0;
  for (const Listed& listed : securities) highest = std::max(highest, listed.number);
  return highest;
}

std::string Header(std::size_t size, const std::vector<Listed>& securities, int told) {
  std::string header(size, '\0');
  PutNumber(header, 0, told < 0 ? static_cast<int>(securities.size()) : told, 2);
  PutNumber(header, 2, HighestNumber(securities), 2);
  return header;
}

}  // namespace

std::string Hex(std::string_view digits) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 3) {
    bytes += static_cast<char>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16));
  }
  return bytes;
}

std::string Word(double value) {
  std::string bytes(4, '\0');
  if (value == 0) return bytes;
  int exponent = 0;
  const double mantissa = std::frexp(std::abs(value), &exponent);  // 0.5 <= mantissa < 1
  PutNumber(bytes, 0, static_cast<std::uint32_t>(std::lround(mantissa * 0x1000000)) & 0x7FFFFF, 3);
  if (value < 0) bytes[2] = static_cast<char>(bytes[2] | 0x80);
  bytes[3] = static_cast<char>(exponent + 128);
  return bytes;
}

std::string Master(const std::vector<Listed>& securities, int told) {
  std::string file = Header(53, securities, told);
  for (const Listed& listed : securities) {
    std::string record(53, '\0');
    record[0] = static_cast<char>(listed.number);
    record[1] = 0x65;
    record[3] = static_cast<char>(4 * listed.fields);
    record[4] = static_cast<char>(listed.fields);
    Put(record, 7, Padded(listed.name, 16, ' '));
    Put(record, 25, Word(listed.first) + Word(listed.last));
    record[33] = listed.frame;
    PutNumber(record, 34, listed.minutes, 2);
    Put(record, 36, Padded(listed.symbol, 14, ' '));
    file += record;
  }
  return file;
}

std::string Emaster(const std::vector<Listed>& securities, int told) {
  std::string file = Header(192, securities, told);
  for (const Listed& listed : securities) {
    std::string record(192, '\0');
    Put(record, 0, "30");
    record[2] = static_cast<char>(listed.number);
    record[6] = static_cast<char>(listed.fields);
    record[7] = static_cast<char>(listed.bits);
    Put(record, 11, Padded(listed.symbol, 14, '\0'));
    Put(record, 32, Padded(listed.name, 16, '\0'));
    record[60] = listed.frame;
    PutNumber(record, 62, listed.minutes, 2);
    Put(record, 64, IeeeWord(static_cast<float>(listed.first)));
    Put(record, 72, IeeeWord(static_cast<float>(listed.last)));
    if (listed.name.size() > 16) Put(record, 139, Padded(listed.name, 45, '\0'));
    file += record;
  }
  return file;
}

std::string Xmaster(const std::vector<Listed>& securities, int told) {
  std::string file(150, '\0');
  Put(file, 0, Hex("5D FE 58 4D"));
  const int count = told < 0 ? static_cast<int>(securities.size()) : told;
  PutNumber(file, 10, count, 2);
  PutNumber(file, 14, count, 2);
  PutNumber(file, 18, HighestNumber(securities) + 1, 2);
  for (const Listed& listed : securities) {
    std::string record(150, '\0');
    record[0] = 1;
    Put(record, 1, Padded(listed.symbol, 15, '\0'));
    Put(record, 16, Padded(listed.name, 46, '\0'));
    record[62] = listed.frame;
    PutNumber(record, 63, listed.minutes, 2);
    PutNumber(record, 65, listed.number, 2);
    record[70] = static_cast<char>(listed.bits);
    PutNumber(record, 108, listed.first == 0 ? 0 : listed.first + 19000000, 4);
    PutNumber(record, 116, listed.last == 0 ? 0 : listed.last + 19000000, 4);
    file += record;
  }
  return file;
}

std::string DataBytes(int fields, int told, const std::vector<std::string>& records) {
  std::string file(4 * static_cast<std::size_t>(fields), '\0');
  PutNumber(file, 2, told, 2);
  for (const std::string& record : records) file += record;
  return file;
}

std::string DailyBytes(const std::vector<Bar>& bars) {
  std::vector<std::string> records;
  records.reserve(bars.size());
  for (const Bar& bar : bars) {
    records.push_back(Word(bar.date - 19000000) + Word(bar.open) + Word(bar.high) + Word(bar.low) +
                      Word(bar.close) + Word(bar.volume) + Word(bar.open_interest));
  }
  return DataBytes(7, static_cast<int>(bars.size()) + 1, records);
}

Bar DailyBar(int date, float close) { return TimedBar(date, 0, close); }

Bar TimedBar(int date, int time, float close) {
  return {date, time, close - 1, close + 2, close - 2, close, 1000 * close, 7};
}

std::vector<Bar> ReadBars(const ScratchFolder& directory, std::string_view symbol, int interval) {
  return ReadBars(directory.Text(), std::string(symbol), interval);
}

std::vector<SecurityInfo> SecuritiesIn(const std::string& directory, IndexCache& cache) {
  MetaLibReader reader(cache);
  reader.OpenDirectory(directory);
  std::vector<SecurityInfo> securities;
  while (reader.NextSecurity() > 0) {
    reader.ReadSecurityHeader();
    securities.push_back(reader.Security());
  }
  return securities;
}

std::vector<std::string> ListOf(const std::string& directory, IndexCache& cache) {
  std::vector<std::string> list;
  for (const SecurityInfo& info : SecuritiesIn(directory, cache)) {
    list.push_back(info.symbol + ":" + std::to_string(info.interval) + " F" +
                   std::to_string(info.file_number) + " " + info.name);
  }
  return list;
}

}  // namespace velumar
