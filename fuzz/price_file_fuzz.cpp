// A price file of any bytes is read or refused with an error, and the import says the same of it.
// What it imports can be replayed.
// The first byte sets options; the second is the length of a date format.

#include <cmath>
#include <filesystem>

#include "base/dates.h"
#include "import/file_reading.h"
#include "import/price_reader.h"
#include "import/text_encoding.h"
#include "marketdata/interval.h"
#include "marketdata/number_format.h"
#include "packed_files.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

ImportOptions OptionsOf(std::string_view& data) {
  ImportOptions options;
  const auto bits = static_cast<unsigned char>(data[0]);
  const std::size_t length = static_cast<unsigned char>(data[1]) % 32;
  data.remove_prefix(2);
  if ((bits & 1) != 0) options.date_order = static_cast<DateOrder>(bits >> 1 & 1);
  if ((bits & 4) != 0) options.decimal_comma = (bits & 8) != 0;
  if ((bits & 16) != 0) options.scale = 100;
  if ((bits & 32) != 0) options.interval = (bits & 8) != 0 ? kDaily : 30;
  if ((bits & 64) != 0) options.utc = true;
  if ((bits & 128) != 0) options.prices = Prices::kAdjusted;
  if (length > 0) options.date_format = std::string(data.substr(0, length));
  data.remove_prefix(std::min(length, data.size()));
  return options;
}

void CheckRow(const PriceRow& row, std::string_view line) {
  const Bar& bar = row.bar;
  Require(IsRealDate(bar.date) && StoredDate(bar.date));
  Require(bar.time >= 0 && bar.time <= 235959 && bar.time / 100 % 100 < 60 && bar.time % 100 < 60);
  for (const float value : {bar.open, bar.high, bar.low, bar.close, row.adjusted_close, bar.volume,
                            bar.open_interest}) {
    const auto stored = MbfFromFloat(value);
    Require(stored && FloatFromMbf(*stored) == value);
  }
  Require(IsUtf8(line) && line.find('\n') == std::string_view::npos);
}

// Returns false for a file that is refused.
bool Read(const std::filesystem::path& file, const ImportOptions& options) {
  try {
    PriceReader reader(file, options);
    std::int64_t rows = 0;
    std::int64_t last = 0;
    for (auto batch = reader.Next(); !batch.empty(); batch = reader.Next()) {
      for (const PriceRow& row : batch) {
        Require(row.line > last);
        last = row.line;
        CheckRow(row, reader.RawLine(row));
        ++rows;
      }
    }
    Require(reader.Counts().rows == rows);
    return true;
  } catch (const ImportError& error) {
    Require(*error.what() != '\0');
    return false;
  }
}

void CheckSeries(const ReadPrices::Series& series) {
  if (!series.found.refusal.empty()) return;
  Require(IsReplayInterval(series.found.interval));
  Require(!series.bars.empty() && series.bars.size() <= kLongestSeries);
  for (std::size_t i = 1; i < series.bars.size(); ++i) {
    const Bar& before = series.bars[i - 1];
    const Bar& bar = series.bars[i];
    Require(std::pair(before.date, before.time) < std::pair(bar.date, bar.time));
  }
}

}  // namespace
}  // namespace velumar

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  using namespace velumar;
  if (size < 2) return 0;
  std::string_view text = AsText(data, size);
  const ImportOptions options = OptionsOf(text);
  static const ScratchFolder folder;
  folder.Write("prices.csv", text);
  const bool is_read = Read(folder / "prices.csv", options);
  const ReadPrices read =
      ReadPriceFile(folder / "prices.csv", options, [](double) { return true; });
  if (!is_read) Require(!read.understanding.Ready());
  if (!read.understanding.Ready()) return 0;
  for (const ReadPrices::Series& series : read.series) CheckSeries(series);
  return 0;
}
