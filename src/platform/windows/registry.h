#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/registry.h"
#include "platform/services.h"

namespace velumar {

// The registry of Windows, in the view of 32-bit programs. Names and texts are UTF-8.
class SystemRegistry : public Registry {
 public:
  bool HasKey(RegistryRoot root, std::string_view key) override;
  long CreateKey(RegistryRoot root, std::string_view key) override;
  // Returns 1630 for a value that isn't a text.
  long ReadText(std::string_view key, std::string_view name, std::string& text) override;
  long WriteText(std::string_view key, std::string_view name, std::string_view text) override;
};

// The user's settings in the registry: a key for each section below "Software\Velumar", a text for
// each setting.
class RegistrySettings : public SettingsStore {
 public:
  // `application` is a path below HKEY_CURRENT_USER.
  explicit RegistrySettings(std::string_view application = "Software\\Velumar")
      : application_(application) {}

  std::optional<std::string> ReadFrom(std::string_view section,
                                      std::string_view key) const override;
  std::string Place() const override;
  // Throws std::runtime_error with the system's reason if the registry can't be written.
  void Save(std::string_view key, std::string_view text) override;

 private:
  std::string application_;
};

}  // namespace velumar
