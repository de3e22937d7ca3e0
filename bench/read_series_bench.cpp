#include <benchmark/benchmark.h>

#include <chrono>
#include <fstream>
#include <vector>

#include "bench_directory.h"
#include "marketdata/index_cache.h"
#include "marketdata/metalib_reader.h"

namespace velumar {

namespace {

constexpr int kBars = 32767;
constexpr std::size_t kFields = 7;

float Decoded(const unsigned char* bytes) {
  const std::uint32_t word = static_cast<std::uint32_t>(bytes[0]) |
                             static_cast<std::uint32_t>(bytes[1]) << 8 |
                             static_cast<std::uint32_t>(bytes[2]) << 16;
  const std::uint32_t exponent = bytes[3];
  if (exponent < 3) return 0;
  const std::uint32_t bits = (word & 0x800000U) << 8 | (exponent - 2) << 23 | (word & 0x7FFFFFU);
  float value;
  static_assert(sizeof value == sizeof bits);
  __builtin_memcpy(&value, &bits, sizeof value);
  return value;
}

// What nobody can do without: the bytes of the file, and one pass over them into eight arrays.
std::size_t BareLoop(const std::string& file_name) {
  std::ifstream file(file_name, std::ios::binary);
  std::vector<char> bytes((kBars + 1) * kFields * 4);
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  std::vector<int> dates(kBars);
  std::vector<int> times(kBars);
  std::vector<std::vector<float>> values(kFields - 1, std::vector<float>(kBars));
  const auto* at = reinterpret_cast<const unsigned char*>(bytes.data()) + kFields * 4;
  for (std::size_t i = 0; i < kBars; ++i, at += kFields * 4) {
    dates[i] = static_cast<int>(Decoded(at)) + 19000000;
    for (std::size_t field = 1; field < kFields; ++field) {
      values[field - 1][i] = Decoded(at + 4 * field);
    }
  }
  benchmark::DoNotOptimize(values.data());
  benchmark::DoNotOptimize(times.data());
  return dates.size();
}

using Clock = std::chrono::steady_clock;

double Seconds(Clock::duration duration) { return std::chrono::duration<double>(duration).count(); }

// The whole of opening, selecting and reading; "ratio" is its cost over that of the bare loop.
void ReadLongSeries(benchmark::State& state) {
  const BenchDirectory directory(1, kBars, 0);
  const std::string file_name = directory.Text() + "/F1.DAT";
  IndexCache cache;
  Clock::duration bare{};
  Clock::duration ours{};
  for (auto _ : state) {
    const auto start = Clock::now();
    benchmark::DoNotOptimize(BareLoop(file_name));
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
