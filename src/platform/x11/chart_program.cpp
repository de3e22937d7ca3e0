#include "platform/x11/chart_program.h"

#include <algorithm>

#include "platform/chart_program.h"

namespace velumar {

std::vector<xcb_window_t> X11ChartProgram::MainWindows() {
  return ChartMainWindows(
      connection_.TopLevelWindows(), host_title_,
      [&](xcb_window_t window) { return connection_.Title(window); },
      [&](xcb_window_t window) {
        const std::vector<std::string> texts = connection_.ClassTexts(window);
        return std::any_of(texts.begin(), texts.end(), IsChartProgramFile);
      });
}

bool X11ChartProgram::TakesKeys(xcb_window_t window) {
  const std::vector<xcb_window_t> main_windows = MainWindows();
  if (std::find(main_windows.begin(), main_windows.end(), window) != main_windows.end()) {
    return true;
  }
  const std::string title = connection_.Title(window);
  return (title == kChartFileDialog || title.starts_with(host_title_)) &&
         BelongsTo(main_windows, window);
}

bool X11ChartProgram::Owns(xcb_window_t window) { return BelongsTo(MainWindows(), window); }

std::optional<xcb_window_t> X11ChartProgram::ShownDialog(std::string_view title) {
  const std::vector<xcb_window_t> main_windows = MainWindows();
  const std::vector<xcb_window_t> windows = connection_.TopLevelWindows();
  const auto dialog = std::find_if(windows.begin(), windows.end(), [&](xcb_window_t window) {
    return connection_.Title(window) == title && connection_.IsMapped(window) &&
           BelongsTo(main_windows, window);
  });
  return dialog == windows.end() ? std::nullopt : std::optional(*dialog);
}

bool X11ChartProgram::BelongsTo(const std::vector<xcb_window_t>& main_windows,
                                xcb_window_t window) {
  return std::any_of(main_windows.begin(), main_windows.end(), [&](xcb_window_t main_window) {
    return connection_.SameProgram(window, main_window);
  });
}

}  // namespace velumar
