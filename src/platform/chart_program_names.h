#pragma once

#include <string>
#include <string_view>

namespace velumar {

// What the chart program is known by on a desktop: its file, the beginning of its windows' titles,
// and its file dialog by title and, where windows have classes, by class.
inline constexpr std::string_view kChartProgramFile = "MSWIN.EXE";
inline constexpr std::string_view kChartTitle = "MetaStock";
inline constexpr std::string_view kChartFileDialog = "Open";
inline constexpr std::string_view kChartFileDialogClass = "#32770";

}  // namespace velumar
