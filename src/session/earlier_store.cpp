#include "session/earlier_store.h"

#include <algorithm>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "base/paths.h"
#include "base/raw_file.h"
#include "base/text.h"
#include "marketdata/index_cache.h"
#include "marketdata/metalib_error.h"
#include "marketdata/metalib_reader.h"
#include "session/store_folder.h"

namespace velumar {

namespace fs = std::filesystem;

namespace {

struct Contents {
  bool has_index = false;
  std::vector<std::string> series_files;  // in upper case
  bool foreign = false;
};

bool IsIndexFile(const std::string& upper_name) {
  return upper_name == "MASTER" || upper_name == "EMASTER" || upper_name == "XMASTER";
}

// Earlier versions copied every file with MASTER in its name.
bool WasCopied(const fs::path& file, const std::string& upper_name) {
  return upper_name.find("MASTER") != std::string::npos &&
         fs::is_regular_file(file.parent_path().parent_path() / file.filename());
}

Contents ContentsOf(const fs::path& folder) {
  Contents contents;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    const std::string name = UpperCased(PathText(entry.path().filename()));
    if (name.starts_with('.')) continue;
    if (IsLink(entry.path())) {
      contents.foreign = true;
    } else if (entry.is_directory()) {
      contents.foreign |= name != "MSSMART";
    } else if (!entry.is_regular_file()) {
      contents.foreign = true;
    } else if (IsSeriesFile(name)) {
      contents.series_files.push_back(name);
    } else if (IsIndexFile(name)) {
      contents.has_index = true;
    } else {
      contents.foreign |= !WasCopied(entry.path(), name);
    }
  }
  return contents;
}

std::vector<SecurityInfo> Securities(MetaLibReader& reader) {
  std::vector<SecurityInfo> securities;
  while (reader.NextSecurity() >= 1) {
    reader.ReadSecurityHeader();
    securities.push_back(reader.Security());
  }
  return securities;
}

std::set<std::pair<int, std::string>> SymbolsOf(const std::vector<SecurityInfo>& securities) {
  std::set<std::pair<int, std::string>> symbols;
  for (const SecurityInfo& security : securities) {
    symbols.emplace(security.file_number, security.symbol);
  }
  return symbols;
}

using OrderedBar = std::tuple<std::int32_t, std::int32_t, float, float, float, float, float, float>;

std::vector<OrderedBar> BarsOf(MetaLibReader& reader, const SecurityInfo& security) {
  reader.SelectSeries(security.symbol, security.interval == -1 ? 1 : 0, security.interval);
  reader.ReadSeries();
  std::vector<OrderedBar> bars;
  for (std::size_t i = 0; i < reader.GetDates().size(); ++i) {
    bars.emplace_back(reader.GetDates()[i], reader.GetTimes()[i], reader.GetOpens()[i],
                      reader.GetHighs()[i], reader.GetLows()[i], reader.GetCloses()[i],
                      reader.GetVolumes()[i], reader.GetOpenInterests()[i]);
  }
  return bars;
}

// The only series file of the store is `name`, in upper case.
bool CopiesSeries(const std::string& name, const std::vector<SecurityInfo>& stored,
                  MetaLibReader& store, MetaLibReader& directory) {
  const auto number = name.substr(1, name.find('.') - 1);
  const auto found = std::ranges::find_if(stored, [&number](const SecurityInfo& security) {
    return std::to_string(security.file_number) == number;
  });
  if (found == stored.end()) return false;
  return found->bars == 0 ||
         std::ranges::includes(BarsOf(directory, *found), BarsOf(store, *found));
}

bool CopiesItsDirectory(const fs::path& folder, const Contents& contents) {
  IndexCache cache;
  MetaLibReader store(cache);
  MetaLibReader directory(cache);
  store.OpenDirectory(PathText(folder));
  directory.OpenDirectory(PathText(folder.parent_path()));
  const std::vector<SecurityInfo> stored = Securities(store);
  if (!std::ranges::includes(SymbolsOf(Securities(directory)), SymbolsOf(stored))) return false;
  return contents.series_files.empty() ||
         CopiesSeries(contents.series_files.front(), stored, store, directory);
}

}  // namespace

bool IsEarlierStore(const fs::path& folder) {
  const Contents contents = ContentsOf(folder);
  if (contents.foreign || contents.series_files.size() > 1) return false;
  if (!contents.has_index) return contents.series_files.empty();
  try {
    return CopiesItsDirectory(folder, contents);
  } catch (const MetaLibError&) {
    return false;
  }
}

}  // namespace velumar
