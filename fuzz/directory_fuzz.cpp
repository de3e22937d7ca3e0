// A market data directory of any bytes is listed, read and extended, and what was written reads
// back.

#include <cstdlib>
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
  if (reader.GetDates().size() != reader.GetOpenInterests().size()) std::abort();
  reader.SeekDate("20000101", 0);
  reader.ReadBar();
  reader.MoveToEnd();
  reader.MoveBy(-1);
  reader.ReadBar();
}

bool Holds(const std::string& folder, const SecurityInfo& security, IndexCache& cache) {
  MetaLibWriter writer(cache);
  writer.OpenDirectory(folder);
  Select(writer, security);
  return security.interval == -1 ? writer.DailyBarExists(kAddedDate)
                                 : writer.IntradayBarExists(kAddedDate, kAddedTime);
}

void AddBar(const std::string& folder, const SecurityInfo& security, IndexCache& cache) {
  MetaLibWriter writer(cache);
  writer.OpenDirectory(folder);
  Select(writer, security);
  writer.AppendBar(kAddedDate, kAddedTime, 1, 2, 0.5F, 1.5F, 100, 7);
  writer.CloseSecurity();
  writer.CloseDirectory();
}

void RemoveBar(const std::string& folder, const SecurityInfo& security, IndexCache& cache) {
  MetaLibWriter writer(cache);
  writer.OpenDirectory(folder);
  Select(writer, security);
  security.interval == -1 ? writer.DeleteDailyBar(kAddedDate)
                          : writer.DeleteIntradayBar(kAddedDate, kAddedTime);
  writer.CloseSecurity();
  writer.CloseDirectory();
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
      AddBar(folder, listed[i], cache);
      IndexCache fresh;
      if (!Holds(folder, listed[i], cache) || !Holds(folder, listed[i], fresh)) std::abort();
      RemoveBar(folder, listed[i], cache);
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
