#include "session/run_inputs.h"

#include "base/text.h"
#include "marketdata/interval.h"

namespace velumar {

namespace {

std::string SeriesName(const std::string& symbol, const std::string& interval) {
  return (symbol.empty() ? "no symbol" : symbol) + " (" + interval + ")";
}

}  // namespace

std::string LoadedSeriesProblem(const SimSession& session, const RunInputs& inputs) {
  if (session.BarDate.empty()) return "No bars loaded";
  const std::string interval = inputs.Interval();
  const RunSeries& loaded = session.Run;
  const std::string symbol = NormalisedSymbol(session.Symbol);
  const bool same =
      symbol == loaded.symbol && IntervalToMatch(interval) == IntervalToMatch(loaded.interval);
  if (same) return {};
  return "The loaded bars are " + SeriesName(loaded.symbol, loaded.interval) + ", not " +
         SeriesName(symbol, interval) + ": press Start in the setup window";
}

}  // namespace velumar
