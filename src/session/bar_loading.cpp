#include "session/bar_loading.h"

#include <optional>

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

// Moves the reader to the security. SymbolInterval is that of the last one looked at.
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

std::int16_t LoadBars(SimSession& session, IndexCache& cache, std::string_view directory) {
  const auto& [run_directory, symbol, interval, start_day] = session.Run;
  const std::optional<SeriesArguments> series = ReplayableInterval(interval);
  MetaLibReader reader(cache);
  reader.OpenDirectory(directory);
  if (!series || !FindSecurity(reader, symbol, IntervalToMatch(interval), session)) {
    throw MetaLibError(MetaLibError::kSeriesNotFound, "There is no series \"" + symbol +
                                                          "\" at interval " + interval + " in \"" +
                                                          std::string(directory) + "\"");
  }
  reader.SelectSeries(symbol, series->daily, series->minutes);
  reader.ReadSeries();
  if (reader.GetDates().size() > kLongestSeries) {
    throw MetaLibError(kNotReplayable, "The series " + symbol + " at interval " + interval +
                                           " holds more than " + std::to_string(kLongestSeries) +
                                           " bars.");
  }
  StoreArrays(reader, session);
  reader.CloseSecurity();
  reader.CloseDirectory();
  return static_cast<std::int16_t>(session.LastArrayIndex());
}

}  // namespace velumar
