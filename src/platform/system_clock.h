#pragma once

#include <cstdint>

#include "platform/services.h"

namespace velumar {

class SystemClock : public WallClock {
 public:
  std::int32_t Today() const override;
};

}  // namespace velumar
