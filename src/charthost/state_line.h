#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velumar {

// The active chart as a program that watches this one wants to know it.
struct ChartState {
  std::string symbol;
  std::string name;
  std::string folder;
  int interval = -1;  // -1: not intraday; else minutes
  int bars = 0;
  std::int32_t last_date = 0;
  std::int32_t last_time = 0;
  float last_close = 0;
  int first_shown = 0;  // bars in view, both included; the first lies behind the last when none is
  int last_shown = -1;
  std::string error;  // the sentence that the chart shows, if any
};

struct HostState {
  int charts = 0;
  int active = -1;  // place of the active chart among them, -1 without charts
  std::string title;
};

// One line of JSON without its end: what has happened ("ready", "opened", "closed", "refreshed",
// "activated"), and the state after it. `chart` is null without charts, "last" without bars.
std::string StateLine(std::string_view event, const HostState& host, const ChartState* chart);

}  // namespace velumar
