#include "e2e/desktop_hand.h"

#include <X11/Xlib.h>

#include <chrono>
#include <cmath>
#include <stdexcept>
#include <thread>
#include <vector>

#include "e2e/processes.h"

namespace velumar {

namespace {

constexpr float kTwipsPerPixel = 15;
constexpr useconds_t kKeyDelayUs = 12000;

void Settle(int milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

// With xdotool, since xdo_search_windows stumbles over windows that are closed in its course.
std::vector<Window> ShownWindows(const std::string& title) {
  std::vector<Window> windows;
  for (const std::string& line : OutputOf("xdotool search --onlyvisible --name '^" + title + "'")) {
    windows.push_back(std::stoul(line));
  }
  return windows;
}

std::string FirstLine(const std::string& command) {
  const std::vector<std::string> lines = OutputOf(command);
  return lines.empty() ? "" : lines.front();
}

}  // namespace

bool Eventually(const std::function<bool()>& condition, double seconds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    Settle(50);
  }
  return true;
}

DesktopHand::DesktopHand() : xdo_(xdo_new(nullptr)) {
  // A window may be closed while it is looked at.
  XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
  if (xdo_ == nullptr) throw std::runtime_error("there is no display for the hand");
}

DesktopHand::~DesktopHand() { xdo_free(xdo_); }

int DesktopHand::Pixels(float twips) const {
  return static_cast<int>(twips / kTwipsPerPixel) * scale_;
}

bool DesktopHand::Near(unsigned pixels, float twips) const {
  return std::abs(static_cast<int>(pixels) - Pixels(twips)) <= 2 * scale_;
}

std::optional<ScreenRect> DesktopHand::Find(const std::string& title, float width_twips,
                                            float height_twips) {
  for (const Window window : ShownWindows(title)) {
    ScreenRect rect{.window = window};
    if (xdo_get_window_size(xdo_, window, &rect.width, &rect.height) != 0) continue;
    if (!Near(rect.width, width_twips) || !Near(rect.height, height_twips)) continue;
    Window below = 0;
    // Also where the window lies in another, as a virtual desktop is one.
    if (XTranslateCoordinates(xdo_->xdpy, window, DefaultRootWindow(xdo_->xdpy), 0, 0, &rect.x,
                              &rect.y, &below) != 0) {
      return rect;
    }
  }
  return std::nullopt;
}

void DesktopHand::Click(const ScreenRect& window, float left, float top, float width,
                        float height) {
  ClickAt(window.x + Pixels(left + width / 2), window.y + Pixels(top + height / 2));
}

void DesktopHand::PointAt(int x, int y) {
  xdo_move_mouse(xdo_, x, y, 0);
  Settle(60);
}

void DesktopHand::ClickAt(int x, int y) {
  PointAt(x, y);
  xdo_mouse_down(xdo_, CURRENTWINDOW, 1);
  Settle(40);
  xdo_mouse_up(xdo_, CURRENTWINDOW, 1);
  Settle(60);
}

void DesktopHand::Tap(const ScreenRect& window, float left, float top) {
  PointAt(window.x + Pixels(left), window.y + Pixels(top));
  xdo_mouse_down(xdo_, CURRENTWINDOW, 1);
  xdo_mouse_up(xdo_, CURRENTWINDOW, 1);
  Settle(300);
}

void DesktopHand::Press(const std::string& keys) {
  xdo_send_keysequence_window(xdo_, CURRENTWINDOW, keys.c_str(), kKeyDelayUs);
  Settle(40);
}

void DesktopHand::Type(const std::string& text) {
  xdo_enter_text_window(xdo_, CURRENTWINDOW, text.c_str(), kKeyDelayUs);
  Settle(40);
}

void DesktopHand::Activate(const std::string& title) {
  const std::vector<Window> windows = ShownWindows(title);
  if (!windows.empty()) xdo_activate_window(xdo_, windows.front());
  Settle(300);
}

void DesktopHand::Activate(const ScreenRect& window) {
  xdo_activate_window(xdo_, window.window);
  Settle(300);
}

void DesktopHand::Drag(const ScreenRect& window, float left, float top, int dx, int dy) {
  constexpr int kSteps = 10;
  const int x = window.x + Pixels(left);
  const int y = window.y + Pixels(top);
  xdo_move_mouse(xdo_, x, y, 0);
  Settle(100);
  xdo_mouse_down(xdo_, CURRENTWINDOW, 1);
  Settle(100);
  for (int step = 1; step <= kSteps; ++step) {
    xdo_move_mouse(xdo_, x + dx * step / kSteps, y + dy * step / kSteps, 0);
    Settle(30);
  }
  xdo_mouse_up(xdo_, CURRENTWINDOW, 1);
  Settle(300);
}

double DesktopHand::Opacity(const ScreenRect& window) {
  const std::string told =
      FirstLine("xprop -notype -id " + std::to_string(window.window) + " _NET_WM_WINDOW_OPACITY");
  const std::size_t number = told.find("= ");
  if (number == std::string::npos) return 1;
  return std::stod(told.substr(number + 2)) / 0xffffffffU;
}

void DesktopHand::Look(const std::string& file) { FirstLine("import -window root '" + file + "'"); }

std::string DesktopHand::FrontTitle() { return FirstLine("xdotool getactivewindow getwindowname"); }

}  // namespace velumar
