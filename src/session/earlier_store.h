#pragma once

#include <filesystem>

namespace velumar {

// True if the folder may be the store of an earlier version, which did not mark its stores. It then
// holds only copies of the parent directory's index files, at most one series, whose bars are all
// in that directory too, the folder MSSmart, and files whose names begin with a point. An empty
// folder counts.
bool IsEarlierStore(const std::filesystem::path& folder);

}  // namespace velumar
