#include "charthost/series_source.h"

#include <filesystem>

#include "base/paths.h"
#include "marketdata/metalib_error.h"

namespace velumar {
namespace {

void OpenFolder(MetaLibReader& reader, const std::string& folder) {
  std::error_code error;
  if (folder.empty()) throw MetaLibError(MetaLibError::kNoData, "No folder is chosen.");
  if (!std::filesystem::is_directory(NativePath(folder), error)) {
    throw MetaLibError(MetaLibError::kNoData, "There is no folder \"" + folder + "\".");
  }
  try {
    reader.OpenDirectory(folder);
  } catch (const MetaLibError& failure) {
    if (failure.Number() != MetaLibError::kNoData) throw;
    throw MetaLibError(
        MetaLibError::kNoData,
        "No market data in \"" + folder + "\": the folder has no file MASTER, EMASTER or XMASTER.");
  }
}

// Counting the bars opens a file for each security, so only those of the symbol are counted.
std::vector<SecurityInfo> SecuritiesOf(MetaLibReader& reader, const std::string& symbol) {
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

std::vector<SecurityInfo> SeriesSource::List(const std::string& folder) const {
  MetaLibReader reader(cache_);
  OpenFolder(reader, folder);
  std::vector<SecurityInfo> securities;
  securities.reserve(reader.SecurityCount());
  while (reader.NextSecurity() >= 1) {
    reader.ReadSecurityHeader();
    securities.push_back(reader.Security());
    reader.CloseSecurity();
  }
  reader.CloseDirectory();
  return securities;
}

LoadedSeries SeriesSource::Load(const SeriesRequest& request, std::optional<int> shown) const {
  MetaLibReader reader(cache_);
  OpenFolder(reader, request.folder);
  const auto security = ChooseSeries(SecuritiesOf(reader, request.symbol), request, shown);
  if (!security) {
    throw MetaLibError(MetaLibError::kSeriesNotFound, "There is no security \"" + request.symbol +
                                                          "\" in \"" + request.folder + "\".");
  }
  BarSeries bars = ReadBars(reader, *security);
  reader.CloseDirectory();
  return {*security, std::move(bars)};
}

}  // namespace velumar
