// A price file of any bytes is refused, raises a question or gives series that can be replayed.

#include "import/file_reading.h"
#include "marketdata/interval.h"
#include "packed_files.h"
#include "support/scratch_folder.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  using namespace velumar;
  if (size == 0) return 0;
  static const ScratchFolder folder;
  // The first byte sets the options.
  const unsigned char choice = *data;
  ImportOptions options;
  if ((choice & 1) != 0)
    options.interval = kReplayIntervals.at(choice / 2 % kReplayIntervals.size());
  if ((choice & 16) != 0) options.utc = true;
  if ((choice & 32) != 0) options.prices = Prices::kAdjusted;
  if ((choice & 64) != 0) options.date_order = DateOrder::kMonthDayYear;
  if ((choice & 128) != 0) options.too_long = TooLong::kSplitByYear;
  folder.Write("ABC.csv", AsText(data + 1, size - 1));
  const ReadPrices read = ReadPriceFile(folder / "ABC.csv", options, nullptr);
  if (!read.understanding.Ready()) return 0;
  for (const ReadPrices::Series& series : read.series) {
    if (!series.found.refusal.empty()) continue;
    Require(IsReplayInterval(series.found.interval));
    Require(!series.bars.empty() && series.bars.size() <= kLongestSeries);
    for (std::size_t i = 1; i < series.bars.size(); ++i) {
      const Bar& before = series.bars[i - 1];
      const Bar& bar = series.bars[i];
      Require(std::pair(before.date, before.time) < std::pair(bar.date, bar.time));
    }
  }
  return 0;
}
