#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

namespace velumar {

struct Bar;
enum class BarField : std::uint8_t;

// An error of the market data library: a number for programs, and a sentence for traders that names
// the file, the symbol and the problem ("F12.DAT: no permission to write (in /data/set)").
class MetaLibError : public std::runtime_error {
 public:
  // The first three numbers are known to every user of such directories; ours start at 1700.
  static constexpr int kDateNotFound = 1604;    // SeekDate: every bar is older, or there is no bar
  static constexpr int kNoData = 1617;          // no directory, or none of the three index files
  static constexpr int kNoBar = 1659;           // there is no bar at the cursor
  static constexpr int kNoSeries = 1700;        // a call that needs a selected series
  static constexpr int kSeriesNotFound = 1701;  // the directory has no such symbol and interval
  static constexpr int kNotOpen = 1702;         // a call that needs an open directory
  static constexpr int kReadFailed = 1703;
  static constexpr int kWriteFailed = 1704;
  static constexpr int kDirectoryInUse = 1705;
  static constexpr int kNotStorable = 1706;    // a value that the file format cannot hold
  static constexpr int kSeriesFull = 1707;     // more bars than the format can count
  static constexpr int kDirectoryFull = 1708;  // no file number left for a new security

  MetaLibError(int number, const std::string& text) : std::runtime_error(text), number_(number) {}
  int Number() const { return number_; }

 private:
  int number_;
};

// The errors of this folder. `file` is the name that the sentence begins with, `interval` -1 or
// minutes.

// What a RawFile of this folder does on failure: throws kReadFailed or kWriteFailed.
[[noreturn]] void ThrowMarketFileError(const std::filesystem::path& file, std::string_view failure,
                                       int error);
[[noreturn]] void ThrowNotOpen();
[[noreturn]] void ThrowNoSeriesSelected(std::string_view call);
[[noreturn]] void ThrowSeriesNotFound(std::string_view symbol, int interval,
                                      const std::filesystem::path& directory);
[[noreturn]] void ThrowNotStorable(std::string_view file, std::string_view symbol, const Bar& bar,
                                   BarField field);
[[noreturn]] void ThrowSeriesFull(std::string_view file, std::string_view symbol);
[[noreturn]] void ThrowInUse(const std::filesystem::path& directory);

}  // namespace velumar
