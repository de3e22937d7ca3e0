#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace velumar {

// The score of a run, as a trader posts it.
struct Score {
  std::string name;
  double money = 0;
  std::string symbol;
  std::int32_t start_date = 0;  // yyyymmdd
  std::int32_t end_date = 0;
};

// A post that is refused; the text is for the trader.
class BadScore : public std::invalid_argument {
 public:
  using std::invalid_argument::invalid_argument;
};

inline constexpr std::size_t kLongestName = 60;  // bytes
inline constexpr std::size_t kLongestSymbol = 32;

// Parses "username=…&score=…&zanno=yes&symbol=…&startdate=…&enddate=…". Values are not encoded: the
// keys and their order delimit them, so a name may contain "&" and "=".
// Throws BadScore, also for a blank name and for invisible characters.
Score ParseScore(std::string_view query);

// A line of the list: " 1.  2,012,345.50  Ann  ABC  2005-01-03 to 2005-06-30".
std::string ScoreLine(std::size_t rank, const Score& score);

}  // namespace velumar
