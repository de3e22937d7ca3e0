#include "app/wiring/chart_link.h"

#include "platform/ipc.h"

namespace velumar {

LinkAnswer IpcChartLink::Ask(const ChartRequest& request, std::chrono::milliseconds patience) {
  const IpcAnswer answer = SendIpcRequest(kChartLinkListener, ChartRequestText(request), patience);
  switch (answer.status) {
    case IpcAnswer::Status::kNobodyListens:
      return {LinkOutcome::kNotThere, 0};
    case IpcAnswer::Status::kNoAnswer:
      return {LinkOutcome::kNoAnswer, 0};
    case IpcAnswer::Status::kAnswered:
      break;
  }
  return {answer.accepted ? LinkOutcome::kDone : LinkOutcome::kRefused, answer.process};
}

}  // namespace velumar
