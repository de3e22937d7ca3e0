#pragma once

#include <cstdint>
#include <string>

namespace velumar {

// What a path leads to at one moment, links followed. The file is not opened for it, since closing
// it would drop the locks that SQLite holds on it.
struct FileIdentity {
  enum class Kind : std::uint8_t { kMissing, kRegular, kOther };

  Kind kind = Kind::kMissing;
  std::uint64_t volume = 0;
  std::uint64_t number = 0;  // inode; on Windows the file id
  std::uint64_t links = 0;   // names of the file
  std::uint64_t size = 0;    // bytes
  std::int64_t changed = 0;  // time of the last write, in the system's own unit

  bool HoldsBytes() const { return kind == Kind::kRegular && size > 0; }
  bool SameFile(const FileIdentity& other) const {
    return kind == other.kind && volume == other.volume && number == other.number;
  }
  bool operator==(const FileIdentity&) const = default;
};

// `path` is UTF-8. A path that can't be looked at counts as missing.
FileIdentity IdentityOf(const std::string& path);

// The path of a file with all links resolved. The file may be missing, its folder may not.
std::string CanonicalPath(const std::string& path);

}  // namespace velumar
