#pragma once

#include "platform/qt/shared_ini_file.h"
#include "platform/services.h"

namespace velumar {

// The settings in an INI file, which the user may edit.
class FileSettings : public SettingsStore {
 public:
  // Usually UserFile("settings"), which is kept as "settings.ini"; see SharedIniFile.
  explicit FileSettings(const std::filesystem::path& file) : file_(file) {}

  std::optional<std::string> Read(std::string_view key) const override;
  std::optional<std::string> ReadFrom(std::string_view section,
                                      std::string_view key) const override;
  std::string Place() const override;
  // Throws std::runtime_error naming the file if it can't be written.
  void Save(std::string_view key, std::string_view text) override;

  // Sentences for the user about a damaged file, to be shown once after the construction.
  std::vector<std::string> TakeProblems() { return file_.TakeProblems(); }

 private:
  mutable SharedIniFile file_;
};

}  // namespace velumar
