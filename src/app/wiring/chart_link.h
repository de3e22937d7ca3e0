#pragma once

#include "platform/chart_link.h"

namespace velumar {

// The link to chart programs of this user on this desktop.
class IpcChartLink : public ChartLink {
 public:
  LinkOutcome Ask(std::uint32_t process, const ChartRequest& request,
                  std::chrono::milliseconds patience) override;
};

}  // namespace velumar
