#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "base/raw_file.h"
#include "import/import_options.h"

namespace velumar {

// A file that was imported into a directory.
struct RememberedFile {
  std::filesystem::path file = {};  // absolute
  ImportOptions options = {};
  FileStamp stamp = {};  // size and time of the file that was read; the rest is not remembered
};

// What a market data directory remembers of its imports, in a small JSON file of ours in it.
inline constexpr std::string_view kImportMemory = "velumar-imports.json";

// In the order of the imports. Empty if there is no such file. Throws ImportError that names the
// file if it is damaged: nothing of it is trusted then.
std::vector<RememberedFile> RememberedImports(std::string_view directory);

// Adds files, or replaces what is remembered of them. Returns what failed as a sentence, or an
// empty text: the bars are stored in any case. A damaged file is left as it is.
std::string RememberImports(std::string_view directory, std::vector<RememberedFile> files);

}  // namespace velumar
