#include "charthost/folder_text.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "base/paths.h"
#include "base/text.h"

namespace velumar {
namespace {

constexpr auto kSeparator = static_cast<char>(std::filesystem::path::preferred_separator);

bool IsSeparator(char c) { return c == '/' || c == '\\'; }

std::string WithHome(const std::string& text) {
  const bool home = text.starts_with('~') && (text.size() == 1 || IsSeparator(text[1]));
  const char* const folder = home ? std::getenv("HOME") : nullptr;
  return folder == nullptr ? text : folder + text.substr(1);
}

std::string WithSingleSeparators(const std::string& text) {
  std::string single;
  for (const char c : text) {
    // Two in front name a computer where drives have letters.
    const bool computer = kSeparator == '\\' && single.size() == 1;
    if (!IsSeparator(c)) {
      single += c;
    } else if (!single.ends_with(kSeparator) || computer) {
      single += kSeparator;
    }
  }
  return single;
}

// "/", or "C:\": without its separator a drive is the folder that a program stands in there.
bool IsRoot(const std::string& folder) {
  return folder.size() == 1 || (kSeparator == '\\' && folder.size() == 3 && folder[1] == ':');
}

bool IsHidden(const std::string& name) { return name.starts_with('.'); }

}  // namespace

std::string NormalFolder(std::string_view typed) {
  std::string folder = WithSingleSeparators(WithHome(Trimmed(typed)));
  if (folder.ends_with(kSeparator) && !IsRoot(folder)) folder.pop_back();
  return folder;
}

std::vector<std::string> FoldersBeginningWith(std::string_view typed, std::size_t limit) {
  const std::string text = WithSingleSeparators(WithHome(std::string(typed)));
  const auto slash = text.rfind(kSeparator);
  if (slash == std::string::npos) return {};
  const std::string parent = text.substr(0, slash + 1);
  const std::string beginning = text.substr(slash + 1);
  std::vector<std::string> folders;
  std::error_code error;
  const auto skip = std::filesystem::directory_options::skip_permission_denied;
  std::filesystem::directory_iterator entry(NativePath(parent), skip, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    const std::string name = PathText(entry->path().filename());
    if (!name.starts_with(beginning) || (IsHidden(name) && !IsHidden(beginning))) continue;
    std::error_code unknown;
    if (entry->is_directory(unknown)) folders.push_back(parent + name);
  }
  std::sort(folders.begin(), folders.end());
  if (folders.size() > limit) folders.resize(limit);
  return folders;
}

std::string CommonBeginning(const std::vector<std::string>& texts) {
  if (texts.empty()) return {};
  std::string common = texts.front();
  for (const std::string& text : texts) {
    const auto differ = std::mismatch(common.begin(), common.end(), text.begin(), text.end());
    common.erase(differ.first, common.end());
  }
  // Never half a character of several bytes.
  while (!common.empty() && common.size() < texts.front().size() &&
         (static_cast<unsigned char>(texts.front()[common.size()]) & 0xC0) == 0x80) {
    common.pop_back();
  }
  return common;
}

}  // namespace velumar
