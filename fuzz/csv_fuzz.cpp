// A price file of any text is refused with an error or imported whole, with its bars sorted.

#include <algorithm>

#include "csv/csv_series.h"
#include "csv/csv_text.h"
#include "packed_files.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  using namespace velumar;
  std::string_view text = AsText(data, size);
  // The first line is the date format; an empty one means the usual formats.
  const std::size_t end = std::min(text.find('\n'), text.size());
  try {
    const std::string pattern(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    CsvSeries series =
        ReadCsvSeries(text, pattern.empty() ? CsvDateFormat() : CsvDateFormat(pattern));
    Require(series.bars.size() == series.lines.size());
    for (std::size_t i = 1; i < series.bars.size(); ++i) {
      const Bar& before = series.bars[i - 1];
      const Bar& bar = series.bars[i];
      Require(std::pair(before.date, before.time) < std::pair(bar.date, bar.time));
    }
    MakeDaily(series);
  } catch (const CsvError&) {
  }
  return 0;
}
