#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velumar {

// Where Velumar's own chart program listens for requests.
inline constexpr std::string_view kChartLinkListener = "_VELUMAR_CHART_LINK";

// What Velumar asks of its own chart program. Each request is answered once it is done; a refresh
// is done when the bars are on the screen.
struct ChartRequest {
  enum class Command : std::uint8_t { kHello, kCloseAll, kOpen, kRefresh };

  Command command = Command::kHello;
  std::string folder = {};           // kOpen, kRefresh: the working store
  std::string symbol = {};           // kOpen
  std::optional<int> interval = {};  // kOpen: minutes, -1 for daily bars; unset: the one with bars
};

// The request as JSON, with the version of the protocol, and back. Reading returns nothing for any
// other text or version.
std::string ChartRequestText(const ChartRequest& request);
std::optional<ChartRequest> ReadChartRequest(std::string_view text);

enum class LinkOutcome : std::uint8_t {
  kDone,
  kRefused,   // another version of the protocol, or a chart that can't be opened
  kNoAnswer,  // in time
  kNotThere,  // no chart program of ours is running
};

struct LinkAnswer {
  LinkOutcome outcome = LinkOutcome::kNotThere;
  std::uint32_t process = 0;  // that answered
};

// The direct link to our own chart program. It needs no focus and types nothing.
class ChartLink {
 public:
  virtual ~ChartLink() = default;
  // Sends the request and waits for the answer. No events run in between.
  virtual LinkAnswer Ask(const ChartRequest& request, std::chrono::milliseconds patience) = 0;
};

}  // namespace velumar
