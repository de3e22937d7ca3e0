#include "charthost/state_line.h"

#include <array>
#include <charconv>
#include <nlohmann/json.hpp>

namespace velumar {
namespace {

using Json = nlohmann::ordered_json;

// The double with the shortest text of the float: 55.51, not 55.5099983.
double ShortestDouble(float value) {
  std::array<char, 32> text;
  const auto end = std::to_chars(text.begin(), text.end(), value).ptr;
  double shortest = 0;
  std::from_chars(text.begin(), end, shortest);
  return shortest;
}

Json LastBar(const ChartState& chart) {
  if (chart.bars == 0) return nullptr;
  return {{"date", chart.last_date},
          {"time", chart.last_time},
          {"close", ShortestDouble(chart.last_close)}};
}

Json ChartObject(const ChartState& chart) {
  return {{"symbol", chart.symbol},
          {"name", chart.name},
          {"folder", chart.folder},
          {"interval", chart.interval},
          {"bars", chart.bars},
          {"last", LastBar(chart)},
          {"shown", {chart.first_shown, chart.last_shown}},
          {"error", chart.error.empty() ? Json(nullptr) : Json(chart.error)}};
}

}  // namespace

std::string StateLine(std::string_view event, const HostState& host, const ChartState* chart) {
  const Json line = {{"event", event},
                     {"charts", host.charts},
                     {"active", host.active},
                     {"title", host.title},
                     {"chart", chart == nullptr ? Json(nullptr) : ChartObject(*chart)}};
  return line.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace velumar
