#include "platform/windows/registry.h"

#include <windows.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "base/windows_text.h"

namespace velumar {

namespace {

constexpr RegistryRoot kSettingsRoot = RegistryRoot::kCurrentUser;
constexpr std::string_view kSettingsKey = "Settings";

HKEY RootHandle(RegistryRoot root) {
  switch (root) {
    case RegistryRoot::kClassesRoot:
      return HKEY_CLASSES_ROOT;
    case RegistryRoot::kCurrentUser:
      return HKEY_CURRENT_USER;
    case RegistryRoot::kLocalMachine:
      return HKEY_LOCAL_MACHINE;
    case RegistryRoot::kUsers:
      return HKEY_USERS;
    case RegistryRoot::kPerformanceData:
      return HKEY_PERFORMANCE_DATA;
    case RegistryRoot::kCurrentConfig:
      return HKEY_CURRENT_CONFIG;
    case RegistryRoot::kDynData:
      return HKEY_DYN_DATA;
    case RegistryRoot::kNone:
      break;
  }
  return nullptr;
}

// Most chart programs have 32 bits: what they store for all users is in a separate view, which
// 64-bit programs must ask for. They share the other roots.
REGSAM ViewOf(RegistryRoot root) {
  return root == RegistryRoot::kLocalMachine ? KEY_WOW64_32KEY : 0;
}

bool IsText(DWORD type) { return type == REG_SZ || type == REG_EXPAND_SZ; }

// Reads the value as it is stored.
LSTATUS QueryBytes(HKEY key, const std::wstring& name, DWORD& type, std::string& bytes) {
  constexpr DWORD kUsual = 512;
  DWORD size = kUsual;
  LSTATUS code = ERROR_MORE_DATA;
  while (code == ERROR_MORE_DATA) {
    bytes.resize(size);
    code = ::RegQueryValueExW(key, name.c_str(), nullptr, &type,
                              reinterpret_cast<BYTE*>(bytes.data()), &size);
  }
  bytes.resize(code == ERROR_SUCCESS ? size : 0);
  return code;
}

std::string TextOf(std::string_view bytes) {
  const std::wstring_view wide(reinterpret_cast<const wchar_t*>(bytes.data()),
                               bytes.size() / sizeof(wchar_t));
  return Utf8Text(wide.substr(0, wide.find(L'\0')));
}

}  // namespace

struct SystemRegistry::Opened {
  explicit Opened(HKEY native) : key(native) {}
  Opened(Opened&& other) noexcept : key(std::exchange(other.key, nullptr)) {}
  Opened& operator=(Opened&&) = delete;
  ~Opened() {
    if (key != nullptr) ::RegCloseKey(key);
  }

  HKEY key;
};

SystemRegistry::SystemRegistry() = default;

SystemRegistry::~SystemRegistry() = default;

long SystemRegistry::OpenKey(RegistryRoot root, std::string_view sub_key, std::uint32_t access,
                             RegistryKey& key) {
  HKEY native = nullptr;
  const LSTATUS code = ::RegOpenKeyExW(RootHandle(root), WideText(sub_key).c_str(), 0,
                                       access | ViewOf(root), &native);
  if (code != ERROR_SUCCESS) return code;
  key = ++last_key_;
  opened_.emplace(key, Opened(native));
  return code;
}

void SystemRegistry::CloseKey(RegistryKey key) { opened_.erase(key); }

long SystemRegistry::QueryValue(RegistryKey key, std::string_view name, RegistryType& type,
                                std::string& bytes) {
  const auto opened = opened_.find(key);
  if (opened == opened_.end()) return ERROR_INVALID_HANDLE;
  DWORD native_type = REG_NONE;
  std::string raw;
  const LSTATUS code = QueryBytes(opened->second.key, WideText(name), native_type, raw);
  if (code != ERROR_SUCCESS) return code;
  bytes = IsText(native_type) ? TextOf(raw) : std::move(raw);
  type = IsText(native_type) ? RegistryType::kString : static_cast<RegistryType>(native_type);
  return code;
}

long SystemRegistry::SetValue(RegistryKey key, std::string_view name, RegistryType type,
                              std::string_view bytes) {
  const auto opened = opened_.find(key);
  if (opened == opened_.end()) return ERROR_INVALID_HANDLE;
  if (type == RegistryType::kDWord && bytes.size() != sizeof(DWORD)) {
    return ERROR_INVALID_PARAMETER;
  }
  const std::wstring text = type == RegistryType::kString ? WideText(bytes) : std::wstring();
  // The length counts no terminating zero, except for an empty text.
  const std::string_view stored =
      type == RegistryType::kString
          ? std::string_view(reinterpret_cast<const char*>(text.data()),
                             std::max<std::size_t>(text.size(), 1) * sizeof(wchar_t))
          : bytes;
  return ::RegSetValueExW(opened->second.key, WideText(name).c_str(), 0, static_cast<DWORD>(type),
                          reinterpret_cast<const BYTE*>(stored.data()),
                          static_cast<DWORD>(stored.size()));
}

long SystemRegistry::DeleteValue(RegistryKey key, std::string_view name) {
  const auto opened = opened_.find(key);
  if (opened == opened_.end()) return ERROR_INVALID_HANDLE;
  return ::RegDeleteValueW(opened->second.key, WideText(name).c_str());
}

long SystemRegistry::CreateKey(RegistryRoot root, std::string_view sub_key) {
  HKEY native = nullptr;
  const LSTATUS code = ::RegCreateKeyExW(RootHandle(root), WideText(sub_key).c_str(), 0, nullptr,
                                         REG_OPTION_NON_VOLATILE, KEY_READ | ViewOf(root), nullptr,
                                         &native, nullptr);
  if (code == ERROR_SUCCESS) ::RegCloseKey(native);
  return code;
}

long SystemRegistry::DeleteKey(RegistryRoot root, std::string_view sub_key) {
  return ::RegDeleteKeyExW(RootHandle(root), WideText(sub_key).c_str(), ViewOf(root), 0);
}

std::optional<std::string> RegistrySettings::Read(std::string_view key) const {
  return ReadFrom(kSettingsKey, key);
}

std::optional<std::string> RegistrySettings::ReadFrom(std::string_view section,
                                                      std::string_view key) const {
  SystemRegistry registry;
  RegistryKey opened = 0;
  const std::string path = application_ + "\\" + std::string(section);
  if (registry.OpenKey(kSettingsRoot, path, Registry::kRead, opened) != 0) return std::nullopt;
  RegistryType type = RegistryType::kString;
  std::string text;
  const bool found = registry.QueryValue(opened, key, type, text) == 0;
  return found && type == RegistryType::kString ? std::optional(text) : std::nullopt;
}

std::string RegistrySettings::Place() const { return "HKEY_CURRENT_USER\\" + application_; }

void RegistrySettings::Save(std::string_view key, std::string_view text) {
  SystemRegistry registry;
  RegistryKey opened = 0;
  const std::string path = application_ + "\\" + std::string(kSettingsKey);
  long code = registry.CreateKey(kSettingsRoot, path);
  if (code == 0) code = registry.OpenKey(kSettingsRoot, path, Registry::kWrite, opened);
  if (code == 0) code = registry.SetValue(opened, key, RegistryType::kString, text);
  if (code == 0) return;
  throw std::runtime_error(
      "The registry key " + Place() + "\\" + std::string(kSettingsKey) +
      " could not be written: " + SystemErrorText(static_cast<unsigned long>(code)));
}

}  // namespace velumar
