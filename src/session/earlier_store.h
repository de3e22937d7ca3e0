#pragma once

#include <filesystem>

namespace velumar {

// True if the folder holds only what a version without store marks put into its store: copies of
// the index files of the parent directory, at most one series, whose bars are all in that directory
// too, the folder MSSmart and files whose names begin with a point. True for an empty folder as
// well.
bool IsEarlierStore(const std::filesystem::path& folder);

}  // namespace velumar
