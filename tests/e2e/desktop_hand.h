#pragma once

#include <cmath>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "platform/eventually.h"

namespace velumar {

// The lines that a shell command prints, without carriage returns.
inline std::vector<std::string> OutputOf(const std::string& command) {
  std::vector<std::string> lines(1);
  FILE* const output = popen((command + " 2>/dev/null </dev/null").c_str(), "r");
  if (output == nullptr) return {};
  for (int c = std::fgetc(output); c != EOF; c = std::fgetc(output)) {
    if (c != '\n' && c != '\r') lines.back() += static_cast<char>(c);
    if (c == '\n') lines.emplace_back();
  }
  pclose(output);
  if (lines.back().empty()) lines.pop_back();
  return lines;
}

// A window and its place on the screen in pixels.
struct ScreenRect {
  std::string window;  // its X id
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

// A person at the X display: finds windows by title and size, clicks and types (with xdotool).
class DesktopHand {
 public:
  // The visible window whose title starts like this and whose size is near the given one in twips.
  std::optional<ScreenRect> Find(const std::string& title, float width_twips,
                                 float height_twips) const {
    for (const std::string& window : VisibleWindows(title)) {
      const ScreenRect rect = PlaceOf(window);
      if (Near(rect.width, width_twips) && Near(rect.height, height_twips)) return rect;
    }
    return std::nullopt;
  }
  // Screen pixels per logical pixel.
  void SetScale(int scale) { scale_ = scale; }
  // Clicks the middle of a control, given in twips relative to its window.
  void Click(const ScreenRect& window, float left, float top, float width, float height) const {
    ClickAt(window.x + Pixels(left + width / 2), window.y + Pixels(top + height / 2));
  }
  void ClickAt(int x, int y) const {
    Xdotool(MouseMove(x, y) + " mousedown 1 sleep 0.04 mouseup 1 sleep 0.06");
  }
  void PointAt(int x, int y) const { Xdotool(MouseMove(x, y)); }
  // A click so short that the button is up before any program has read that it went down.
  void Tap(const ScreenRect& window, float left, float top) const {
    Xdotool(MouseMove(window.x + Pixels(left), window.y + Pixels(top)) +
            " mousedown 1 mouseup 1 sleep 0.3");
  }
  // "alt+f", "Return"
  void Press(const std::string& keys) const { Xdotool("key --delay 12 " + keys + " sleep 0.04"); }
  void Type(const std::string& text) const { Xdotool("type --delay 12 -- '" + text + "'"); }
  void Activate(const std::string& title) const {
    const std::vector<std::string> windows = VisibleWindows(title);
    if (!windows.empty()) Activate(ScreenRect{.window = windows.front()});
  }
  void Activate(const ScreenRect& window) const {
    Xdotool("windowactivate " + window.window + " sleep 0.3");
  }
  // From a place in the window in twips, by a number of pixels, with the button down.
  void Drag(const ScreenRect& window, float left, float top, int dx, int dy) const {
    constexpr int kSteps = 10;
    const int x = window.x + Pixels(left);
    const int y = window.y + Pixels(top);
    std::string commands = MouseMove(x, y) + " mousedown 1 sleep 0.1";
    for (int step = 1; step <= kSteps; ++step) {
      commands += MouseMove(x + dx * step / kSteps, y + dy * step / kSteps);
    }
    Xdotool(commands + " mouseup 1 sleep 0.3");
  }
  // The title of the window that has the focus.
  std::string FrontTitle() const {
    const std::vector<std::string> lines = Xdotool("getactivewindow getwindowname");
    return lines.empty() ? "" : lines.front();
  }

 private:
  static std::vector<std::string> Xdotool(const std::string& commands) {
    return OutputOf("xdotool " + commands);
  }
  static std::vector<std::string> VisibleWindows(const std::string& title) {
    return Xdotool("search --onlyvisible --name '^" + title + "'");
  }
  static std::string MouseMove(int x, int y) {
    return " mousemove " + std::to_string(x) + " " + std::to_string(y) + " sleep 0.06";
  }
  // xdotool's own answer is wrong for a window inside another, such as a virtual desktop.
  static ScreenRect PlaceOf(const std::string& window) {
    ScreenRect rect{.window = window};
    for (const std::string& line : OutputOf("xwininfo -id " + window)) {
      std::sscanf(line.c_str(), " Absolute upper-left X: %d", &rect.x);
      std::sscanf(line.c_str(), " Absolute upper-left Y: %d", &rect.y);
      std::sscanf(line.c_str(), " Width: %d", &rect.width);
      std::sscanf(line.c_str(), " Height: %d", &rect.height);
    }
    return rect;
  }
  bool Near(int pixels, float twips) const {
    return std::abs(pixels - Pixels(twips)) <= 2 * scale_;
  }
  int Pixels(float twips) const { return static_cast<int>(twips / 15) * scale_; }

  int scale_ = 1;
};

}  // namespace velumar
