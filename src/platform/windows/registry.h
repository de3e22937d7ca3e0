#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/registry.h"
#include "platform/services.h"

namespace velumar {

// The registry of Windows, in the view of 32-bit programs. Names and texts are UTF-8.
class SystemRegistry : public Registry {
 public:
  SystemRegistry();
  ~SystemRegistry() override;

  long OpenKey(RegistryRoot root, std::string_view sub_key, std::uint32_t access,
               RegistryKey& key) override;
  void CloseKey(RegistryKey key) override;
  long QueryValue(RegistryKey key, std::string_view name, RegistryType& type,
                  std::string& bytes) override;
  long SetValue(RegistryKey key, std::string_view name, RegistryType type,
                std::string_view bytes) override;
  long DeleteValue(RegistryKey key, std::string_view name) override;
  long CreateKey(RegistryRoot root, std::string_view sub_key) override;
  // Returns 5 for a key that has subkeys, which is not deleted.
  long DeleteKey(RegistryRoot root, std::string_view sub_key) override;

 private:
  struct Opened;
  std::map<RegistryKey, Opened> opened_;
  RegistryKey last_key_ = 0;
};

// The user's settings in the registry: a key for each section below "Software\Velumar", a text for
// each setting.
class RegistrySettings : public SettingsStore {
 public:
  // `application` is a path below HKEY_CURRENT_USER.
  explicit RegistrySettings(std::string_view application = "Software\\Velumar")
      : application_(application) {}

  std::optional<std::string> Read(std::string_view key) const override;
  std::optional<std::string> ReadFrom(std::string_view section,
                                      std::string_view key) const override;
  std::string Place() const override;
  // Throws std::runtime_error with the system's reason if the registry can't be written.
  void Save(std::string_view key, std::string_view text) override;

 private:
  std::string application_;
};

}  // namespace velumar
