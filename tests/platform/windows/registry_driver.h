#pragma once

#include <windows.h>

#include <memory>

#include "platform/windows/registry.h"

namespace velumar {

// A registry in which a test may change everything below kRoot.
class RegistryDriver {
 public:
  static constexpr const char* kRoot = "Software\\VelumarTest";

  RegistryDriver() { Clear(); }
  ~RegistryDriver() { Clear(); }

  std::unique_ptr<Registry> Open() const { return std::make_unique<SystemRegistry>(); }

 private:
  static void Clear() { ::RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\VelumarTest"); }
};

}  // namespace velumar
