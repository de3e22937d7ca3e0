#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/qt/settings_file.h"
#include "platform/registry.h"

namespace velumar {

// A registry for systems without one, in an INI file whose groups are keys:
//
//   [HKEY_CURRENT_USER]
//   Software\Equis\Common\8.0\File%20Paths\ProgramPath=string:/opt/velumar/charthost
//
// Values are "string:" with the text, "dword:" or "binary:" with hexadecimal digits. The parents of
// a key exist too.
class FileRegistry : public Registry {
 public:
  // Usually UserFile("registry"), which is kept as "registry.ini"; see SharedIniFile.
  explicit FileRegistry(const std::filesystem::path& file) : file_(file) {}

  // Codes beyond those of Registry: 6 for an invalid root or key, 87 for a number that hasn't four
  // bytes.
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

  // Sentences for the user about a damaged file, to be shown once after the construction.
  std::vector<std::string> TakeProblems() { return file_.TakeProblems(); }

 private:
  struct OpenedKey {
    std::string path;
    std::uint32_t access;
  };

  // Runs `change` on the path of a key that was opened for writing.
  long Change(RegistryKey key, const std::function<void(const std::string& path)>& change);
  long Change(const std::function<void()>& change);

  SharedIniFile file_;
  std::map<RegistryKey, OpenedKey> opened_;
  RegistryKey last_key_ = 0;
};

}  // namespace velumar
