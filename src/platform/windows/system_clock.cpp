#include <windows.h>

#include "platform/system_clock.h"

namespace velumar {

std::int32_t SystemClock::Today() const {
  SYSTEMTIME now{};
  ::GetLocalTime(&now);
  return now.wYear * 10000 + now.wMonth * 100 + now.wDay;
}

}  // namespace velumar
