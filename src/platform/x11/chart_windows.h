#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/chart_windows.h"

namespace velumar {

class X11Connection;

// The windows of an X display, as its window manager lists them; without one, the children of the
// root window.
//
// A window may close at any time: it then has no title, isn't visible and can't be maximised. Every
// call throws std::runtime_error once the display is gone.
class X11ChartWindows : public ChartWindows {
 public:
  // The title of the chart program's main window begins with `host_title`. An empty `display_name`
  // means the one of the environment. Throws std::runtime_error naming the display if it can't be
  // reached.
  explicit X11ChartWindows(std::string host_title, const std::string& display_name = {});
  ~X11ChartWindows() override;

  std::vector<WindowId> TopLevelWindows() override;
  std::string WindowTitle(WindowId window) override;
  bool IsWindowVisible(WindowId window) override;
  bool HasOwner(WindowId window) override;
  void Maximize(WindowId window) override;
  // Restores the window if it is minimised, switches to its workspace, and waits up to half a
  // second until it has the focus.
  bool BringToFront(std::string_view title) override;
  WindowId FocusedWindow() override;
  // Recognises windows of this process by their process number.
  WindowOwner OwnerOf(WindowId window) override;
  // Waits as BringToFront does.
  bool GiveFocus(WindowId window) override;
  // Ignores `window_class`; only a dialog of the chart program counts. Brings it to the front.
  bool DialogExists(std::string_view window_class, std::string_view title) override;

 private:
  std::string host_title_;
  std::unique_ptr<X11Connection> connection_;
};

}  // namespace velumar
