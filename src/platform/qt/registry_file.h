#pragma once

#include <filesystem>
#include <functional>
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
// The parents of a key exist too.
class FileRegistry : public Registry {
 public:
  // Usually UserFile("registry"), which is kept as "registry.ini"; see SharedIniFile.
  explicit FileRegistry(const std::filesystem::path& file) : file_(file) {}

  bool HasKey(RegistryRoot root, std::string_view key) override;
  long CreateKey(RegistryRoot root, std::string_view key) override;
  long ReadText(std::string_view key, std::string_view name, std::string& text) override;
  long WriteText(std::string_view key, std::string_view name, std::string_view text) override;

  // Sentences for the user about a damaged file, to be shown once after the construction.
  std::vector<std::string> TakeProblems() { return file_.TakeProblems(); }

 private:
  long Change(const std::function<void()>& change);

  SharedIniFile file_;
};

}  // namespace velumar
