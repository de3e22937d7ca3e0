#pragma once

#include <filesystem>
#include <string>

namespace velumar {

// A temporary market data directory, deleted with the object. It has the daily securities "S0",
// "S1" and so on, with seven fields and one data file each: "S0" has `long_bars` bars, all others
// `short_bars`.
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

// The date of a bar. Each is one day after the previous one, in months of 28 days.
int LargeDirectoryDate(int bar);

}  // namespace velumar
