#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velumar {

// Where Velumar's own chart program listens for requests: each process under a name of its own.
std::string ChartLinkListener(std::uint32_t process);

// An order as a chart marks it.
struct OrderMark {
  int bar = 0;  // index in the series
  double price = 0;
  bool is_long = true;
  bool entry = true;
  bool earlier = false;  // of the trade that is played again

  bool operator==(const OrderMark&) const = default;
};

// A side that is held.
struct HeldLine {
  bool is_long = true;
  double price = 0;  // average
  double quantity = 0;
  double profit = 0;  // open, in money

  bool operator==(const HeldLine&) const = default;
};

// A stop or target of an open trade, or of the plan that waits for the next order.
struct PlanLine {
  int bar = 0;  // index of the trade's bar, where the line begins
  double price = 0;
  bool stop = true;
  bool reached = false;
  bool waits = false;

  bool operator==(const PlanLine&) const = default;
};

// What was traded in a series, and what the next order would trade, for its charts.
struct ChartPositions {
  std::vector<OrderMark> orders = {};
  std::vector<HeldLine> held = {};
  std::vector<PlanLine> plans = {};
  double quantity = 0;          // of the next order; 0 if it can't be used
  double profit_per_point = 0;  // money of one unit

  bool operator==(const ChartPositions&) const = default;
};

// What Velumar asks of its own chart program. Each request is answered once it is done; a refresh
// is done when the bars are on the screen. A picture is taken before the next request and written
// later.
struct ChartRequest {
  enum class Command : std::uint8_t {
    kNone,
    kHello,
    kCloseAll,
    kOpen,
    kRefresh,
    kPositions,
    kPicture,
    kTheme,
    kQuit
  };

  Command command = Command::kHello;
  std::string folder = {};           // kOpen, kRefresh, kPositions, kPicture: the working store
  std::string symbol = {};           // the same; kCloseAll: what opens next, may be empty
  std::optional<int> interval = {};  // kOpen: minutes, -1 for daily bars; unset: the one with bars
  bool alone = false;                // kOpen: played blind, so no other series can be compared
  ChartPositions positions = {};     // kRefresh, kPositions
  std::string picture = {};          // kPicture: the file, see platform/journal_picture.h
  bool dark = false;                 // kTheme
};

// The request as JSON, with the version of the protocol, and back. Reading returns nothing for any
// other text or version.
std::string ChartRequestText(const ChartRequest& request);
std::optional<ChartRequest> ReadChartRequest(std::string_view text);

enum class LinkOutcome : std::uint8_t {
  kDone,
  kRefused,   // another version of the protocol, a chart that can't be opened, or no chart
  kNoAnswer,  // in time
  kNotThere,  // that process is no chart program of ours
};

// The direct link to our own chart program. It needs no focus and types nothing.
class ChartLink {
 public:
  virtual ~ChartLink() = default;
  // Sends the request to a process and waits for the answer. No events run in between.
  virtual LinkOutcome Ask(std::uint32_t process, const ChartRequest& request,
                          std::chrono::milliseconds patience) = 0;
};

}  // namespace velumar
