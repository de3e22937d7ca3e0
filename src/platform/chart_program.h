#pragma once

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry.h"

namespace velumar {

// How the chart program is recognised on a desktop: its file, the beginning of its windows' titles,
// and its file dialog by title and, where windows have classes, by class.
inline constexpr std::string_view kChartProgramFile = "MSWIN.EXE";
inline constexpr std::string_view kChartTitle = "MetaStock";
inline constexpr std::string_view kChartFileDialog = "Open";
inline constexpr std::string_view kChartFileDialogClass = "#32770";

// Ignores case.
bool IsChartProgramFile(std::string_view name);

// The chart program's main windows among `windows`, in their order. Other windows may have the same
// title, a folder or a letter for example: of the windows whose title begins with kChartTitle, only
// those of the program's own file count, if there are any; of these, only those whose title is
// exactly kChartTitle, if there are any.
template <typename Window, typename TitleOf, typename RunsChartProgram>
std::vector<Window> ChartMainWindowsAmong(const std::vector<Window>& windows, TitleOf title_of,
                                          RunsChartProgram runs_chart_program) {
  std::vector<Window> chosen;
  std::copy_if(windows.begin(), windows.end(), std::back_inserter(chosen),
               [&](Window window) { return title_of(window).starts_with(kChartTitle); });
  const auto prefer = [&chosen](auto accepts) {
    std::vector<Window> accepted;
    std::copy_if(chosen.begin(), chosen.end(), std::back_inserter(accepted), accepts);
    if (!accepted.empty()) chosen = std::move(accepted);
  };
  prefer(runs_chart_program);
  prefer([&](Window window) { return title_of(window) == kChartTitle; });
  return chosen;
}

// The window with exactly that title, otherwise the first whose title begins with it.
template <typename Window, typename TitleOf>
std::optional<Window> WindowWithTitle(const std::vector<Window>& windows, std::string_view title,
                                      TitleOf title_of) {
  std::optional<Window> beginning;
  for (const Window window : windows) {
    const std::string text = title_of(window);
    if (text == title) return window;
    if (!beginning && text.starts_with(title)) beginning = window;
  }
  return beginning;
}

// Writes the registry entries by which the chart program is found, where they are missing: a key
// that marks a version as installed, its program folder, and empty texts for the two data folders,
// which the setup window fills when it closes. A program folder without the program is changed to
// `program_folder`; all other entries stay. Throws std::runtime_error naming the key that can't be
// written.
void EnsureChartProgramKeys(Registry& registry, std::string_view program_folder);

}  // namespace velumar
