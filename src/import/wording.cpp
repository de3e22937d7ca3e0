#include "import/wording.h"

#include "base/dates.h"
#include "base/number_text.h"

namespace velumar {

std::string Counted(std::int64_t count, const std::string& unit) {
  return GroupedNumber(std::to_string(count)) + " " + unit + (count == 1 ? "" : "s");
}

std::string DayText(std::int32_t date) { return DateText(date, "d MMMM yyyy"); }

std::string DurationText(int seconds) {
  if (seconds % 3600 == 0) return Counted(seconds / 3600, "hour");
  if (seconds % 60 == 0) return Counted(seconds / 60, "minute");
  return Counted(seconds, "second");
}

}  // namespace velumar
