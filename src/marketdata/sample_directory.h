#pragma once

#include <string_view>

namespace velumar {

class IndexCache;

// Writes the sample data that a new user practises on: a market data directory of invented
// securities, daily and of 5, 15, 30 and 60 minutes, with the same bytes every time and everywhere.
// Answers the number of its series. A directory that holds anything else is left as it is; one that
// holds the sample data already needs nothing. Throws MetaLibError.
int WriteSampleDirectory(std::string_view directory, IndexCache& cache);

}  // namespace velumar
