#pragma once

#include <cstdint>
#include <vector>

namespace velumar {

// One bar of a series. `date` is yyyymmdd, `time` hhmmss (0 where the series stores none); prices,
// volume and open interest are 32-bit floats, 0 where the data file lacks the field.
struct Bar {
  std::int32_t date = 0;
  std::int32_t time = 0;
  float open = 0;
  float high = 0;
  float low = 0;
  float close = 0;
  float volume = 0;
  float open_interest = 0;

  bool operator==(const Bar&) const = default;
};

}  // namespace velumar
