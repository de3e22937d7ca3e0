#include "e2e/desktop_hand.h"

#include <X11/Xlib.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <thread>
#include <vector>

namespace velumar {

namespace {

constexpr float kTwipsPerPixel = 15;
constexpr useconds_t kKeyDelayUs = 12000;

void Settle(int milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

// By a program of its own: the search itself stumbles over windows that go away meanwhile.
std::vector<Window> ShownWindows(const std::string& title) {
  std::vector<Window> windows;
  const std::string command = "xdotool search --onlyvisible --name '^" + title + "' 2>/dev/null";
  FILE* const found = popen(command.c_str(), "r");
  if (found == nullptr) return windows;
  unsigned long window = 0;
  while (std::fscanf(found, "%lu", &window) == 1) windows.push_back(window);
  pclose(found);
  return windows;
}

bool Near(unsigned pixels, float twips) {
  return std::abs(static_cast<float>(pixels) - twips / kTwipsPerPixel) <= 2;
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
  // A window that goes away while it is looked at is no fault of anybody.
  XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
  if (xdo_ == nullptr) throw std::runtime_error("there is no display for the hand");
}

DesktopHand::~DesktopHand() { xdo_free(xdo_); }

std::optional<ScreenRect> DesktopHand::Find(const std::string& title, float width_twips,
                                            float height_twips) {
  for (const Window window : ShownWindows(title)) {
    ScreenRect rect;
    if (xdo_get_window_size(xdo_, window, &rect.width, &rect.height) != 0) continue;
    if (!Near(rect.width, width_twips) || !Near(rect.height, height_twips)) continue;
    if (xdo_get_window_location(xdo_, window, &rect.x, &rect.y, nullptr) == 0) return rect;
  }
  return std::nullopt;
}

void DesktopHand::Click(const ScreenRect& window, float left, float top, float width,
                        float height) {
  ClickAt(window.x + static_cast<int>((left + width / 2) / kTwipsPerPixel),
          window.y + static_cast<int>((top + height / 2) / kTwipsPerPixel));
}

void DesktopHand::ClickAt(int x, int y) {
  xdo_move_mouse(xdo_, x, y, 0);
  Settle(60);
  xdo_mouse_down(xdo_, CURRENTWINDOW, 1);
  Settle(40);
  xdo_mouse_up(xdo_, CURRENTWINDOW, 1);
  Settle(60);
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

std::string DesktopHand::FrontTitle() {
  std::string title;
  FILE* const told = popen("xdotool getactivewindow getwindowname 2>/dev/null", "r");
  if (told == nullptr) return title;
  for (int c = std::fgetc(told); c != EOF && c != '\n'; c = std::fgetc(told)) {
    title += static_cast<char>(c);
  }
  pclose(told);
  return title;
}

}  // namespace velumar
