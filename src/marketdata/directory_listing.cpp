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
    std::string name = PathText(at->path().filename());
    std::string upper = UpperCased(name);
    if (IsOurs(upper) && IsRegular(*at)) {
      listing.names_.emplace_back(std::move(upper), std::move(name));
    }
  }
  if (error) ThrowNoDirectory(directory, error);
  std::ranges::sort(listing.names_);
  return listing;
}

std::string_view DirectoryListing::Find(std::string_view upper_name) const {
  const auto found = std::ranges::lower_bound(
      names_, upper_name, {}, [](const auto& entry) -> std::string_view { return entry.first; });
  if (found == names_.end() || found->first != upper_name) return {};
  return found->second;
}

std::string DirectoryListing::Styled(std::string_view upper_name) const {
  std::string styled(upper_name);
  const bool lower_tail = !names_.empty() && std::ranges::any_of(names_.front().second, IsLower);
  if (!lower_tail) return styled;
  const bool lower_start = IsLower(names_.front().second.front());
  for (std::size_t i = lower_start ? 0 : 1; i < styled.size(); ++i) {
    if (styled[i] >= 'A' && styled[i] <= 'Z') styled[i] = static_cast<char>(styled[i] - 'A' + 'a');
  }
  return styled;
}

}  // namespace velumar
