#include "session/delay.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "base/number_text.h"

namespace velumar {

namespace {

constexpr std::string_view kDefaultDelay = "3";
constexpr int kLongestDelaySeconds = 32;
constexpr int kMillisecondsPerSecond = 1000;

}  // namespace

std::string UsableDelay(std::string_view seconds) {
  std::string text(seconds);
  if (text.find('.') == std::string::npos) std::replace(text.begin(), text.end(), ',', '.');
  const std::optional<double> number = ToDouble(text);
  if (!number || *number < 0) return std::string(kDefaultDelay);
  const bool fits = *number <= kLongestDelaySeconds;
  return fits ? text : std::to_string(kLongestDelaySeconds);
}

std::int16_t DelayMilliseconds(std::string_view seconds) {
  const double usable = ToDouble(UsableDelay(seconds)).value_or(0);
  if (usable <= 0) return 0;
  return static_cast<std::int16_t>(std::max(std::lround(usable * kMillisecondsPerSecond), 1L));
}

std::string DelaySeconds(std::int16_t milliseconds) {
  return PlainNumberText(static_cast<float>(milliseconds) / kMillisecondsPerSecond);
}

}  // namespace velumar
