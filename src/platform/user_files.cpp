#include "platform/user_files.h"

#include <random>
#include <string>
#include <system_error>

namespace velumar {

namespace fs = std::filesystem;

fs::path OwnCopy(const fs::path& shared, const fs::path& own) {
  if (fs::exists(own)) return own;
  // If two processes copy at once, each uses a folder of its own, and the first rename wins.
  const fs::path unfinished = own.parent_path() / ("." + own.filename().string() + "-" +
                                                   std::to_string(std::random_device()()));
  try {
    fs::create_directories(own.parent_path());
    fs::copy(shared, unfinished, fs::copy_options::recursive);
    fs::rename(unfinished, own);
  } catch (const fs::filesystem_error&) {
    std::error_code first_one_counts;
    fs::remove_all(unfinished, first_one_counts);
    if (!fs::exists(own)) throw;
  }
  return own;
}

}  // namespace velumar
