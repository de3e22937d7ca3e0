#pragma once

#include <windows.h>

#include <filesystem>

namespace velumar {

// The folders of an installed program, its samples and a user's files, below `root`.
struct UserTree {
  explicit UserTree(const std::filesystem::path& root)
      : program(root / "program"),
        shared_samples(program / "share" / "samples"),
        own(root / "home" / "Velumar") {
    ::SetEnvironmentVariableW(L"LOCALAPPDATA", own.parent_path().c_str());
  }
  ~UserTree() { ::SetEnvironmentVariableW(L"LOCALAPPDATA", nullptr); }

  std::filesystem::path program;
  std::filesystem::path shared_samples;
  std::filesystem::path own;
};

}  // namespace velumar
