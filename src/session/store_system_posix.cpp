#include <unistd.h>

#include <cerrno>

#include "session/store_system.h"

namespace velumar {

namespace fs = std::filesystem;

void CopyWritable(const fs::path& from, const fs::path& to) {
  fs::copy_file(from, to, fs::copy_options::overwrite_existing);
  fs::permissions(to, fs::perms::owner_read | fs::perms::owner_write, fs::perm_options::add);
}

std::string ThisProgram() {
  return std::string(program_invocation_short_name) + " (process " + std::to_string(::getpid()) +
         ")";
}

}  // namespace velumar
