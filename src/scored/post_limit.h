#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <string>

namespace velumar {

// How many scores one address may post within a minute. Memory is bounded: in a minute in which
// more addresses come than are counted, new ones wait for the next.
class PostLimit {
 public:
  using Moment = std::chrono::steady_clock::time_point;
  static constexpr std::size_t kAddresses = 10'000;

  explicit PostLimit(int per_minute) : per_minute_(per_minute) {}
  // Counts one more post of the address; false when it is one too many.
  bool Allows(const std::string& address, Moment now);

 private:
  int per_minute_;
  Moment minute_{};
  std::map<std::string, int> posts_;  // in this minute
};

}  // namespace velumar
