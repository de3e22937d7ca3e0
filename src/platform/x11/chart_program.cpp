#include "platform/x11/chart_program.h"

#include <algorithm>

#include "platform/chart_program.h"

namespace velumar {

namespace {

bool BelongsTo(const std::vector<xcb_window_t>& main_windows, X11Connection& connection,
               xcb_window_t window) {
  return std::any_of(main_windows.begin(), main_windows.end(), [&](xcb_window_t main_window) {
    return connection.SameProgram(window, main_window);
  });
}

}  // namespace

std::vector<xcb_window_t> ChartMainWindows(X11Connection& connection) {
  return ChartMainWindowsAmong(
      connection.TopLevelWindows(), [&](xcb_window_t window) { return connection.Title(window); },
      [&](xcb_window_t window) {
        const std::vector<std::string> texts = connection.ClassTexts(window);
        return std::any_of(texts.begin(), texts.end(), IsChartProgramFile);
      });
}

bool IsOfChartProgram(X11Connection& connection, xcb_window_t window) {
  return BelongsTo(ChartMainWindows(connection), connection, window);
}

bool TakesChartKeys(X11Connection& connection, xcb_window_t window) {
  const std::vector<xcb_window_t> main_windows = ChartMainWindows(connection);
  const std::string title = connection.Title(window);
  return std::find(main_windows.begin(), main_windows.end(), window) != main_windows.end() ||
         ((title == kChartFileDialog || title.starts_with(kChartTitle)) &&
          BelongsTo(main_windows, connection, window));
}

std::optional<xcb_window_t> ShownFileDialog(X11Connection& connection) {
  const std::vector<xcb_window_t> main_windows = ChartMainWindows(connection);
  for (const xcb_window_t window : connection.TopLevelWindows()) {
    if (connection.Title(window) == kChartFileDialog && connection.IsMapped(window) &&
        BelongsTo(main_windows, connection, window)) {
      return window;
    }
  }
  return std::nullopt;
}

}  // namespace velumar
