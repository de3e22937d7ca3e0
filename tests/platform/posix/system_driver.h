#pragma once

#include <cstdlib>

#include "platform/qt/registry_file.h"
#include "support/scratch_folder.h"

namespace velumar {

// A registry that a test may change below kRoot.
struct RegistryDriver {
  static constexpr const char* kRoot = "Software\\VelumarTest";

  std::unique_ptr<Registry> Open() const {
    return std::make_unique<FileRegistry>(folder / "registry");
  }

  ScratchFolder folder;
};

// An installed program, its samples and a user's files.
inline constexpr const char* kProgramFolder = "usr/lib/velumar";
inline constexpr const char* kSharedSamples = "usr/share/velumar/samples";
inline constexpr const char* kOwnFolder = "home/velumar";
inline void SetHome(const std::filesystem::path& folder) {
  ::setenv("XDG_DATA_HOME", folder.c_str(), 1);
}

}  // namespace velumar
