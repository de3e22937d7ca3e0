#pragma once

#include <optional>
#include <string>
#include <vector>

#include "charthost/bar_series.h"
#include "marketdata/index_cache.h"
#include "marketdata/metalib_reader.h"

namespace velumar {

// What a chart was asked to show.
struct SeriesRequest {
  std::string folder;  // in the system's own form
  std::string symbol;
  // Set if a row of the list was chosen. Otherwise only the symbol was typed: a working store may
  // get its bars later, in any of the symbol's intervals.
  std::optional<int> file_number;
};

// The series among the securities of a folder that the request means: the chosen file; otherwise,
// of its symbol, the file in `shown` as long as it has bars, the first one with bars, or the first.
// Nothing if the folder doesn't have the symbol.
std::optional<SecurityInfo> ChooseSeries(const std::vector<SecurityInfo>& securities,
                                         const SeriesRequest& request, std::optional<int> shown);

// What was entered in the file dialog.
struct TypedChoice {
  std::string folder;
  std::string symbol;
  std::optional<int> interval;  // unset: whichever has bars
};

// The request for these entries; throws std::invalid_argument with a sentence to show.
SeriesRequest RequestOf(const TypedChoice& choice, const std::vector<SecurityInfo>& securities);

struct LoadedSeries {
  SecurityInfo security;
  BarSeries bars;
};

// True for the folder of a run, which gets the bars of its series, and of those that are compared,
// as the run goes on.
bool IsWorkingStore(const std::string& folder);

// Reads the folders that charts show. It neither locks nor writes them, since another program may
// be changing the bars at any moment. Every failure is a MetaLibError with a sentence to show.
class SeriesSource {
 public:
  explicit SeriesSource(IndexCache& cache) : cache_(cache) {}

  // All securities of the folder, in the order of its index files.
  std::vector<SecurityInfo> List(const std::string& folder) const;

  // The series that the request means now, with its bars. `shown` is the number of the file that
  // the chart shows so far.
  LoadedSeries Load(const SeriesRequest& request, std::optional<int> shown) const;

 private:
  IndexCache& cache_;
};

}  // namespace velumar
