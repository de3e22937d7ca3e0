#include "charthost/series_source.h"

#include <filesystem>
#include <stdexcept>

#include "base/paths.h"
#include "base/text.h"
#include "charthost/bar_text.h"
#include "marketdata/directory_lock.h"
#include "marketdata/metalib_error.h"

namespace velumar {
namespace {

bool SameSymbol(const std::string& one, const std::string& other) {
  return NormalisedSymbol(one) == NormalisedSymbol(other);
}

// Higher is better; 0: not this series.
int Rank(const SecurityInfo& security, const SeriesRequest& request, std::optional<int> shown) {
  if (!SameSymbol(security.symbol, request.symbol)) return 0;
  if (request.file_number) return security.file_number == *request.file_number ? 1 : 0;
  if (security.bars == 0) return 1;
  return security.file_number == shown ? 3 : 2;
}

void OpenFolder(MetaLibReader& reader, const std::string& folder) {
  std::error_code error;
  if (folder.empty()) throw MetaLibError(MetaLibError::kNoData, "Choose a folder.");
  if (!std::filesystem::is_directory(NativePath(folder), error)) {
    throw MetaLibError(MetaLibError::kNoData, "Folder \"" + folder + "\" not found.");
  }
  try {
    reader.OpenDirectory(folder);
  } catch (const MetaLibError& failure) {
    if (failure.Number() != MetaLibError::kNoData) throw;
    throw MetaLibError(
        MetaLibError::kNoData,
        "No market data in \"" + folder + "\": there is no MASTER, EMASTER or XMASTER file.");
  }
}

// Counting bars opens a file for each security, so only those of the symbol are counted.
std::vector<SecurityInfo> SeriesOfSymbol(MetaLibReader& reader, const std::string& symbol) {
  std::vector<SecurityInfo> securities;
  while (reader.NextSecurity() >= 1) {
    reader.ReadSecurityHeader();
    if (SameSymbol(reader.SecuritySymbol(), symbol)) securities.push_back(reader.Security());
    reader.CloseSecurity();
  }
  return securities;
}

BarSeries ReadBars(MetaLibReader& reader, const SecurityInfo& security) {
  const bool intraday = security.interval >= 0;
  reader.SelectSeries(security.symbol, intraday ? 0 : 1, security.interval);
  reader.ReadSeries();
  BarSeries bars;
  bars.dates = reader.GetDates();
  bars.times = reader.GetTimes();
  bars.opens = reader.GetOpens();
  bars.highs = reader.GetHighs();
  bars.lows = reader.GetLows();
  bars.closes = reader.GetCloses();
  bars.volumes = reader.GetVolumes();
  reader.CloseSecurity();
  DescribeSeries(bars);
  return bars;
}

}  // namespace

std::optional<SecurityInfo> ChooseSeries(const std::vector<SecurityInfo>& securities,
                                         const SeriesRequest& request, std::optional<int> shown) {
  const SecurityInfo* best = nullptr;
  int best_rank = 0;
  for (const SecurityInfo& security : securities) {
    const int rank = Rank(security, request, shown);
    if (rank > best_rank) {
      best = &security;
      best_rank = rank;
    }
  }
  return best == nullptr ? std::nullopt : std::optional(*best);
}

SeriesRequest RequestOf(const TypedChoice& choice, const std::vector<SecurityInfo>& securities) {
  const std::string symbol = Trimmed(choice.symbol);
  if (symbol.empty())
    throw std::invalid_argument("Type a symbol or choose a security from the list.");
  bool known = false;
  for (const SecurityInfo& security : securities) {
    if (!SameSymbol(security.symbol, symbol)) continue;
    known = true;
    if (!choice.interval) return {choice.folder, security.symbol, std::nullopt};
    if (security.interval == *choice.interval) {
      return {choice.folder, security.symbol, security.file_number};
    }
  }
  throw std::invalid_argument(known ? "\"" + symbol + "\" has no series \"" +
                                          IntervalTitle(*choice.interval) + "\" in this folder."
                                    : "There is no security \"" + symbol + "\" in this folder.");
}

bool IsWorkingStore(const std::string& folder) {
  std::error_code unreadable;
  return std::filesystem::exists(NativePath(folder) / kWorkingStoreMark, unreadable);
}

std::vector<SecurityInfo> SeriesSource::List(const std::string& folder) const {
  MetaLibReader reader(cache_);
  OpenFolder(reader, folder);
  return ReadSecurities(reader);
}

LoadedSeries SeriesSource::Load(const SeriesRequest& request, std::optional<int> shown) const {
  MetaLibReader reader(cache_);
  OpenFolder(reader, request.folder);
  const auto security = ChooseSeries(SeriesOfSymbol(reader, request.symbol), request, shown);
  if (!security) {
    throw MetaLibError(MetaLibError::kSeriesNotFound, "There is no security \"" + request.symbol +
                                                          "\" in \"" + request.folder + "\".");
  }
  BarSeries bars = ReadBars(reader, *security);
  reader.CloseDirectory();
  return {*security, std::move(bars)};
}

}  // namespace velumar
