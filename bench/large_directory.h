#pragma once

#include <filesystem>
#include <string>

namespace velumar {

// A market data directory in the folder for temporary files, gone with the object. It holds
// securities "S0", "S1" and so on, daily with seven fields, and one data file each: "S0" has
// `long_bars` bars and all others have `short_bars`.
class LargeDirectory {
 public:
  LargeDirectory(int securities, int long_bars, int short_bars);
  ~LargeDirectory();
  LargeDirectory(const LargeDirectory&) = delete;
  LargeDirectory& operator=(const LargeDirectory&) = delete;

  std::string Text() const;
  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// The date of a bar: each is one day behind the one before, 28 days a month.
int LargeDirectoryDate(int bar);

}  // namespace velumar
