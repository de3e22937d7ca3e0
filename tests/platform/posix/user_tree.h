#pragma once

#include <cstdlib>
#include <filesystem>

namespace velumar {

// The folders of an installed program, its samples and a user's files, below `root`.
struct UserTree {
  explicit UserTree(const std::filesystem::path& root)
      : program(root / "usr/lib/velumar"),
        shared_samples(root / "usr/share/velumar/samples"),
        own(root / "home/velumar") {
    setenv("XDG_DATA_HOME", own.parent_path().c_str(), 1);
  }
  ~UserTree() { unsetenv("XDG_DATA_HOME"); }

  std::filesystem::path program;
  std::filesystem::path shared_samples;
  std::filesystem::path own;
};

}  // namespace velumar
