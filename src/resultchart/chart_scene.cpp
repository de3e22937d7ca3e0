#include "resultchart/chart_scene.h"

#include <algorithm>

namespace velumar {

std::optional<ChartType> ChartTypeOf(std::string_view text) {
  const auto found = std::ranges::find(kChartTypes, text, &ChartTypeName::text);
  return found == kChartTypes.end() ? std::nullopt : std::optional(found->type);
}

bool HasDepth(ChartType type) {
  return type == ChartType::k3DBar || type == ChartType::k3DLine || type == ChartType::k3DStep;
}

bool IsLine(ChartType type) {
  return type == ChartType::k2DLine || type == ChartType::k2DArea || type == ChartType::k3DLine;
}

bool StandsOnBase(ChartType type) {
  return type != ChartType::k2DLine && type != ChartType::k3DLine;
}

}  // namespace velumar
