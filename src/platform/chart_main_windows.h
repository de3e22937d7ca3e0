#pragma once

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "platform/chart_program_names.h"

namespace velumar {

inline bool IsChartProgramFile(std::string_view name) {
  return UpperCased(name) == kChartProgramFile;
}

// The chart program's main windows among the windows of a desktop, in their order. A folder or a
// letter may be called like the chart program too: of the windows whose title begins with the host
// title, those of the program's own file count alone, if there are any; of these the ones whose
// title is exactly that. `title_of` and `runs_chart_program` tell of a window.
template <typename Window, typename TitleOf, typename RunsChartProgram>
std::vector<Window> ChartMainWindows(const std::vector<Window>& windows,
                                     std::string_view host_title, TitleOf title_of,
                                     RunsChartProgram runs_chart_program) {
  std::vector<Window> chosen;
  std::copy_if(windows.begin(), windows.end(), std::back_inserter(chosen),
               [&](Window window) { return title_of(window).starts_with(host_title); });
  const auto prefer = [&chosen](auto accepts) {
    std::vector<Window> accepted;
    std::copy_if(chosen.begin(), chosen.end(), std::back_inserter(accepted), accepts);
    if (!accepted.empty()) chosen = std::move(accepted);
  };
  prefer(runs_chart_program);
  prefer([&](Window window) { return title_of(window) == host_title; });
  return chosen;
}

}  // namespace velumar
