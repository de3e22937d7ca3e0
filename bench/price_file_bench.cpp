#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

#include "base/dates.h"
#include "base/raw_file.h"
#include "import/price_reader.h"
#include "support/scratch_folder.h"

namespace velumar {

namespace {

constexpr int kRows = 1'000'000;

// One-minute bars of the plain kind: "20200102,093000,100.25,100.50,100.00,100.25,1234".
class PriceFile {
 public:
  PriceFile() {
    std::string text = "Date,Time,Open,High,Low,Close,Volume\n";
    std::int32_t date = 20200102;
    for (int i = 0; i < kRows; ++i) {
      const int minute = i % 1440;
      if (i > 0 && minute == 0) date = DaysLater(date, 1);
      std::string time = std::to_string(minute / 60 * 10000 + minute % 60 * 100);
      time.insert(0, 6 - time.size(), '0');
      const auto price = [&](int ticks) {
        const int hundredths = 10000 + i * 7 % 5000 + ticks;
        const std::string cents = std::to_string(hundredths % 100);
        return "," + std::to_string(hundredths / 100) + (cents.size() < 2 ? ".0" : ".") + cents;
      };
      text += std::to_string(date) + "," + time + price(0) + price(25) + price(-30) + price(10) +
              "," + std::to_string(1000 + i % 9000) + "\n";
    }
    folder_.Write("prices.csv", text);
  }

  std::filesystem::path Path() const { return folder_ / "prices.csv"; }

 private:
  ScratchFolder folder_;
};

const PriceFile& File() {
  static const PriceFile file;
  return file;
}

void ReadPriceFile(benchmark::State& state) {
  const std::filesystem::path file = File().Path();
  for ([[maybe_unused]] auto _ : state) {
    PriceReader reader(file, {});
    float sum = 0;
    for (auto rows = reader.Next(); !rows.empty(); rows = reader.Next()) sum += rows[0].bar.close;
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kRows);
}

// What no reader can beat: reading the file in blocks and finding the ends of its lines.
void FindLinesOfPriceFile(benchmark::State& state) {
  const std::filesystem::path file = File().Path();
  for ([[maybe_unused]] auto _ : state) {
    const RawFile bytes(file, RawFile::Mode::kRead);
    std::string block(1 << 20, '\0');
    std::int64_t offset = 0;
    std::int64_t lines = 0;
    while (const std::size_t got = bytes.ReadAt(offset, std::as_writable_bytes(std::span(block)))) {
      offset += static_cast<std::int64_t>(got);
      const char* const end = block.data() + got;
      for (const char* at = block.data(); at != end; ++at, ++lines) {
        at = static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
        if (!at) break;
      }
    }
    benchmark::DoNotOptimize(lines);
  }
  state.SetItemsProcessed(state.iterations() * kRows);
}

}  // namespace

BENCHMARK(ReadPriceFile)->Unit(benchmark::kMillisecond);
BENCHMARK(FindLinesOfPriceFile)->Unit(benchmark::kMillisecond);

}  // namespace velumar
