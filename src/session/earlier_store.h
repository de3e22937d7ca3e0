#pragma once

#include <filesystem>

namespace velumar {

// True if the folder holds nothing but the working store of a Velumar that did not yet mark its
// stores: copies of the index files of the directory around it, at most one series, whose bars are
// all in that directory too, the folder MSSmart and files of ours. An empty folder is one as well.
bool IsEarlierStore(const std::filesystem::path& folder);

}  // namespace velumar
