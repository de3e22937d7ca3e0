#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace velumar {

// The numbers are those of the list's entries in the result window.
enum class ChartType { k3DBar = 0, k2DBar = 1, k3DLine = 2, k2DLine = 3, k2DArea = 5, k3DStep = 6 };

struct ChartTypeName {
  ChartType type;
  std::string_view text;
};

inline constexpr std::array<ChartTypeName, 6> kChartTypes = {{{ChartType::k2DBar, "2D Bar"},
                                                              {ChartType::k3DBar, "3D Bar"},
                                                              {ChartType::k2DLine, "2D Line"},
                                                              {ChartType::k2DArea, "2D Area"},
                                                              {ChartType::k3DLine, "3D Line"},
                                                              {ChartType::k3DStep, "3D Step"}}};

std::optional<ChartType> ChartTypeOf(std::string_view text);
bool HasDepth(ChartType type);
// True for what is filled from a base line, so that its height is read.
bool StandsOnBase(ChartType type);

}  // namespace velumar
