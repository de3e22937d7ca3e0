#pragma once

#include <cstdint>
#include <string>

namespace velumar {

// The file that a path leads to, links followed. It is looked up without opening the file, because
// closing it again would drop SQLite's locks on it.
struct FileIdentity {
  enum class Kind : std::uint8_t { kMissing, kRegular, kOther };

  Kind kind = Kind::kMissing;
  std::uint64_t volume = 0;
  std::uint64_t number = 0;  // inode; file id on Windows
  std::uint64_t links = 0;   // names of the file
  std::uint64_t size = 0;    // bytes
  std::int64_t changed = 0;  // time of the last write, in the system's own unit

  bool HoldsBytes() const { return kind == Kind::kRegular && size > 0; }
  bool SameFile(const FileIdentity& other) const {
    return kind == other.kind && volume == other.volume && number == other.number;
  }
  bool operator==(const FileIdentity&) const = default;
};

// `path` is UTF-8. A path that can't be read counts as missing.
FileIdentity IdentityOf(const std::string& path);

}  // namespace velumar
