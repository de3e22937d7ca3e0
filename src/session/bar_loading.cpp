#include "session/bar_loading.h"

#include <optional>

#include "base/text.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_error.h"
#include "marketdata/metalib_reader.h"

namespace velumar {

namespace {

void StoreArrays(const MetaLibReader& reader, SimSession& session) {
  session.BarDate = reader.GetDates();
  session.BarTime = reader.GetTimes();
  session.BarOpen = reader.GetOpens();
  session.BarHigh = reader.GetHighs();
  session.BarLow = reader.GetLows();
  session.BarClose = reader.GetCloses();
  session.BarVolume = reader.GetVolumes();
  session.BarOpenInt = reader.GetOpenInterests();
}

// Walks to the wanted security. SymbolInterval is left as the last one looked at gives it.
bool FindSecurity(MetaLibReader& reader, const std::string& symbol, const std::string& interval,
                  SimSession& session) {
  while (reader.NextSecurity() >= 1) {
    reader.ReadSecurityHeader();
    session.SymbolInterval = std::to_string(reader.SecurityInterval());
    if (session.SymbolInterval == interval && reader.SecuritySymbol() == symbol) return true;
  }
  return false;
}

}  // namespace

std::int16_t BarLoader::LoadBars(std::string& symbol, std::string_view directory) {
  symbol = NormalisedSymbol(symbol);
  try {
    return Load(symbol, directory);
  } catch (const MetaLibError&) {
    return 0;
  }
}

std::int16_t BarLoader::Load(const std::string& symbol, std::string_view directory) {
  const std::string interval = desktop_.form1().cbxPeriod.Text();
  MetaLibReader reader(cache_);
  reader.OpenDirectory(directory);
  if (!FindSecurity(reader, symbol, IntervalToMatch(interval), session_)) return 0;
  if (const std::optional<SeriesArguments> series = ReplayableInterval(interval)) {
    reader.SelectSeries(symbol, series->daily, series->minutes);
  }
  reader.ReadSeries();
  StoreArrays(reader, session_);
  const int last = session_.LastArrayIndex();
  if (last >= kLongestSeries) return 0;
  reader.CloseSecurity();
  reader.CloseDirectory();
  return static_cast<std::int16_t>(last);
}

}  // namespace velumar
