#include <benchmark/benchmark.h>

#include <bit>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "large_directory.h"
#include "marketdata/index_cache.h"
#include "marketdata/metalib_reader.h"

namespace velumar {

namespace {

constexpr int kBars = 32767;
constexpr std::size_t kFields = 7;

float Decoded(const char* bytes) {
  std::uint32_t word;
  std::memcpy(&word, bytes, sizeof word);
  const std::uint32_t exponent = word >> 24;
  const std::uint32_t bits = (word << 8 & 0x80000000U) | (exponent - 2) << 23 | (word & 0x7FFFFFU);
  return exponent > 2 ? std::bit_cast<float>(bits) : 0;
}

// The least that reading takes: the bytes of the file, and one pass over them into eight arrays.
void BareLoop(const std::string& file_name) {
  constexpr std::size_t kRecord = 4 * kFields;
  const auto bytes = std::make_unique_for_overwrite<char[]>((kBars + 1) * kRecord);
  std::FILE* const file = std::fopen(file_name.c_str(), "rb");
  std::setvbuf(file, nullptr, _IONBF, 0);
  benchmark::DoNotOptimize(std::fread(bytes.get(), kRecord, kBars + 1, file));
  std::fclose(file);
  std::vector<int> dates(kBars);
  std::vector<int> times(kBars);
  std::vector<float> opens(kBars);
  std::vector<float> highs(kBars);
  std::vector<float> lows(kBars);
  std::vector<float> closes(kBars);
  std::vector<float> volumes(kBars);
  std::vector<float> open_interests(kBars);
  const char* at = bytes.get() + kRecord;
  for (std::size_t i = 0; i < kBars; ++i, at += kRecord) {
    dates[i] = static_cast<int>(Decoded(at)) + 19000000;
    opens[i] = Decoded(at + 4);
    highs[i] = Decoded(at + 8);
    lows[i] = Decoded(at + 12);
    closes[i] = Decoded(at + 16);
    volumes[i] = Decoded(at + 20);
    open_interests[i] = Decoded(at + 24);
  }
  for (const auto* values : {&opens, &highs, &lows, &closes, &volumes, &open_interests}) {
    benchmark::DoNotOptimize(values->data());
  }
  benchmark::DoNotOptimize(dates.data());
  benchmark::DoNotOptimize(times.data());
  benchmark::ClobberMemory();
}

using Clock = std::chrono::steady_clock;

double Seconds(Clock::duration duration) { return std::chrono::duration<double>(duration).count(); }

// Opening, selecting and reading; "ratio" is the time relative to the bare loop.
void ReadLongSeries(benchmark::State& state) {
  const LargeDirectory directory(1, kBars, 0);
  const std::string file_name = directory.Text() + "/F1.DAT";
  IndexCache cache;
  Clock::duration bare{};
  Clock::duration ours{};
  while (state.KeepRunning()) {
    const auto start = Clock::now();
    BareLoop(file_name);
    const auto middle = Clock::now();
    MetaLibReader reader(cache);
    reader.OpenDirectory(directory.Text());
    reader.SelectSeries("S0", 1, -1);
    reader.ReadSeries();
    benchmark::DoNotOptimize(reader.GetCloses().data());
    reader.CloseDirectory();
    const auto end = Clock::now();
    bare += middle - start;
    ours += end - middle;
    state.SetIterationTime(Seconds(end - middle));
  }
  state.counters["ratio"] = Seconds(ours) / Seconds(bare);
}
BENCHMARK(ReadLongSeries)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace velumar
