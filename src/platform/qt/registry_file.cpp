#include "platform/qt/registry_file.h"

#include <optional>
#include <stdexcept>

namespace velumar {

namespace {

// The codes of the registry functions.
constexpr long kSuccess = 0;
constexpr long kNotFound = 2;
constexpr long kDenied = 5;
constexpr long kDamaged = 1009;
constexpr long kWriteFailed = 1013;

constexpr std::string_view kText = "string:";

std::string KeyPath(RegistryRoot root, std::string_view key) {
  const bool user = root == RegistryRoot::kCurrentUser;
  return (user ? "HKEY_CURRENT_USER\\" : "HKEY_LOCAL_MACHINE\\") + std::string(key);
}

std::string UserPath(std::string_view key) { return KeyPath(RegistryRoot::kCurrentUser, key); }

}  // namespace

bool FileRegistry::HasKey(RegistryRoot root, std::string_view key) {
  return file_.HasGroup(KeyPath(root, key));
}

long FileRegistry::CreateKey(RegistryRoot root, std::string_view key) {
  return Change([&] { file_.AddGroup(KeyPath(root, key)); });
}

long FileRegistry::ReadText(std::string_view key, std::string_view name, std::string& text) {
  const std::optional<std::string> value = file_.Read(UserPath(key), name);
  if (!value) return file_.Blocked() ? kDamaged : kNotFound;
  if (!value->starts_with(kText)) return kDamaged;
  text = value->substr(kText.size());
  return kSuccess;
}

long FileRegistry::WriteText(std::string_view key, std::string_view name, std::string_view text) {
  const std::string path = UserPath(key);
  if (!file_.HasGroup(path)) return file_.Blocked() ? kDamaged : kNotFound;
  return Change([&] { file_.Write(path, name, std::string(kText).append(text)); });
}

long FileRegistry::Change(const std::function<void()>& change) {
  try {
    change();
    return kSuccess;
  } catch (const std::runtime_error&) {
    if (file_.Blocked()) return kDamaged;
    return file_.MayBeWritten() ? kWriteFailed : kDenied;
  }
}

}  // namespace velumar
