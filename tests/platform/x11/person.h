#pragma once

#include <X11/XKBlib.h>

#include <string>
#include <vector>
extern "C" {
#include <xdo.h>
}

namespace velumar {

// A user at the keyboard of a display.
class Person {
 public:
  explicit Person(const std::string& display) : display_(xdo_new(display.c_str())) {}
  Person(const Person&) = delete;
  Person& operator=(const Person&) = delete;
  ~Person() {
    SetCapsLock(false);
    xdo_free(display_);
  }

  void Hold(const char* key) { xdo_send_keysequence_window_down(display_, CURRENTWINDOW, key, 0); }
  void LetGo(const char* key) { xdo_send_keysequence_window_up(display_, CURRENTWINDOW, key, 0); }
  void Press(const char* key) { xdo_send_keysequence_window(display_, CURRENTWINDOW, key, 0); }
  // As a program with an open menu.
  void KeepKeyboard() {
    XGrabKeyboard(display_->xdpy, DefaultRootWindow(display_->xdpy), True, GrabModeAsync,
                  GrabModeAsync, CurrentTime);
    XSync(display_->xdpy, False);
  }
  void LeaveKeyboard() {
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

}  // namespace velumar
