#pragma once

#include <X11/XKBlib.h>
extern "C" {
#include <xdo.h>
}

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "platform/key_notation.h"

namespace velumar {

class X11Layout;

// Presses and releases keys of a display as a user would, whatever the layout and Caps Lock.
class X11Keyboard {
 public:
  enum class Outcome : std::uint8_t {
    kTyped,
    kFocusElsewhere,  // the focus isn't inside the window
    kUserTypes,       // the user holds Ctrl, Alt or Shift, or another program has a menu open
    kNoKey,           // the layout lacks the character
  };
  enum class Focus : std::uint8_t {
    kRequired,   // types only if the window or one inside it has the focus
    kTemporary,  // the window gets the focus for this key only
  };

  // An empty name means the display of the environment. Throws std::runtime_error if it can't be
  // reached or does not accept keys from programs.
  explicit X11Keyboard(const std::string& display_name);
  X11Keyboard(const X11Keyboard&) = delete;
  X11Keyboard& operator=(const X11Keyboard&) = delete;
  ~X11Keyboard();

  // Assigns spare keys to the characters that the layout lacks, in order, as far as there are any.
  // Earlier assignments end, as all do in the destructor: programs look up a key when they read it,
  // so they must have read those keys.
  void Prepare(std::span<const KeyStroke> strokes);
  // Keeps the assigned keys, for a program that hasn't read them yet.
  void KeepPrepared();

  // Types the key into `window`, or nothing if the window can't have it. The focus can't change
  // between the check and the key. Both throw std::runtime_error if the display is gone.
  Outcome Type(const KeyStroke& stroke, Window window, Focus focus);

 private:
  struct Closer {
    void operator()(xdo_t* display) const { xdo_free(display); }
  };

  Outcome TypeGrabbed(const KeyStroke& stroke, Window window, Focus focus);
  bool GrabbedByAnotherProgram() const;
  XkbStateRec State() const;
  bool FocusIsInside(Window window) const;
  void RequireAlive() const;

  XErrorHandler errors_before_;
  std::unique_ptr<xdo_t, Closer> display_;
  std::unique_ptr<X11Layout> layout_;
  bool gone_ = false;
};

}  // namespace velumar
