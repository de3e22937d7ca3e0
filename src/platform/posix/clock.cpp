#include "platform/system.h"

#include <chrono>
#include <ctime>

namespace velumar {

std::int32_t SystemClock::Today() const {
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm local{};
  // The time zone may have changed while the program runs.
  ::tzset();
  ::localtime_r(&now, &local);
  return (local.tm_year + 1900) * 10000 + (local.tm_mon + 1) * 100 + local.tm_mday;
}

}  // namespace velumar
