#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/registry.h"
#include "platform/common/section_file.h"

namespace velumar {

// A registry for platforms without one, as a file of sections: one for each key, named by its whole
// path with the root in front, with an entry for each value:
//
//   [HKEY_CURRENT_USER\Software\Equis\Common\8.0\File Paths]
//   ProgramPath=string:/opt/velumar/charthost
//
// The other types are "dword:" with 8 and "binary:" with pairs of hexadecimal digits. A key above a
// section exists without one of its own. section_file.h tells how the file is kept from harm.
class FileRegistry : public Registry {
 public:
  // Usually UserFile("registry").
  explicit FileRegistry(std::filesystem::path file) : file_(std::move(file)) {}

  // Codes beyond those of Registry: 6 for a root or key that isn't one, 87 for a number that hasn't
  // four bytes.
  long OpenKey(RegistryRoot root, std::string_view sub_key, std::uint32_t access,
               RegistryKey& key) override;
  void CloseKey(RegistryKey key) override;
  long QueryValue(RegistryKey key, std::string_view name, RegistryType& type,
                  std::string& bytes) override;
  long SetValue(RegistryKey key, std::string_view name, RegistryType type,
                std::string_view bytes) override;
  long DeleteValue(RegistryKey key, std::string_view name) override;
  long CreateKey(RegistryRoot root, std::string_view sub_key) override;
  // A key with other keys under it isn't deleted: 5.
  long DeleteKey(RegistryRoot root, std::string_view sub_key) override;

  // Sentences for the user about a damaged file; to be shown once after the construction.
  std::vector<std::string> TakeProblems() { return file_.TakeProblems(); }

 private:
  struct OpenedKey {
    std::string path;
    std::uint32_t access;
  };

  long Write(RegistryKey key, const std::function<void(SectionEntries&)>& change);
  long Change(const std::function<void(Sections&)>& change);

  SectionFile file_;
  std::map<RegistryKey, OpenedKey> opened_;
  RegistryKey last_key_ = 0;
};

}  // namespace velumar
