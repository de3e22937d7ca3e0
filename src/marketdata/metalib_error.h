#pragma once

#include <stdexcept>
#include <string>

namespace velumar {

// How the market data library reports: a number to sort by and a sentence that names the file, the
// symbol and what was wrong ("F12.DAT: no permission to write").
class MetaLibError : public std::runtime_error {
 public:
  // The first three numbers are known to every user of such directories; ours start at 1700.
  static constexpr int kDateNotFound = 1604;    // SeekDate: every bar is older, or there is no bar
  static constexpr int kNoData = 1617;          // no directory, or none of the three index files
  static constexpr int kNoBar = 1659;           // the cursor stands on no bar
  static constexpr int kNoSeries = 1700;        // a call that needs a selected series
  static constexpr int kSeriesNotFound = 1701;  // the directory has no such symbol and interval
  static constexpr int kNotOpen = 1702;         // a call that needs an open directory
  static constexpr int kReadFailed = 1703;
  static constexpr int kWriteFailed = 1704;
  static constexpr int kDirectoryInUse = 1705;
  static constexpr int kNotStorable = 1706;    // a value that the file format can't hold
  static constexpr int kSeriesFull = 1707;     // a count beyond what the format can tell
  static constexpr int kDirectoryFull = 1708;  // no file number left for a new security

  MetaLibError(int number, const std::string& text) : std::runtime_error(text), number_(number) {}
  int Number() const { return number_; }

 private:
  int number_;
};

}  // namespace velumar
