#include "resultchart/chart_type.h"

#include <algorithm>

namespace velumar {

namespace {

template <typename Matches>
std::optional<ChartType> FirstOf(const Matches& matches) {
  const auto found = std::ranges::find_if(kChartTypes, matches);
  return found == kChartTypes.end() ? std::nullopt : std::optional(found->type);
}

}  // namespace

std::optional<ChartType> ChartTypeOf(std::string_view text) {
  return FirstOf([text](const ChartTypeName& name) { return name.text == text; });
}

std::optional<ChartType> ChartTypeOf(int number) {
  return FirstOf([number](const ChartTypeName& name) { return int(name.type) == number; });
}

bool HasDepth(ChartType type) {
  return type == ChartType::k3DBar || type == ChartType::k3DLine || type == ChartType::k3DStep;
}

bool StandsOnBase(ChartType type) {
  return type != ChartType::k2DLine && type != ChartType::k3DLine;
}

}  // namespace velumar
