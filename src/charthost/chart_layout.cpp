#include "charthost/chart_layout.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <nlohmann/json.hpp>
#include <optional>

namespace velumar {
namespace {

using Json = nlohmann::ordered_json;

// In the order of Tiling.
constexpr std::array<const char*, 4> kTilingNames = {"tabs", "side by side", "stacked", "four"};

std::optional<LaidChart> ReadChart(const Json& saved) {
  if (!saved.is_object()) return std::nullopt;
  LaidChart chart;
  try {
    chart.symbol = saved.value("symbol", std::string());
    chart.interval = saved.value("interval", chart.interval);
    for (const auto& text : saved.value("frames", std::vector<std::string>())) {
      ReadFrame(text, chart.frames);
    }
  } catch (const Json::exception&) {
    return std::nullopt;
  }
  return chart;
}

Json ToJson(const LaidChart& chart) {
  Json json = Json::object();
  if (!chart.symbol.empty()) {
    json["symbol"] = chart.symbol;
    json["interval"] = chart.interval;
  }
  json["frames"] = Json::array();
  for (const auto& [interval, frame] : chart.frames) {
    json["frames"].push_back(FrameText(interval, frame));
  }
  return json;
}

}  // namespace

int TileCount(Tiling tiling) {
  switch (tiling) {
    case Tiling::kTabs:
      return 1;
    case Tiling::kSideBySide:
    case Tiling::kStacked:
      return 2;
    case Tiling::kFour:
      break;
  }
  return 4;
}

std::string FrameText(int interval, Frame frame) {
  return std::to_string(interval) + "=" + FrameName(frame);
}

void ReadFrame(const std::string& text, std::map<int, Frame>& frames) {
  int interval = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), interval);
  if (error != std::errc() || end == text.data() + text.size() || *end != '=') return;
  const std::string name(end + 1, text.data() + text.size());
  const Frame frame = FrameFromName(name);
  if (FrameName(frame) == name) frames[interval] = frame;
}

std::string LayoutText(const ChartLayout& layout) {
  Json json = {{"tiling", kTilingNames[static_cast<std::size_t>(layout.tiling)]},
               {"charts", Json::array()}};
  for (const LaidChart& chart : layout.charts) json["charts"].push_back(ToJson(chart));
  return json.dump(-1, ' ', true, Json::error_handler_t::replace);
}

ChartLayout ReadLayout(std::string_view text) {
  ChartLayout layout;
  const Json json = Json::parse(text, nullptr, false);
  if (!json.is_object()) return layout;
  const auto name = std::ranges::find(kTilingNames, json.value("tiling", Json()));
  if (name != kTilingNames.end()) {
    layout.tiling = static_cast<Tiling>(name - kTilingNames.begin());
  }
  std::vector<LaidChart> charts;
  for (const Json& saved : json.value("charts", Json())) {
    std::optional<LaidChart> chart = ReadChart(saved);
    if (chart && charts.size() < ChartLayout::kMostCharts) charts.push_back(*std::move(chart));
  }
  if (!charts.empty()) layout.charts = std::move(charts);
  return layout;
}

}  // namespace velumar
