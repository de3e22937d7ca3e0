#pragma once

#include <optional>
#include <string>
#include <vector>

#include "charthost/bar_series.h"
#include "charthost/series_choice.h"
#include "marketdata/index_cache.h"
#include "marketdata/metalib_reader.h"

namespace velumar {

struct LoadedSeries {
  SecurityInfo security;
  BarSeries bars;
};

// Reads the folders that charts are drawn from. It never holds nor writes them: another program
// may be changing the bars at any moment. Every failure is a MetaLibError with a sentence to show.
class SeriesSource {
 public:
  explicit SeriesSource(IndexCache& cache) : cache_(cache) {}

  // All securities of the folder, in the order of its index files.
  std::vector<SecurityInfo> List(const std::string& folder) const;

  // The series that the request means now, with its bars. `shown` is the file that the chart has
  // shown so far.
  LoadedSeries Load(const SeriesRequest& request, std::optional<int> shown) const;

 private:
  IndexCache& cache_;
};

}  // namespace velumar
