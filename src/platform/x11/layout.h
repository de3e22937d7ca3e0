#pragma once

#include <X11/XKBlib.h>
extern "C" {
#include <xdo.h>
}

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "platform/key_notation.h"

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

// The keyboard layout of a display at one moment: which key gives a character, and with which
// modifiers. Spare keys of the layout can be lent to characters that it lacks.
class X11Layout {
 public:
  struct Key {
    KeyCode code = 0;
    int group = 0;  // of several layouts that the user switches between
    unsigned modifiers = 0;
  };

  // Whether there can be a key for it at all: control characters have none.
  static bool CanType(const KeyStroke& stroke);

  // `display` must outlive the object.
  explicit X11Layout(const xdo_t& display);
  X11Layout(const X11Layout&) = delete;
  X11Layout& operator=(const X11Layout&) = delete;
  ~X11Layout() { GiveBack(); }

  // The key with all modifiers of the stroke, while the locks and the group of `state` are on.
  // Nothing when the layout has no such key.
  std::optional<Key> Find(const KeyStroke& stroke, const XkbStateRec& state) const;

  // Puts the characters that the layout lacks on its spare keys, the first of them first, as many
  // as there is room for. Characters lent before lose their keys: programs must have read those by
  // now, since they look up what a key means as they read it. One change in all, for every program
  // reads the whole layout anew at each.
  void Lend(std::span<const KeyStroke> strokes, const XkbStateRec& state);
  // The same for the end of the typing.
  void GiveBack();
  // Leaves lent keys with their characters for good, for a program that hasn't read them yet.
  void Keep();

 private:
  // A place on the keyboard that may give what is wanted.
  struct Candidate {
    KeyCode code;
    KeySym symbol;
    unsigned modifiers;
  };
  struct MapFreer {
    void operator()(XkbDescRec* map) const { XkbFreeKeyboard(map, 0, True); }
  };

  void ReadMap();
  std::vector<Candidate> Candidates(const KeyStroke& stroke) const;
  std::optional<Key> FindInGroup(const Candidate& candidate, int group, bool as_shortcut,
                                 unsigned locks) const;
  bool Gives(const Candidate& candidate, int group, unsigned modifiers) const;
  void FindSpareKeys();
  // `before` keys held other characters until now.
  void PutOnSpareKeys(std::vector<char32_t> characters, std::size_t before);

  const xdo_t& display_;
  std::unique_ptr<XkbDescRec, MapFreer> map_;
  std::vector<KeyCode> spare_;
  std::vector<char32_t> lent_;  // on the spare keys in their order
};

}  // namespace velumar
