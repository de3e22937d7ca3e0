#pragma once

#include <string>
#include <string_view>

namespace velumar {

// Deletes the ordinary files of the working store; subfolders and their files stay, and so do
// files whose name begins with a point: marks and locks of ours. Throws
// std::filesystem::filesystem_error when the store can't be listed or a file can't be deleted.
void ClearWorkingStore(std::string_view sim_dir);

// Copies the ordinary files whose name holds `word` in any case, replacing what has their name; an
// empty word takes all. Both folder texts get a closing "\"; a missing destination is created, one
// level. The first failure ends it: std::filesystem::filesystem_error names the file.
void CopyFiles(std::string& source, std::string& destination, std::string_view word);

}  // namespace velumar
