#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/chart_windows.h"

namespace velumar {

// The windows of the Windows desktop.
class WindowsChartWindows : public ChartWindows {
 public:
  // The title of the chart program's main window begins with `host_title`.
  explicit WindowsChartWindows(std::string host_title) : host_title_(std::move(host_title)) {}

  std::vector<WindowId> TopLevelWindows() override;
  std::string WindowTitle(WindowId window) override;
  bool IsWindowVisible(WindowId window) override;
  bool HasOwner(WindowId window) override;
  void Maximize(WindowId window) override;
  // Restores the window if it is minimised, and waits up to half a second until it has the focus.
  bool BringToFront(std::string_view title) override;
  WindowId FocusedWindow() override;
  WindowOwner OwnerOf(WindowId window) override;
  // Waits as BringToFront does.
  bool GiveFocus(WindowId window) override;
  // Finds only a dialog of the chart program, since others have such dialogs too, and brings it to
  // the front.
  bool DialogExists(std::string_view window_class, std::string_view title) override;

 private:
  std::string host_title_;
};

}  // namespace velumar
