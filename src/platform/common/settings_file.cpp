#include "platform/common/settings_file.h"

#include "base/paths.h"

namespace velumar {

namespace {

constexpr std::string_view kSection = "Settings";

}  // namespace

std::optional<std::string> FileSettings::Read(std::string_view key) const {
  return ReadFrom(kSection, key);
}

std::optional<std::string> FileSettings::ReadFrom(std::string_view name,
                                                  std::string_view key) const {
  const Sections& sections = file_.Current();
  const auto section = sections.find(name);
  if (section == sections.end()) return std::nullopt;
  const auto entry = section->second.find(key);
  if (entry == section->second.end()) return std::nullopt;
  return entry->second;
}

std::string FileSettings::Place() const { return PathText(file_.File()); }

void FileSettings::Save(std::string_view key, std::string_view text) {
  file_.Change([&](Sections& sections) {
    sections[std::string(kSection)].insert_or_assign(std::string(key), std::string(text));
  });
}

}  // namespace velumar
