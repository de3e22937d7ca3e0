#include "platform/journal_picture.h"

#include <regex>
#include <string>
#include <system_error>

#include "base/paths.h"
#include "base/raw_file.h"

namespace velumar {

namespace {

constexpr const char* kFolder = "Journal";

}  // namespace

std::filesystem::path JournalPicture(const std::filesystem::path& ledger, int run, int place) {
  const std::string name =
      PathText(ledger.stem()) + "-" + std::to_string(run) + "-" + std::to_string(place) + ".png";
  return ledger.parent_path() / kFolder / NativePath(name);
}

bool IsJournalPicture(const std::filesystem::path& file) {
  static const std::regex kName(".+-[1-9][0-9]{0,9}-[1-9][0-9]{0,9}\\.png");
  constexpr std::size_t kLongestName = 255;
  const std::string name = PathText(file.filename());
  const std::filesystem::path folder = file.parent_path();
  std::error_code none;
  return file.is_absolute() && folder.filename() == kFolder && name.size() <= kLongestName &&
         std::regex_match(name, kName) &&
         std::filesystem::is_directory(folder.parent_path(), none) && !IsLink(folder);
}

}  // namespace velumar
