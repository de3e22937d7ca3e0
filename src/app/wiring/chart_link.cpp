#include "app/wiring/chart_link.h"

#include "platform/ipc.h"

namespace velumar {

LinkOutcome IpcChartLink::Ask(std::uint32_t process, const ChartRequest& request,
                              std::chrono::milliseconds patience) {
  switch (SendIpcRequest(ChartLinkListener(process), ChartRequestText(request), patience)) {
    case IpcAnswer::kAccepted:
      return LinkOutcome::kDone;
    case IpcAnswer::kRefused:
      return LinkOutcome::kRefused;
    case IpcAnswer::kNone:
      return LinkOutcome::kNoAnswer;
    case IpcAnswer::kNobodyListens:
      break;
  }
  return LinkOutcome::kNotThere;
}

}  // namespace velumar
