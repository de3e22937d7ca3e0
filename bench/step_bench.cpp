#include <benchmark/benchmark.h>

#include "large_directory.h"
#include "marketdata/index_cache.h"
#include "marketdata/metalib_writer.h"

namespace velumar {

namespace {

constexpr int kLongSeries = 32767;
constexpr int kShortSeries = 100;

class Step {
 public:
  Step(IndexCache& cache, const std::string& directory) : writer_(cache) {
    writer_.OpenDirectory(directory);
    if (writer_.SecurityExists("S0")) writer_.SelectSeries("S0", 1, -1);
  }
  ~Step() {
    writer_.CloseSecurity();
    writer_.CloseDirectory();
  }
  Step(const Step&) = delete;
  Step& operator=(const Step&) = delete;

  void Forward(int bar) { writer_.AppendBar(LargeDirectoryDate(bar), 0, 1, 2, 3, 4, 5, 6); }
  void Back(int bar) {
    Forward(bar);
    writer_.DeleteDailyBar(LargeDirectoryDate(bar));
  }

 private:
  MetaLibWriter writer_;
};

// Arguments: securities in the directory, bars in the series.
void StepForward(benchmark::State& state) {
  const int bars = static_cast<int>(state.range(1));
  const LargeDirectory directory(static_cast<int>(state.range(0)), bars, 10);
  IndexCache cache;
  while (state.KeepRunning()) {
    Step(cache, directory.Text()).Forward(bars);
    state.PauseTiming();
    Step(cache, directory.Text()).Back(bars);
    state.ResumeTiming();
  }
}

void StepBack(benchmark::State& state) {
  const int bars = static_cast<int>(state.range(1));
  const LargeDirectory directory(static_cast<int>(state.range(0)), bars, 10);
  IndexCache cache;
  while (state.KeepRunning()) {
    state.PauseTiming();
    Step(cache, directory.Text()).Forward(bars);
    state.ResumeTiming();
    Step(cache, directory.Text()).Back(bars);
  }
}

void Sizes(benchmark::internal::Benchmark* bench) {
  bench->Args({2000, kLongSeries})
      ->Args({1, kLongSeries})
      ->Args({2000, kShortSeries})
      ->Args({1, kShortSeries})
      ->UseRealTime()
      ->Unit(benchmark::kMicrosecond);
}
BENCHMARK(StepForward)->Apply(Sizes);
BENCHMARK(StepBack)->Apply(Sizes);

}  // namespace

}  // namespace velumar
