#include "platform/windows/registry_settings.h"

#include <stdexcept>

#include "base/windows_text.h"
#include "platform/windows/system_registry.h"

namespace velumar {

namespace {

constexpr RegistryRoot kRoot = RegistryRoot::kCurrentUser;
constexpr std::string_view kSection = "Settings";

}  // namespace

std::optional<std::string> RegistrySettings::Read(std::string_view key) const {
  return ReadFrom(kSection, key);
}

std::optional<std::string> RegistrySettings::ReadFrom(std::string_view section,
                                                      std::string_view key) const {
  SystemRegistry registry;
  RegistryKey opened = 0;
  const std::string path = application_ + "\\" + std::string(section);
  if (registry.OpenKey(kRoot, path, Registry::kRead, opened) != 0) return std::nullopt;
  RegistryType type = RegistryType::kString;
  std::string text;
  const bool found = registry.QueryValue(opened, key, type, text) == 0;
  return found && type == RegistryType::kString ? std::optional(text) : std::nullopt;
}

std::string RegistrySettings::Place() const { return "HKEY_CURRENT_USER\\" + application_; }

void RegistrySettings::Save(std::string_view key, std::string_view text) {
  SystemRegistry registry;
  RegistryKey opened = 0;
  const std::string path = application_ + "\\" + std::string(kSection);
  long code = registry.CreateKey(kRoot, path);
  if (code == 0) code = registry.OpenKey(kRoot, path, Registry::kWrite, opened);
  if (code == 0) code = registry.SetValue(opened, key, RegistryType::kString, text);
  if (code == 0) return;
  throw std::runtime_error(
      "The registry key " + Place() + "\\" + std::string(kSection) +
      " can't be written: " + SystemErrorText(static_cast<unsigned long>(code)));
}

}  // namespace velumar
