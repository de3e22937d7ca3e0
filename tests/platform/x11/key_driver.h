#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/typing_target.h"
#include "platform/x11/chart_desktop.h"
#include "platform/x11/connection.h"
#include "platform/x_server.h"
// The X library comes last, since it defines macros with common names.
#include <X11/XKBlib.h>
extern "C" {
#include <xdo.h>
}

namespace velumar {

// A user at the keyboard of a display.
class User {
 public:
  explicit User(const std::string& display) : display_(xdo_new(display.c_str())) {}
  User(const User&) = delete;
  User& operator=(const User&) = delete;
  ~User() {
    SetCapsLock(false);
    xdo_free(display_);
  }

  void Hold(const char* key) { xdo_send_keysequence_window_down(display_, CURRENTWINDOW, key, 0); }
  void Release(const char* key) { xdo_send_keysequence_window_up(display_, CURRENTWINDOW, key, 0); }
  void Press(const char* key) { xdo_send_keysequence_window(display_, CURRENTWINDOW, key, 0); }
  // As a program with an open menu.
  void GrabKeyboard() {
    XGrabKeyboard(display_->xdpy, DefaultRootWindow(display_->xdpy), True, GrabModeAsync,
                  GrabModeAsync, CurrentTime);
    XSync(display_->xdpy, False);
  }
  void UngrabKeyboard() {
    XUngrabKeyboard(display_->xdpy, CurrentTime);
    XSync(display_->xdpy, False);
  }
  void SetCapsLock(bool on) {
    XkbLockModifiers(display_->xdpy, XkbUseCoreKbd, LockMask, on ? LockMask : 0u);
    XSync(display_->xdpy, False);
  }
  void SwitchToLayout(unsigned number) {
    XkbLockGroup(display_->xdpy, XkbUseCoreKbd, number);
    XSync(display_->xdpy, False);
  }
  bool HasCapsLock() const {
    XkbStateRec state{};
    XkbGetState(display_->xdpy, XkbUseCoreKbd, &state);
    return (state.locked_mods & LockMask) != 0;
  }
  // The symbols of all keys.
  std::vector<KeySym> Layout() const {
    int width = 0;
    const int count = display_->keycode_high - display_->keycode_low + 1;
    KeySym* const symbols = XGetKeyboardMapping(
        display_->xdpy, static_cast<KeyCode>(display_->keycode_low), count, &width);
    std::vector<KeySym> layout(symbols, symbols + std::ptrdiff_t{count} * width);
    XFree(symbols);
    return layout;
  }

 private:
  xdo_t* display_;
};

// The chart program, another program and a user on a display.
class KeyDriver {
 public:
  static constexpr const char* kHost = "MetaStock";
  static bool Available() { return XServer::Installed(); }

  // On a display with a window manager that all tests share.
  KeyDriver() : KeyDriver(SharedDisplay()) {}
  explicit KeyDriver(const std::string& display)
      : chart(display),
        editor(display),
        user(display),
        windows_(MakeX11ChartWindows(kHost, display)),
        keys_(MakeX11KeySender(kHost, display)),
        connection_(display) {}

  ChartWindows& Windows() { return *windows_; }
  KeySender& Keys() { return *keys_; }
  WindowId OpenChart(const std::string& title) { return OpenInFront(chart, {.title = title}); }
  WindowId OpenOther(const std::string& title) { return OpenInFront(editor, {.title = title}); }
  // Waits until the window manager has given the new window the focus.
  Window OpenInFront(TypingTarget& program, const TypingTarget::Look& look) {
    const Window window = program.Open(look);
    programs_[window] = &program;
    EXPECT_TRUE(Eventually([&] { return IsInFront(window); })) << look.title;
    return window;
  }
  // The window manager notices the new focus later than the X server.
  bool IsInFront(Window window) {
    return windows_->FocusedWindow() == window && connection_.FrontWindow() == window;
  }
  void Minimise(WindowId window) { programs_.at(window)->Iconify(window); }
  std::string Taken(WindowId window) { return programs_.at(window)->TakeTyped(window); }
  // The chart program reads no keys while it is busy.
  void SetBusy(WindowId, bool busy) { chart.SetBusy(busy); }

  void PressL() { user.Press("l"); }
  void HoldShift(bool down) { down ? user.Hold("Shift_R") : user.Release("Shift_R"); }
  void SetCapsLock(bool on) { user.SetCapsLock(on); }
  bool HasCapsLock() const { return user.HasCapsLock(); }

  TypingTarget chart;
  TypingTarget editor;
  User user;

 private:
  static const std::string& SharedDisplay() {
    static const XServer server(true);
    return server.Display();
  }

  std::unique_ptr<ChartWindows> windows_;
  std::unique_ptr<KeySender> keys_;
  X11Connection connection_;
  std::map<WindowId, TypingTarget*> programs_;
};

}  // namespace velumar
