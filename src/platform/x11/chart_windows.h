#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/chart_windows.h"

namespace velumar {

class X11Connection;

// The windows of an X display as its window manager lists them. Without a window manager the
// children of the root window stand in, so that charts still refresh.
//
// Windows come and go while they are asked for: one that has vanished has no title, isn't visible
// and can't be maximised. Every call throws std::runtime_error once the display is gone.
class X11ChartWindows : public ChartWindows {
 public:
  // `host_title` begins the title of the chart program's main window. An empty `display_name` is
  // the display of the environment. Throws std::runtime_error naming a display that can't be
  // reached.
  explicit X11ChartWindows(std::string host_title, const std::string& display_name = {});
  ~X11ChartWindows() override;

  std::vector<WindowId> TopLevelWindows() override;
  std::string WindowTitle(WindowId window) override;
  bool IsWindowVisible(WindowId window) override;
  bool HasOwner(WindowId window) override;
  void Maximize(WindowId window) override;
  // Brings the window up from an icon or another workspace too, and waits up to half a second until
  // it has the focus.
  bool BringToFront(std::string_view title) override;
  WindowId FocusedWindow() override;
  // Windows of this process carry its number.
  WindowOwner OwnerOf(WindowId window) override;
  // Waits as BringToFront does.
  bool GiveFocus(WindowId window) override;
  // `window_class` isn't looked at: only a dialog of the chart program itself counts.
  bool DialogExists(std::string_view window_class, std::string_view title) override;

 private:
  std::string host_title_;
  std::unique_ptr<X11Connection> connection_;
};

}  // namespace velumar
