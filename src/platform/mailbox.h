#pragma once

#include <cstdint>
#include <string_view>

namespace velumar {

// A few numbers that one program of ours tells another on the same desktop. What they mean is
// agreed between the two.
struct Mail {
  std::uint32_t first = 0;
  std::uint32_t second = 0;
};

// Where Velumar hears of the keys that were typed to the chart: code, and 1 for Shift, 2 for a
// repeated key. The code 0 stands for a press of the mouse.
inline constexpr std::string_view kRunKeyMailbox = "_VELUMAR_RUN_KEYS";
inline constexpr std::uint32_t kMailShift = 1;
inline constexpr std::uint32_t kMailRepeated = 2;

// Leaves the mail in the box of that name; does not wait until it is read. False where nobody has
// such a box, or the desktop has no way to reach it.
bool PostMail(std::string_view box, const Mail& mail);

}  // namespace velumar
