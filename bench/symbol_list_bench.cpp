#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "large_directory.h"
#include "marketdata/index_cache.h"
#include "marketdata/metalib_reader.h"

namespace velumar {

namespace {

constexpr int kSecurities = 2000;

std::vector<std::string> Symbols(IndexCache& cache, const std::string& directory) {
  MetaLibReader reader(cache);
  reader.OpenDirectory(directory);
  std::vector<std::string> symbols;
  while (reader.NextSecurity() > 0) {
    reader.ReadSecurityHeader();
    symbols.push_back(reader.SecuritySymbol());
    benchmark::DoNotOptimize(reader.SecurityInterval());
    reader.CloseSecurity();
  }
  reader.CloseDirectory();
  return symbols;
}

// The list of all symbols, at the start of the program (nothing cached) and later.
void ListSymbolsAtFirst(benchmark::State& state) {
  const LargeDirectory directory(kSecurities, 100, 10);
  while (state.KeepRunning()) {
    IndexCache cache;
    benchmark::DoNotOptimize(Symbols(cache, directory.Text()));
  }
}
BENCHMARK(ListSymbolsAtFirst)->UseRealTime()->Unit(benchmark::kMillisecond);

void ListSymbolsAgain(benchmark::State& state) {
  const LargeDirectory directory(kSecurities, 100, 10);
  IndexCache cache;
  while (state.KeepRunning()) benchmark::DoNotOptimize(Symbols(cache, directory.Text()));
}
BENCHMARK(ListSymbolsAgain)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace velumar
