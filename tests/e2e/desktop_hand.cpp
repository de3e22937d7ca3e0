#include "e2e/desktop_hand.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <thread>

namespace velumar {

namespace {

constexpr float kTwipsPerPixel = 15;

std::vector<std::string> Xdotool(const std::string& commands) {
  return OutputOf("xdotool " + commands);
}

std::vector<std::string> VisibleWindows(const std::string& title) {
  return Xdotool("search --onlyvisible --name '^" + title + "'");
}

std::string MouseMove(int x, int y) {
  return " mousemove " + std::to_string(x) + " " + std::to_string(y) + " sleep 0.06";
}

// xdotool's own answer is wrong for a window inside another, such as a virtual desktop.
ScreenRect PlaceOf(const std::string& window) {
  ScreenRect rect{.window = window};
  for (const std::string& line : OutputOf("xwininfo -id " + window)) {
    std::sscanf(line.c_str(), " Absolute upper-left X: %d", &rect.x);
    std::sscanf(line.c_str(), " Absolute upper-left Y: %d", &rect.y);
    std::sscanf(line.c_str(), " Width: %d", &rect.width);
    std::sscanf(line.c_str(), " Height: %d", &rect.height);
  }
  return rect;
}

}  // namespace

bool Eventually(const std::function<bool()>& condition, double seconds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return true;
}

std::vector<std::string> OutputOf(const std::string& command) {
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

int DesktopHand::Pixels(float twips) const {
  return static_cast<int>(twips / kTwipsPerPixel) * scale_;
}

bool DesktopHand::Near(int pixels, float twips) const {
  return std::abs(pixels - Pixels(twips)) <= 2 * scale_;
}

std::optional<ScreenRect> DesktopHand::Find(const std::string& title, float width_twips,
                                            float height_twips) const {
  for (const std::string& window : VisibleWindows(title)) {
    const ScreenRect rect = PlaceOf(window);
    if (Near(rect.width, width_twips) && Near(rect.height, height_twips)) return rect;
  }
  return std::nullopt;
}

void DesktopHand::Click(const ScreenRect& window, float left, float top, float width,
                        float height) const {
  ClickAt(window.x + Pixels(left + width / 2), window.y + Pixels(top + height / 2));
}

void DesktopHand::ClickAt(int x, int y) const {
  Xdotool(MouseMove(x, y) + " mousedown 1 sleep 0.04 mouseup 1 sleep 0.06");
}

void DesktopHand::PointAt(int x, int y) const { Xdotool(MouseMove(x, y)); }

void DesktopHand::Tap(const ScreenRect& window, float left, float top) const {
  Xdotool(MouseMove(window.x + Pixels(left), window.y + Pixels(top)) +
          " mousedown 1 mouseup 1 sleep 0.3");
}

void DesktopHand::Press(const std::string& keys) const {
  Xdotool("key --delay 12 " + keys + " sleep 0.04");
}

void DesktopHand::Type(const std::string& text) const {
  Xdotool("type --delay 12 -- '" + text + "'");
}

void DesktopHand::Activate(const std::string& title) const {
  const std::vector<std::string> windows = VisibleWindows(title);
  if (!windows.empty()) Activate(ScreenRect{.window = windows.front()});
}

void DesktopHand::Activate(const ScreenRect& window) const {
  Xdotool("windowactivate " + window.window + " sleep 0.3");
}

void DesktopHand::Drag(const ScreenRect& window, float left, float top, int dx, int dy) const {
  constexpr int kSteps = 10;
  const int x = window.x + Pixels(left);
  const int y = window.y + Pixels(top);
  std::string commands = MouseMove(x, y) + " mousedown 1 sleep 0.1";
  for (int step = 1; step <= kSteps; ++step) {
    commands += MouseMove(x + dx * step / kSteps, y + dy * step / kSteps);
  }
  Xdotool(commands + " mouseup 1 sleep 0.3");
}

std::string DesktopHand::FrontTitle() const {
  const std::vector<std::string> lines = Xdotool("getactivewindow getwindowname");
  return lines.empty() ? "" : lines.front();
}

}  // namespace velumar
