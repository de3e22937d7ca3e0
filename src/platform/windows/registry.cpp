#include "platform/windows/registry.h"

#include <windows.h>

#include <algorithm>
#include <stdexcept>

#include "base/windows_text.h"

namespace velumar {

namespace {

HKEY RootHandle(RegistryRoot root) {
  return root == RegistryRoot::kLocalMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

// Most chart programs have 32 bits: what they store for all users is in a separate view, which
// 64-bit programs must ask for. They share the other roots.
REGSAM ViewOf(RegistryRoot root) {
  return root == RegistryRoot::kLocalMachine ? KEY_WOW64_32KEY : 0;
}

LSTATUS Open(RegistryRoot root, std::string_view key, REGSAM access, HKEY& opened) {
  return ::RegOpenKeyExW(RootHandle(root), WideText(key).c_str(), 0, access | ViewOf(root),
                         &opened);
}

}  // namespace

bool SystemRegistry::HasKey(RegistryRoot root, std::string_view key) {
  HKEY opened = nullptr;
  const bool there = Open(root, key, KEY_READ, opened) == ERROR_SUCCESS;
  if (there) ::RegCloseKey(opened);
  return there;
}

long SystemRegistry::CreateKey(RegistryRoot root, std::string_view key) {
  HKEY created = nullptr;
  const LSTATUS code = ::RegCreateKeyExW(RootHandle(root), WideText(key).c_str(), 0, nullptr,
                                         REG_OPTION_NON_VOLATILE, KEY_READ | ViewOf(root), nullptr,
                                         &created, nullptr);
  if (code == ERROR_SUCCESS) ::RegCloseKey(created);
  return code;
}

// The system ends what it returns with a zero.
long SystemRegistry::ReadText(std::string_view key, std::string_view name, std::string& text) {
  constexpr DWORD kTexts = RRF_RT_REG_SZ | RRF_RT_REG_EXPAND_SZ | RRF_NOEXPAND;
  DWORD bytes = 512;
  std::wstring wide;
  LSTATUS code = ERROR_MORE_DATA;
  while (code == ERROR_MORE_DATA) {
    wide.resize(bytes / sizeof(wchar_t) + 1);
    code = ::RegGetValueW(HKEY_CURRENT_USER, WideText(key).c_str(), WideText(name).c_str(), kTexts,
                          nullptr, wide.data(), &bytes);
  }
  if (code == ERROR_SUCCESS) text = Utf8Text(std::wstring_view(wide.c_str()));
  return code;
}

long SystemRegistry::WriteText(std::string_view key, std::string_view name, std::string_view text) {
  HKEY opened = nullptr;
  LSTATUS code = Open(RegistryRoot::kCurrentUser, key, KEY_WRITE, opened);
  if (code != ERROR_SUCCESS) return code;
  const std::wstring wide = WideText(text);
  // The length counts no terminating zero, except for an empty text.
  const std::size_t bytes = std::max<std::size_t>(wide.size(), 1) * sizeof(wchar_t);
  code = ::RegSetValueExW(opened, WideText(name).c_str(), 0, REG_SZ,
                          reinterpret_cast<const BYTE*>(wide.c_str()), static_cast<DWORD>(bytes));
  ::RegCloseKey(opened);
  return code;
}

std::optional<std::string> RegistrySettings::ReadFrom(std::string_view section,
                                                      std::string_view key) const {
  std::string text;
  const long code =
      SystemRegistry().ReadText(application_ + "\\" + std::string(section), key, text);
  return code == 0 ? std::optional(text) : std::nullopt;
}

std::string RegistrySettings::Place() const { return "HKEY_CURRENT_USER\\" + application_; }

void RegistrySettings::Save(std::string_view key, std::string_view text) {
  SystemRegistry registry;
  const std::string path = application_ + "\\" + std::string(kSection);
  long code = registry.CreateKey(RegistryRoot::kCurrentUser, path);
  if (code == 0) code = registry.WriteText(path, key, text);
  if (code == 0) return;
  throw std::runtime_error(
      "The registry key " + Place() + "\\" + std::string(kSection) +
      " could not be written: " + SystemErrorText(static_cast<unsigned long>(code)));
}

}  // namespace velumar
