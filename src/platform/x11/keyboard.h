#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "platform/key_notation.h"
#include "platform/x11/layout.h"

namespace velumar {

// Presses and releases keys of a display as a user would, whatever the layout and Caps Lock.
class X11Keyboard {
 public:
  enum class Outcome : std::uint8_t {
    kTyped,
    kFocusElsewhere,  // the focus isn't inside the window
    kUserTypes,       // the user holds Ctrl, Alt or Shift, or another program has a menu open
    kNoKey,           // the layout lacks the character
  };
  enum class Reach : std::uint8_t {
    kFocused,  // only if the window or one inside it has the focus
    kBehind,   // the window gets the focus for this key only
  };

  // An empty name means the display of the environment. Throws std::runtime_error if it can't be
  // reached or does not accept keys from programs.
  explicit X11Keyboard(const std::string& display_name);
  X11Keyboard(const X11Keyboard&) = delete;
  X11Keyboard& operator=(const X11Keyboard&) = delete;
  ~X11Keyboard();

  // Assigns spare keys to the characters that the layout lacks, as X11Layout::Lend does. They are
  // freed by the destructor, so programs must have read their keys by then.
  void Prepare(std::span<const KeyStroke> strokes);
  // Keeps the assigned keys, for a program that hasn't read them yet.
  void KeepPrepared() { layout_->Keep(); }

  // Types the key into `window`, or nothing if the window can't have it. The focus can't change
  // between the check and the key. Both throw std::runtime_error if the display is gone.
  Outcome Type(const KeyStroke& stroke, Window window, Reach reach);

 private:
  struct Closer {
    void operator()(xdo_t* display) const { xdo_free(display); }
  };

  Outcome TypeGrabbed(const KeyStroke& stroke, Window window, Reach reach);
  bool GrabbedByAnotherProgram() const;
  XkbStateRec State() const;
  bool FocusIsInside(Window window) const;
  void Press(const X11Layout::Key& key);
  void RequireAlive() const;

  XErrorHandler errors_before_;
  std::unique_ptr<xdo_t, Closer> display_;
  std::unique_ptr<X11Layout> layout_;
  bool gone_ = false;
};

}  // namespace velumar
