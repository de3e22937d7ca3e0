#pragma once

#include <string>
#include <string_view>

namespace velumar {

class IndexCache;

// One series as CSV with the header "date,time,open,high,low,close,volume,openinterest". Each
// number is the shortest decimal that reads back as the same 32-bit float; a time is hhmmss with
// six digits, or 0 in a daily series. Importing it gives the same series. `interval` is -1 or
// minutes. Throws MetaLibError.
std::string CsvOfSeries(std::string_view directory, std::string_view symbol, int interval,
                        IndexCache& cache);

}  // namespace velumar
