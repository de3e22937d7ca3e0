#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

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
  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
      return std::hash<std::string_view>()(text);
    }
  };

  // From the upper-cased name to the one on the disk.
  std::unordered_map<std::string, std::string, TextHash, std::equal_to<>> names_;
  std::string sample_;  // the first name by its bytes, to take the case of new names from
};

}  // namespace velumar
