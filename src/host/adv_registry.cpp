#include "host/adv_registry.h"

#include <array>
#include <cstring>
#include <utility>

namespace velumar {

namespace {

constexpr std::string_view kError = "Error";

RegistryRoot RootKeyHandle(std::string_view name) {
  static constexpr std::array<std::pair<std::string_view, RegistryRoot>, 7> kRoots{{
      {"HKEY_CLASSES_ROOT", RegistryRoot::kClassesRoot},
      {"HKEY_CURRENT_USER", RegistryRoot::kCurrentUser},
      {"HKEY_LOCAL_MACHINE", RegistryRoot::kLocalMachine},
      {"HKEY_USERS", RegistryRoot::kUsers},
      {"HKEY_PERFORMANCE_DATA", RegistryRoot::kPerformanceData},
      {"HKEY_CURRENT_CONFIG", RegistryRoot::kCurrentConfig},
      {"HKEY_DYN_DATA", RegistryRoot::kDynData},
  }};
  for (const auto& [root_name, root] : kRoots) {
    if (root_name == name) return root;
  }
  return RegistryRoot::kNone;
}

}  // namespace

std::string RegErrorText(long code) {
  switch (code) {
    case 2:
    case 1010:
      return "Bad Key Name";
    case 4:
    case 1012:
      return "Can't Read Key";
    case 5:
      return "Access To this key Is Denied";
    case 8:
    case 14:
      return "Out Of memory";
    case 87:
      return "Invalid Parameter";
    case 234:
      return "There Is More Data Than The Buffer Has Been Allocated To Hold";
    case 1009:
    case 1015:
      return "The Registry Database Is Corrupt!";
    case 1011:
      return "Can't Open Key";
    case 1013:
      return "Can't Write Key";
    default:
      return "Undefined Error Code : " + std::string(code < 0 ? "" : " ") + std::to_string(code);
  }
}

bool ADVRegistry::SetDWordValue(std::string_view path, std::string_view name, std::uint32_t value) {
  std::array<char, sizeof value> bytes;
  std::memcpy(bytes.data(), &value, sizeof value);
  return Set(path, name, RegistryType::kDWord, {bytes.data(), bytes.size()});
}

std::variant<std::uint32_t, std::string> ADVRegistry::GetDWordValue(std::string_view path,
                                                                    std::string_view name) {
  KeyPath parts;
  if (!SplitKeyPath(path, parts)) return std::string();
  std::string bytes;
  std::uint32_t value = 0;
  if (!Get(path, name, bytes) || bytes.size() != sizeof value) return std::string(kError);
  std::memcpy(&value, bytes.data(), sizeof value);
  return value;
}

bool ADVRegistry::SetBinaryValue(std::string_view path, std::string_view name,
                                 std::string_view bytes) {
  return Set(path, name, RegistryType::kBinary, bytes);
}

std::string ADVRegistry::GetBinaryValue(std::string_view path, std::string_view name) {
  return GetStringValue(path, name);
}

bool ADVRegistry::SetStringValue(std::string_view path, std::string_view name,
                                 std::string_view text) {
  return Set(path, name, RegistryType::kString, text);
}

std::string ADVRegistry::GetStringValue(std::string_view path, std::string_view name) {
  KeyPath parts;
  if (!SplitKeyPath(path, parts)) return {};
  std::string bytes;
  return Get(path, name, bytes) ? bytes : std::string(kError);
}

bool ADVRegistry::CreateKey(std::string_view path) {
  KeyPath parts;
  return SplitKeyPath(path, parts) &&
         Succeeded(registry_.CreateKey(parts.root, parts.sub_key), path);
}

bool ADVRegistry::DeleteKey(std::string_view path) {
  KeyPath parts;
  return SplitKeyPath(path, parts) &&
         Succeeded(registry_.DeleteKey(parts.root, parts.sub_key), path);
}

bool ADVRegistry::DeleteKeyValue(std::string_view path, std::string_view name) {
  return WithKey(path, Registry::kWrite,
                 [&](RegistryKey key) { return registry_.DeleteValue(key, name); });
}

bool ADVRegistry::KeyExist(std::string_view path) {
  KeyPath parts;
  RegistryKey key = 0;
  if (!SplitKeyPath(path, parts)) return false;
  if (registry_.OpenKey(parts.root, parts.sub_key, Registry::kRead, key) != 0) return false;
  registry_.CloseKey(key);
  return true;
}

bool ADVRegistry::KeyValueExist(std::string_view path, std::string_view name) {
  const bool shown = std::exchange(show_errors_, false);
  std::string bytes;
  const bool exists = KeyExist(path) && Get(path, name, bytes);
  show_errors_ = shown;
  return exists;
}

bool ADVRegistry::SplitKeyPath(std::string_view path, KeyPath& parts) {
  if (!path.starts_with("HKEY_") || path.ends_with('\\')) {
    boxes_.Show("Incorrect Format: \n\n" + std::string(path), BoxIcon::kExclamation);
    return false;
  }
  const std::size_t end = path.find('\\');
  parts.root = RootKeyHandle(path.substr(0, end));
  parts.sub_key = end == std::string_view::npos ? std::string_view() : path.substr(end + 1);
  return parts.root != RegistryRoot::kNone;
}

bool ADVRegistry::WithKey(std::string_view path, std::uint32_t access,
                          const std::function<long(RegistryKey)>& call) {
  KeyPath parts;
  if (!SplitKeyPath(path, parts)) return false;
  RegistryKey key = 0;
  const long opened = registry_.OpenKey(parts.root, parts.sub_key, access, key);
  if (opened != 0) return Succeeded(opened, path);
  const long code = call(key);
  registry_.CloseKey(key);
  return Succeeded(code, path);
}

bool ADVRegistry::Set(std::string_view path, std::string_view name, RegistryType type,
                      std::string_view bytes) {
  return WithKey(path, Registry::kWrite,
                 [&](RegistryKey key) { return registry_.SetValue(key, name, type, bytes); });
}

bool ADVRegistry::Get(std::string_view path, std::string_view name, std::string& bytes) {
  return WithKey(path, Registry::kRead, [&](RegistryKey key) {
    RegistryType type = RegistryType::kString;
    return registry_.QueryValue(key, name, type, bytes);
  });
}

bool ADVRegistry::Succeeded(long code, std::string_view path) {
  if (code == 0) return true;
  if (show_errors_) {
    boxes_.Show(RegErrorText(code) + ": \n\n" + std::string(path), BoxIcon::kExclamation);
  }
  return false;
}

}  // namespace velumar
