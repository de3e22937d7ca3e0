#pragma once

#include <string>
#include <vector>

#include "import/price_import.h"

namespace velumar {

// What was understood of price files, as velumar-cli prints it.

// A table with a line for each series, then the remarks and questions of each file.
std::string UnderstandingText(const std::vector<Understanding>& files);
// The meaning of each column of a file, and why.
std::string ExplanationText(const Understanding& file);
// One object. Dates are yyyymmdd, times hhmmss; interval is -1 for daily bars.
std::string UnderstandingJson(const std::vector<Understanding>& files);

// What became of a series: "AAPL D: 250 bars, 20230103 to 20231229", or "AAPL D: 12 new bars, 3
// changed, 1 missing in the file kept, 20230103 to 20231229".
std::string ImportedText(const ImportedSeries& series);

// What a scale makes of a series' prices: "--scale 10000 multiplies them (1.19978 becomes
// 11997.8)"; empty for 1.
std::string ScaleAdvice(int suggested_scale, const FoundSeries& series);

}  // namespace velumar
