// The lower bounds: the time that the machine takes for the same bytes as the other benchmarks.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "large_directory.h"

namespace velumar {

namespace {

constexpr int kBars = 32767;
constexpr std::size_t kRecord = 28;

// A file of one series, kept open.
class BareFile {
 public:
  explicit BareFile(const std::string& path) : handle_(open(path.c_str(), O_RDWR | O_CLOEXEC)) {
    if (handle_ < 0) std::abort();
  }
  ~BareFile() { close(handle_); }
  BareFile(const BareFile&) = delete;
  BareFile& operator=(const BareFile&) = delete;

  int Handle() const { return handle_; }

 private:
  int handle_;
};

// Reads the bytes of a series of 32,767 bars from the system's cache, without decoding them.
void BareReadOfLongSeries(benchmark::State& state) {
  const LargeDirectory directory(1, kBars, 0);
  const BareFile file(directory.Text() + "/F1.DAT");
  const std::size_t size = (kBars + 1) * kRecord;
  const auto bytes = std::make_unique_for_overwrite<char[]>(size);
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(pread(file.Handle(), bytes.get(), size, 0));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BareReadOfLongSeries)->UseRealTime()->Unit(benchmark::kMicrosecond);

// One bar and the count in the header, the least that a step writes.
void WriteBar(const BareFile& file, int bar) {
  const std::array<char, kRecord> record{};
  benchmark::DoNotOptimize(
      pwrite(file.Handle(), record.data(), record.size(), static_cast<off_t>(kRecord) * (bar + 1)));
  benchmark::DoNotOptimize(pwrite(file.Handle(), record.data(), 2, 2));
}

void BareWriteOfOneBar(benchmark::State& state) {
  const LargeDirectory directory(1, kBars, 0);
  const BareFile file(directory.Text() + "/F1.DAT");
  while (state.KeepRunning()) WriteBar(file, kBars);
}
BENCHMARK(BareWriteOfOneBar)->UseRealTime()->Unit(benchmark::kMicrosecond);

// The same, flushed to the disk.
void BareWriteAndFlushOfOneBar(benchmark::State& state) {
  const LargeDirectory directory(1, kBars, 0);
  const BareFile file(directory.Text() + "/F1.DAT");
  while (state.KeepRunning()) {
    WriteBar(file, kBars);
    benchmark::DoNotOptimize(fsync(file.Handle()));
  }
}
BENCHMARK(BareWriteAndFlushOfOneBar)->UseRealTime()->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace velumar
