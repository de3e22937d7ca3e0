#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "platform/key_notation.h"
#include "platform/x11/layout.h"

namespace velumar {

// Presses and releases keys of a display as a person would. Characters arrive the same whatever
// layout is on and under Caps Lock.
class X11Keyboard {
 public:
  enum class Outcome : std::uint8_t {
    kTyped,
    kFocusElsewhere,  // the focus isn't inside the window
    kPersonTypes,     // a person holds Ctrl, Alt or Shift, or a menu of another program is open
    kNoKey,           // the layout lacks the character
  };
  enum class Reach : std::uint8_t {
    kFocused,  // only while the window or one inside it has the focus
    kBehind,   // the window gets the focus for the key alone
  };

  // An empty name is the display of the environment. Throws std::runtime_error for one that can't
  // be reached or takes no keys from programs.
  explicit X11Keyboard(const std::string& display_name);
  X11Keyboard(const X11Keyboard&) = delete;
  X11Keyboard& operator=(const X11Keyboard&) = delete;
  ~X11Keyboard();

  // Makes keys for the characters that the layout lacks, as X11Layout::Lend does. The spare keys
  // are free again when the object ends: programs must have read them by then too.
  void Prepare(std::span<const KeyStroke> strokes);
  // For a program that hasn't read its keys yet: those made so far stay on the keyboard.
  void KeepPrepared() { layout_->Keep(); }

  // Types the key into `window`, and nothing when it can't have it: no other program can come
  // between the look and the key. Both throw std::runtime_error when the display is gone.
  Outcome Type(const KeyStroke& stroke, Window window, Reach reach);

 private:
  struct Closer {
    void operator()(xdo_t* display) const { xdo_free(display); }
  };

  Outcome TypeGrabbed(const KeyStroke& stroke, Window window, Reach reach);
  bool KeptByAnotherProgram() const;
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
