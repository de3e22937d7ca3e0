#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/chart_windows.h"

namespace velumar {

// The windows of the desktop.
class WindowsChartWindows : public ChartWindows {
 public:
  // `host_title` begins the title of the chart program's main window.
  explicit WindowsChartWindows(std::string host_title) : host_title_(std::move(host_title)) {}

  std::vector<WindowId> TopLevelWindows() override;
  std::string WindowTitle(WindowId window) override;
  bool IsWindowVisible(WindowId window) override;
  bool HasOwner(WindowId window) override;
  void Maximize(WindowId window) override;
  // Brings the window up from an icon too, and waits up to half a second until it has the focus.
  bool BringToFront(std::string_view title) override;
  WindowId FocusedWindow() override;
  WindowOwner OwnerOf(WindowId window) override;
  // Waits as BringToFront does.
  bool GiveFocus(WindowId window) override;
  // Only a dialog of the chart program is found, and comes to the front: other programs have such
  // dialogs too.
  bool DialogExists(std::string_view window_class, std::string_view title) override;

 private:
  std::string host_title_;
};

}  // namespace velumar
