#include "import/csv_export.h"

#include <array>
#include <charconv>

#include "marketdata/metalib_reader.h"

namespace velumar {

namespace {

// The shortest decimal that reads back as the same float.
std::string ShortestText(float number) {
  std::array<char, 64> digits;
  return {digits.data(), std::to_chars(digits.begin(), digits.end(), number).ptr};
}

std::string TimeText(std::int32_t time) {
  std::string digits = std::to_string(time);
  if (time >= 0 && digits.size() < 6) digits.insert(0, 6 - digits.size(), '0');
  return digits;
}

}  // namespace

std::string CsvOfSeries(std::string_view directory, std::string_view symbol, int interval,
                        IndexCache& cache) {
  MetaLibReader reader(cache);
  reader.OpenDirectory(directory);
  reader.SelectSeries(symbol, interval == -1 ? 1 : 0, interval);
  reader.ReadSeries();
  const BarArrays& bars = reader.Bars();
  const std::array columns = {&bars.opens,  &bars.highs,   &bars.lows,
                              &bars.closes, &bars.volumes, &bars.open_interests};
  std::string text = "date,time,open,high,low,close,volume,openinterest\n";
  for (std::size_t i = 0; i < bars.dates.size(); ++i) {
    text += std::to_string(bars.dates[i]) + ',';
    text += interval == -1 ? "0" : TimeText(bars.times[i]);
    for (const std::vector<float>* column : columns) text += ',' + ShortestText((*column)[i]);
    text += '\n';
  }
  return text;
}

}  // namespace velumar
