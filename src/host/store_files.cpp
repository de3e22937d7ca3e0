#include "host/store_files.h"

#include <filesystem>

#include "base/file_copy.h"
#include "base/paths.h"
#include "base/text.h"

namespace velumar {

namespace fs = std::filesystem;

void ClearWorkingStore(std::string_view sim_dir) {
  for (const fs::directory_entry& entry : fs::directory_iterator(NativePath(sim_dir))) {
    const bool ours = PathText(entry.path().filename()).starts_with('.');
    if (!ours && !entry.is_directory()) fs::remove(entry.path());
  }
}

void CopyFiles(std::string& source, std::string& destination, std::string_view word) {
  source = WithClosingBackslash(source);
  destination = WithClosingBackslash(destination);
  const fs::path to = NativePath(destination);
  if (!fs::exists(to)) fs::create_directory(to);
  for (const fs::directory_entry& entry : fs::directory_iterator(NativePath(source))) {
    const fs::path name = entry.path().filename();
    const bool wanted = UpperCased(PathText(name)).find(UpperCased(word)) != std::string::npos;
    if (wanted && entry.is_regular_file()) CopyWritable(entry.path(), to / name);
  }
}

}  // namespace velumar
