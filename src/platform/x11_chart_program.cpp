#include "platform/x11_chart_program.h"

#include <algorithm>
#include <functional>

#include "base/text.h"

namespace velumar {

namespace {

constexpr std::string_view kProgramFile = "MSWIN.EXE";
constexpr std::string_view kFileDialog = "Open";

// Keeps the windows that the test accepts, if any is accepted.
void Prefer(std::vector<xcb_window_t>& windows, const std::function<bool(xcb_window_t)>& accepts) {
  std::vector<xcb_window_t> accepted;
  std::copy_if(windows.begin(), windows.end(), std::back_inserter(accepted), accepts);
  if (!accepted.empty()) windows = std::move(accepted);
}

}  // namespace

std::vector<xcb_window_t> X11ChartProgram::MainWindows() {
  std::vector<xcb_window_t> windows = connection_.TopLevelWindows();
  std::erase_if(windows, [&](xcb_window_t window) {
    return !connection_.Title(window).starts_with(host_title_);
  });
  Prefer(windows, [&](xcb_window_t window) {
    const std::vector<std::string> texts = connection_.ClassTexts(window);
    return std::any_of(texts.begin(), texts.end(),
                       [](const std::string& text) { return UpperCased(text) == kProgramFile; });
  });
  Prefer(windows, [&](xcb_window_t window) { return connection_.Title(window) == host_title_; });
  return windows;
}

bool X11ChartProgram::TakesKeys(xcb_window_t window) {
  const std::vector<xcb_window_t> main_windows = MainWindows();
  if (std::find(main_windows.begin(), main_windows.end(), window) != main_windows.end()) {
    return true;
  }
  const std::string title = connection_.Title(window);
  return (title == kFileDialog || title.starts_with(host_title_)) &&
         BelongsTo(main_windows, window);
}

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
