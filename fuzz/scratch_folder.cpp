#include "scratch_folder.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>

namespace velumar {

namespace fs = std::filesystem;

fs::path EmptyScratchFolder() {
  const char* const given = std::getenv("VELUMAR_FUZZ_FOLDER");
  const fs::path folder = (given != nullptr ? fs::path(given) : fs::temp_directory_path()) /
                          ("velumar-fuzz-" + std::to_string(getpid()));
  fs::remove_all(folder);
  fs::create_directory(folder);
  return folder;
}

void WriteWhole(const fs::path& file, std::string_view bytes) {
  std::ofstream(file, std::ios::binary) << bytes;
}

}  // namespace velumar
