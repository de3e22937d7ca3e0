#pragma once

#include "platform/qt/registry_file.h"
#include "support/scratch_folder.h"

namespace velumar {

// A registry in which a test may change everything below kRoot.
class RegistryDriver {
 public:
  static constexpr const char* kRoot = "Software\\VelumarTest";

  std::unique_ptr<Registry> Open() const {
    return std::make_unique<FileRegistry>(folder_ / "registry");
  }

 private:
  ScratchFolder folder_;
};

}  // namespace velumar
