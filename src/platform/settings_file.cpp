#include "platform/settings_file.h"

namespace velumar {

namespace {

constexpr std::string_view kSection = "Settings";

}  // namespace

std::optional<std::string> FileSettings::Read(std::string_view key) const {
  const Sections& sections = file_.Current();
  const auto section = sections.find(kSection);
  if (section == sections.end()) return std::nullopt;
  const auto entry = section->second.find(key);
  if (entry == section->second.end()) return std::nullopt;
  return entry->second;
}

void FileSettings::Save(std::string_view key, std::string_view text) {
  file_.Change([&](Sections& sections) {
    sections[std::string(kSection)].insert_or_assign(std::string(key), std::string(text));
  });
}

}  // namespace velumar
