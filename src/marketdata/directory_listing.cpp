#include "marketdata/directory_listing.h"

#include <algorithm>
#include <system_error>

#include "base/paths.h"
#include "base/text.h"
#include "marketdata/metalib_error.h"

namespace velumar {

namespace {

constexpr std::size_t kExtensionSize = 4;

bool IsOurs(std::string_view upper_name) {
  if (upper_name.ends_with("MASTER")) return true;
  if (upper_name.size() <= kExtensionSize || upper_name[0] != 'F') return false;
  const auto extension = upper_name.substr(upper_name.size() - kExtensionSize);
  return extension == ".DAT" || extension == ".MWD" || extension == ".DOP";
}

bool IsRegular(const std::filesystem::directory_entry& entry) {
  std::error_code unreadable;
  return entry.is_regular_file(unreadable) && !unreadable;
}

bool IsLower(char c) { return c >= 'a' && c <= 'z'; }

[[noreturn]] void ThrowNoDirectory(const std::filesystem::path& directory, std::error_code error) {
  throw MetaLibError(MetaLibError::kNoData, "There is no market data in \"" + PathText(directory) +
                                                "\": " + error.message());
}

}  // namespace

DirectoryListing DirectoryListing::Read(const std::filesystem::path& directory) {
  DirectoryListing listing;
  std::error_code error;
  std::filesystem::directory_iterator at(directory, error);
  for (; !error && at != std::filesystem::directory_iterator(); at.increment(error)) {
    const std::string name = PathText(at->path().filename());
    const std::string upper = UpperCased(name);
    if (!IsOurs(upper) || !IsRegular(*at)) continue;
    const auto [entry, is_new] = listing.names_.try_emplace(upper, name);
    if (!is_new && name < entry->second) entry->second = name;
    if (listing.sample_.empty() || name < listing.sample_) listing.sample_ = name;
  }
  if (error) ThrowNoDirectory(directory, error);
  return listing;
}

std::string_view DirectoryListing::Find(std::string_view upper_name) const {
  const auto found = names_.find(upper_name);
  return found == names_.end() ? std::string_view() : found->second;
}

std::string DirectoryListing::Styled(std::string_view upper_name) const {
  std::string styled(upper_name);
  if (std::ranges::none_of(sample_, IsLower)) return styled;
  for (std::size_t i = IsLower(sample_.front()) ? 0 : 1; i < styled.size(); ++i) {
    if (styled[i] >= 'A' && styled[i] <= 'Z') styled[i] = static_cast<char>(styled[i] - 'A' + 'a');
  }
  return styled;
}

}  // namespace velumar
