#pragma once

#include <X11/Xlib.h>

namespace velumar {

// While it lives, no other program gets a word in at the X server: none can move the focus or
// change the layout. Everything asked meanwhile must go through the same display.
class X11ServerGrab {
 public:
  explicit X11ServerGrab(Display* display) : display_(display) { XGrabServer(display_); }
  X11ServerGrab(const X11ServerGrab&) = delete;
  X11ServerGrab& operator=(const X11ServerGrab&) = delete;
  ~X11ServerGrab() {
    XUngrabServer(display_);
    XSync(display_, False);
  }

 private:
  Display* display_;
};

}  // namespace velumar
