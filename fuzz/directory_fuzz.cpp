// A market data directory of any bytes is listed, read and extended, and what was written reads
// back.

#include <filesystem>
#include <string>
#include <vector>

#include "marketdata/index_cache.h"
#include "marketdata/index_file.h"
#include "marketdata/metalib_error.h"
#include "marketdata/metalib_reader.h"
#include "marketdata/metalib_writer.h"
#include "packed_files.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

constexpr std::int32_t kAddedDate = 20240229;
constexpr std::int32_t kAddedTime = 93000;

std::vector<SecurityInfo> Listed(const std::string& folder, IndexCache& cache) {
  std::vector<SecurityInfo> listed;
  MetaLibReader reader(cache);
  reader.OpenDirectory(folder);
  while (reader.NextSecurity() >= 1) {
    try {
      reader.ReadSecurityHeader();
      listed.push_back(reader.Security());
      reader.CloseSecurity();
    } catch (const MetaLibError&) {
    }
  }
  return listed;
}

void Select(auto& library, const SecurityInfo& security) {
  library.SelectSeries(security.symbol, security.interval == -1 ? 1 : 0, security.interval);
}

void ReadThrough(const std::string& folder, const SecurityInfo& security, IndexCache& cache) {
  MetaLibReader reader(cache);
  reader.OpenDirectory(folder);
  Select(reader, security);
  reader.ReadSeries();
  Require(reader.GetDates().size() == reader.GetOpenInterests().size());
  reader.SeekDate("20000101", 0);
  reader.ReadBar();
  reader.MoveToStart();
  reader.MoveBy(1);
  reader.ReadBar();
}

bool Holds(const std::string& folder, const SecurityInfo& security, IndexCache& cache) {
  MetaLibReader reader(cache);
  reader.OpenDirectory(folder);
  Select(reader, security);
  reader.ReadSeries();
  const BarArrays& bars = reader.Bars();
  const bool timed = std::ranges::any_of(bars.times, [](int time) { return time != 0; });
  for (std::size_t i = 0; i < bars.dates.size(); ++i) {
    const bool same_time = bars.times[i] == (timed ? kAddedTime : 0);
    if (bars.dates[i] == kAddedDate && same_time) return true;
  }
  return false;
}

void Change(const std::string& folder, const SecurityInfo& security, IndexCache& cache,
            void (*change)(MetaLibWriter& writer, bool daily)) {
  MetaLibWriter writer(cache);
  writer.OpenDirectory(folder);
  Select(writer, security);
  change(writer, security.interval == -1);
  writer.CloseSecurity();
  writer.CloseDirectory();
}

void AddBar(MetaLibWriter& writer, bool /*daily*/) {
  writer.AppendBar(kAddedDate, kAddedTime, 1, 2, 0.5F, 1.5F, 100, 7);
}

void RemoveBar(MetaLibWriter& writer, bool daily) {
  daily ? writer.DeleteDailyBar(kAddedDate) : writer.DeleteIntradayBar(kAddedDate, kAddedTime);
}

void TryAll(const std::string& folder) {
  IndexCache cache;
  const std::vector<SecurityInfo> listed = Listed(folder, cache);
  for (std::size_t i = 0; i < listed.size() && i < 4; ++i) {
    try {
      ReadThrough(folder, listed[i], cache);
    } catch (const MetaLibError&) {
    }
    try {
      Change(folder, listed[i], cache, AddBar);
      IndexCache fresh;
      Require(Holds(folder, listed[i], cache) && Holds(folder, listed[i], fresh));
      Change(folder, listed[i], cache, RemoveBar);
    } catch (const MetaLibError&) {
    }
  }
  const std::filesystem::path copy = std::filesystem::path(folder) / "copy";
  std::filesystem::create_directory(copy);
  CopyIndexFiles(folder, copy);
}

}  // namespace
}  // namespace velumar

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const velumar::ScratchFolder folder;
  velumar::UnpackFiles(velumar::AsText(data, size), folder.Path());
  try {
    velumar::TryAll(folder.Text());
  } catch (const velumar::MetaLibError&) {
    // Damage is refused with an error.
  }
  return 0;
}
