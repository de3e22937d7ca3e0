#include <sys/stat.h>

#include "ledger/file_identity.h"

namespace velumar {

FileIdentity IdentityOf(const std::string& path) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) return {};
  constexpr std::int64_t kNanoseconds = 1'000'000'000;
  return {.kind = S_ISREG(info.st_mode) ? FileIdentity::Kind::kRegular : FileIdentity::Kind::kOther,
          .volume = info.st_dev,
          .number = info.st_ino,
          .links = info.st_nlink,
          .size = static_cast<std::uint64_t>(info.st_size),
          .changed = info.st_mtim.tv_sec * kNanoseconds + info.st_mtim.tv_nsec};
}

}  // namespace velumar
