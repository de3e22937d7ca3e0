#pragma once

#include "platform/chart_link.h"

namespace velumar {

// The link to our chart program of this user on this desktop.
class IpcChartLink : public ChartLink {
 public:
  LinkAnswer Ask(const ChartRequest& request, std::chrono::milliseconds patience) override;
};

}  // namespace velumar
