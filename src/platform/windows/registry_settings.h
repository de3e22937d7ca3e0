#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/services.h"

namespace velumar {

// The settings of this user in the system's registry: a key for each section below
// "Software\Velumar", a text for each setting.
class RegistrySettings : public SettingsStore {
 public:
  // Another place for tests, below the user's own root.
  explicit RegistrySettings(std::string_view application = "Software\\Velumar")
      : application_(application) {}

  std::optional<std::string> Read(std::string_view key) const override;
  std::optional<std::string> ReadFrom(std::string_view section,
                                      std::string_view key) const override;
  std::string Place() const override;
  // Throws std::runtime_error with the system's reason when it can't be written.
  void Save(std::string_view key, std::string_view text) override;

 private:
  std::string application_;
};

}  // namespace velumar
