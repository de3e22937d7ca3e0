#include "platform/qt/settings_file.h"

#include "base/paths.h"

namespace velumar {

namespace {

constexpr std::string_view kSettingsGroup = "Settings";

}  // namespace

std::optional<std::string> FileSettings::Read(std::string_view key) const {
  return ReadFrom(kSettingsGroup, key);
}

std::optional<std::string> FileSettings::ReadFrom(std::string_view section,
                                                  std::string_view key) const {
  return file_.Read(section, key);
}

std::string FileSettings::Place() const { return PathText(file_.File()); }

void FileSettings::Save(std::string_view key, std::string_view text) {
  file_.Write(kSettingsGroup, key, text);
}

}  // namespace velumar
