#include "platform/x11/chart_desktop.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <optional>
#include <thread>
#include <utility>

#include "platform/chart_program.h"
#include "platform/x11/chart_program.h"
#include "platform/x11/connection.h"

namespace velumar {

namespace {

constexpr std::chrono::milliseconds kActivationTimeout{500};
constexpr std::chrono::milliseconds kLook{5};

xcb_window_t Native(WindowId window) { return static_cast<xcb_window_t>(window); }

// Some window managers only mark a window on another workspace as urgent instead.
void SwitchToWorkspaceOf(X11Connection& connection, xcb_window_t window) {
  constexpr std::uint32_t kOnAll = 0xFFFFFFFF;
  xcb_ewmh_connection_t* const ewmh = connection.Ewmh();
  const auto here = connection.NumbersProperty(connection.Root(), ewmh->_NET_CURRENT_DESKTOP);
  const auto there = connection.NumbersProperty(window, ewmh->_NET_WM_DESKTOP);
  if (here.empty() || there.empty() || there == here || there.front() == kOnAll) return;
  xcb_ewmh_request_change_current_desktop(ewmh, connection.ScreenNumber(), there.front(),
                                          XCB_CURRENT_TIME);
}

void AskToActivate(X11Connection& connection, xcb_window_t window) {
  SwitchToWorkspaceOf(connection, window);
  // The request comes as from a pager, so that a minimised window is restored.
  xcb_ewmh_request_change_active_window(connection.Ewmh(), connection.ScreenNumber(), window,
                                        XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER, XCB_CURRENT_TIME,
                                        connection.FrontWindow());
}

void RaiseAndFocus(X11Connection& connection, xcb_window_t window) {
  const std::uint32_t above = XCB_STACK_MODE_ABOVE;
  xcb_map_window(connection.Xcb(), window);
  xcb_configure_window(connection.Xcb(), window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
  xcb_set_input_focus(connection.Xcb(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
}

void FillScreen(X11Connection& connection, xcb_window_t window) {
  const auto screen = connection.Ask(xcb_get_geometry, xcb_get_geometry_reply, connection.Root());
  if (!screen) return;
  const std::uint32_t place[] = {0, 0, screen->width, screen->height};
  xcb_configure_window(connection.Xcb(), window,
                       XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                           XCB_CONFIG_WINDOW_HEIGHT,
                       place);
}

bool IsShown(X11Connection& connection, xcb_window_t window) {
  const std::vector<std::uint32_t> states =
      connection.NumbersProperty(window, connection.Ewmh()->_NET_WM_STATE);
  const auto hidden =
      std::find(states.begin(), states.end(), connection.Ewmh()->_NET_WM_STATE_HIDDEN);
  return connection.IsMapped(window) && hidden == states.end();
}

// The window that is closing may still have the focus, so this also checks that it is shown.
bool IsInFront(X11Connection& connection, xcb_window_t window) {
  return connection.FrontWindow() == window && IsShown(connection, window);
}

// Brings the window to the front and waits a moment for the window manager to do it.
void PutInFront(X11Connection& connection, xcb_window_t window) {
  if (connection.HasWindowManager()) {
    AskToActivate(connection, window);
  } else {
    RaiseAndFocus(connection, window);
  }
  xcb_flush(connection.Xcb());
  const auto end = std::chrono::steady_clock::now() + kActivationTimeout;
  while (!IsInFront(connection, window) && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(kLook);
  }
}

class X11ChartWindows : public ChartWindows {
 public:
  explicit X11ChartWindows(const std::string& display_name) : connection_(display_name) {}

  std::vector<WindowId> TopLevelWindows() override {
    const std::vector<xcb_window_t> windows = connection_.TopLevelWindows();
    return {windows.begin(), windows.end()};
  }

  std::string WindowTitle(WindowId window) override {
    std::string title = connection_.Title(Native(window));
    connection_.RequireAlive();
    return title;
  }

  bool IsWindowVisible(WindowId window) override {
    const bool shown = IsShown(connection_, Native(window));
    connection_.RequireAlive();
    return shown;
  }

  bool HasOwner(WindowId window) override {
    const bool owned = connection_.Owner(Native(window)) != XCB_NONE;
    connection_.RequireAlive();
    return owned;
  }

  void Maximize(WindowId window) override {
    xcb_ewmh_connection_t* const ewmh = connection_.Ewmh();
    if (connection_.HasWindowManager()) {
      xcb_ewmh_request_change_wm_state(ewmh, connection_.ScreenNumber(), Native(window),
                                       XCB_EWMH_WM_STATE_ADD, ewmh->_NET_WM_STATE_MAXIMIZED_VERT,
                                       ewmh->_NET_WM_STATE_MAXIMIZED_HORZ,
                                       XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
    } else {
      FillScreen(connection_, Native(window));
    }
    xcb_flush(connection_.Xcb());
    Finish();
  }

  bool BringToFront(std::string_view title) override {
    const std::optional<xcb_window_t> window = Titled(title);
    if (!window) return false;
    PutInFront(connection_, *window);
    Finish();
    return true;
  }

  std::uint32_t ProcessOf(std::string_view title) override {
    const std::optional<xcb_window_t> window = Titled(title);
    const std::uint32_t process =
        window ? connection_.NumberProperty(*window, connection_.Ewmh()->_NET_WM_PID) : 0;
    connection_.RequireAlive();
    return process;
  }

  WindowId FocusedWindow() override { return connection_.FocusedWindow(); }

  WindowOwner OwnerOf(WindowId window) override {
    const auto process = static_cast<std::uint32_t>(::getpid());
    const bool own =
        connection_.NumberProperty(Native(window), connection_.Ewmh()->_NET_WM_PID) == process;
    connection_.RequireAlive();
    if (own) return WindowOwner::kOwn;
    return IsOfChartProgram(connection_, Native(window)) ? WindowOwner::kChartProgram
                                                         : WindowOwner::kOther;
  }

  bool GiveFocus(WindowId window) override {
    if (!IsShown(connection_, Native(window))) return false;
    if (!IsInFront(connection_, Native(window))) PutInFront(connection_, Native(window));
    Finish();
    return true;
  }

  // The caller types into the dialog next. It comes to the front first, in case the trader clicked
  // elsewhere or the window manager is slow.
  bool FileDialogExists() override {
    const std::optional<xcb_window_t> dialog = ShownFileDialog(connection_);
    if (dialog && !IsInFront(connection_, *dialog)) PutInFront(connection_, *dialog);
    Finish();
    return dialog.has_value();
  }

 private:
  std::optional<xcb_window_t> Titled(std::string_view title) {
    if (title != kChartTitle) {
      return WindowWithTitle(connection_.TopLevelWindows(), title,
                             [&](xcb_window_t candidate) { return connection_.Title(candidate); });
    }
    const std::vector<xcb_window_t> main = ChartMainWindows(connection_);
    return main.empty() ? std::nullopt : std::optional(main.front());
  }
  void Finish() {
    connection_.DropEvents();
    connection_.RequireAlive();
  }

  X11Connection connection_;
};

}  // namespace

std::unique_ptr<ChartWindows> MakeX11ChartWindows(const std::string& display_name) {
  return std::make_unique<X11ChartWindows>(display_name);
}

}  // namespace velumar
