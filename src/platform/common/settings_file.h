#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/common/section_file.h"
#include "platform/services.h"

namespace velumar {

// The settings as a text file: section_file.h tells its form and how it's kept from harm.
class FileSettings : public SettingsStore {
 public:
  // Usually UserFile("settings").
  explicit FileSettings(std::filesystem::path file) : file_(std::move(file)) {}

  std::optional<std::string> Read(std::string_view key) const override;
  std::optional<std::string> ReadFrom(std::string_view section,
                                      std::string_view key) const override;
  std::string Place() const override;
  // Throws std::system_error naming the file when it can't be written.
  void Save(std::string_view key, std::string_view text) override;

  // Sentences for the user about a damaged file; to be shown once after the construction.
  std::vector<std::string> TakeProblems() { return file_.TakeProblems(); }

 private:
  mutable SectionFile file_;
};

}  // namespace velumar
