#pragma once

#include <windows.h>

#include <filesystem>
#include <memory>

#include "platform/windows/registry.h"

namespace velumar {

// A registry that a test may change below kRoot.
struct RegistryDriver {
  static constexpr const char* kRoot = "Software\\VelumarTest";

  RegistryDriver() { Clear(); }
  ~RegistryDriver() { Clear(); }
  static void Clear() { ::RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\VelumarTest"); }
  static std::unique_ptr<Registry> Open() { return std::make_unique<SystemRegistry>(); }
};

// An installed program, its samples and a user's files.
inline constexpr const char* kProgramFolder = "program";
inline constexpr const char* kSharedSamples = "program/share/samples";
inline constexpr const char* kOwnFolder = "home/Velumar";
inline void SetHome(const std::filesystem::path& folder) {
  ::SetEnvironmentVariableW(L"LOCALAPPDATA", folder.c_str());
}

}  // namespace velumar
