#include "base/file_copy.h"

namespace velumar {

namespace fs = std::filesystem;

void CopyWritable(const fs::path& from, const fs::path& to) {
  fs::copy_file(from, to, fs::copy_options::overwrite_existing);
  fs::permissions(to, fs::perms::owner_read | fs::perms::owner_write, fs::perm_options::add);
}

}  // namespace velumar
