#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velumar {

// The index and data files of a market data directory under the names that they have on the disk,
// which come in any case: "MASTER", "Master", "f12.dat".
class DirectoryListing {
 public:
  DirectoryListing() = default;

  // Regular files alone. Throws MetaLibError (kNoData) where the directory can't be listed.
  static DirectoryListing Read(const std::filesystem::path& directory);

  // The name on the disk of the file that is called so in upper case; empty where there is none.
  // Of twins in another case, the one that sorts first (upper case) counts.
  std::string_view Find(std::string_view upper_name) const;

  // `upper_name` in the case that the directory's files are written in, for a new file.
  std::string Styled(std::string_view upper_name) const;

 private:
  std::vector<std::pair<std::string, std::string>> names_;  // upper case, as on the disk; sorted
};

}  // namespace velumar
