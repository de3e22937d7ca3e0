#pragma once

#include <string>
#include <string_view>

namespace velumar {

class IndexCache;

// One series as CSV text with the header "date,time,open,high,low,close,volume,openinterest". Each
// number is the shortest decimal that reads back as the same 32-bit float, a time six digits hhmmss
// and 0 in a daily series, so that an import takes it in again unchanged. `interval` is -1 or
// minutes. Throws MetaLibError.
std::string CsvOfSeries(std::string_view directory, std::string_view symbol, int interval,
                        IndexCache& cache);

}  // namespace velumar
