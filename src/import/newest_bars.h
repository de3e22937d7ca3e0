#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "marketdata/bar.h"

namespace velumar {

// The newest bars of a series, as many as a run can play.
class NewestBars {
 public:
  // In time order, or all in the opposite order.
  void Add(const Bar& bar, bool backwards);
  std::int64_t Count() const { return count_; }
  // Oldest first. `without_newest` leaves out the newest bar.
  std::vector<Bar> Take(bool backwards, bool without_newest);

 private:
  std::vector<Bar> bars_;
  std::size_t oldest_ = 0;  // in bars_, once it is full
  std::int64_t count_ = 0;
};

}  // namespace velumar
