#include "csv/csv_export.h"

#include <array>
#include <charconv>

#include "marketdata/metalib_reader.h"

namespace velumar {

namespace {

template <typename Number>
void Append(std::string& text, Number number) {
  std::array<char, 64> digits;
  const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  text.append(digits.data(), written.ptr);
}

void AppendTime(std::string& text, std::int32_t time) {
  std::string digits;
  Append(digits, time);
  if (time >= 0 && digits.size() < 6) digits.insert(0, 6 - digits.size(), '0');
  text += digits;
}

}  // namespace

std::string CsvOfSeries(std::string_view directory, std::string_view symbol, int interval,
                        IndexCache& cache) {
  MetaLibReader reader(cache);
  reader.OpenDirectory(directory);
  reader.SelectSeries(symbol, interval == -1 ? 1 : 0, interval);
  reader.ReadSeries();
  const std::array columns = {&reader.GetOpens(),   &reader.GetHighs(),
                              &reader.GetLows(),    &reader.GetCloses(),
                              &reader.GetVolumes(), &reader.GetOpenInterests()};
  std::string text = "date,time,open,high,low,close,volume,openinterest\n";
  for (std::size_t i = 0; i < reader.GetDates().size(); ++i) {
    Append(text, reader.GetDates()[i]);
    text += ',';
    if (interval == -1) {
      text += '0';
    } else {
      AppendTime(text, reader.GetTimes()[i]);
    }
    for (const std::vector<float>* column : columns) {
      text += ',';
      Append(text, (*column)[i]);
    }
    text += '\n';
  }
  return text;
}

}  // namespace velumar
