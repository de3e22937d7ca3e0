#pragma once

#include <filesystem>
#include <vector>

#include "import/price_import.h"

namespace velumar {

// What a file holds, ready to be stored if nothing is left open.
struct ReadPrices {
  struct Series {
    FoundSeries found;
    std::vector<Bar> bars;           // oldest first, at most kLongestSeries
    bool begins_within_bar = false;  // as in BuiltSeries
  };
  Understanding understanding;
  std::vector<Series> series;
};

// Reads a price file through. What it cannot read or decide is in the understanding. Throws only
// ImportCancelled.
ReadPrices ReadPriceFile(const std::filesystem::path& file, const ImportOptions& options,
                         const ImportProgress& progress);

}  // namespace velumar
