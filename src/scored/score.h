#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace velumar {

// What a trader posts at the end of a run.
struct Score {
  std::string name;
  double money = 0;
  std::string symbol;
  std::int32_t start_date = 0;  // yyyymmdd
  std::int32_t end_date = 0;
};

// A post that can't be taken, in words for who posted it.
class BadScore : public std::invalid_argument {
 public:
  using std::invalid_argument::invalid_argument;
};

inline constexpr std::size_t kLongestName = 60;  // bytes
inline constexpr std::size_t kLongestSymbol = 32;

// Reads "username=…&score=…&zanno=yes&symbol=…&startdate=…&enddate=…", which comes without any
// encoding: the keys and their order tell where a value ends, so that a name may hold "&" and "=".
// Throws BadScore, also for a blank name and for characters that no screen shows.
Score ParseScore(std::string_view query);

// A line of the list: " 1.  2,012,345.50  Ann  ABC  2005-01-03 to 2005-06-30".
std::string ScoreLine(std::size_t rank, const Score& score);

}  // namespace velumar
