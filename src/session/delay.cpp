#include "session/delay.h"

#include <optional>

#include "base/decimal.h"
#include "base/number_text.h"

namespace velumar {

namespace {

constexpr std::string_view kDefaultDelay = "3";
constexpr int kLongestDelaySeconds = 32;
constexpr int kMillisecondsPerSecond = 1000;

}  // namespace

std::string UsableDelay(std::string_view seconds) {
  const std::optional<Decimal> number = Decimal::FromText(seconds);
  if (!number || !number->IsWhole() || (number->Negative() && !number->IsZero())) {
    return std::string(kDefaultDelay);
  }
  const std::optional<std::int16_t> whole = ToInt16(seconds);
  const bool fits = whole && *whole <= kLongestDelaySeconds;
  return fits ? std::string(seconds) : std::to_string(kLongestDelaySeconds);
}

std::int16_t DelayMilliseconds(std::string_view seconds) {
  return static_cast<std::int16_t>(ToInt16(UsableDelay(seconds)).value_or(0) *
                                   kMillisecondsPerSecond);
}

std::string DelaySeconds(std::int16_t milliseconds) {
  return std::to_string(milliseconds / kMillisecondsPerSecond);
}

}  // namespace velumar
