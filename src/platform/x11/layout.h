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

// Blocks all other programs at the X server while it lives, so none can move the focus or change
// the layout. Until then requests must go through the same display.
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

// The keyboard layout of a display at one moment: which key types a character, and with which
// modifiers. Unused keys can be assigned to characters that it lacks.
class X11Layout {
 public:
  struct Key {
    KeyCode code = 0;
    int group = 0;  // the layout, if the user has several
    unsigned modifiers = 0;
  };

  // Returns false for control characters, which no key can type.
  static bool CanType(const KeyStroke& stroke);

  // `display` must outlive the object.
  explicit X11Layout(const xdo_t& display);
  X11Layout(const X11Layout&) = delete;
  X11Layout& operator=(const X11Layout&) = delete;
  ~X11Layout() { GiveBack(); }

  // The key with all modifiers for the stroke, under the locks and the group of `state`. Nothing if
  // the layout has no such key.
  std::optional<Key> Find(const KeyStroke& stroke, const XkbStateRec& state) const;

  // Assigns spare keys to the characters that the layout lacks, in order, as far as there are any.
  // Earlier assignments end: programs look up a key when they read it, so they must have read those
  // keys. All in one change, since every program rereads the whole layout after each.
  void Lend(std::span<const KeyStroke> strokes, const XkbStateRec& state);
  // Ends all assignments.
  void GiveBack();
  // Makes the assignments permanent, for a program that hasn't read the keys yet.
  void Keep();

 private:
  // A key that may type what is wanted.
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
  // `before` spare keys have been assigned until now.
  void AssignSpareKeys(std::vector<char32_t> characters, std::size_t before);

  const xdo_t& display_;
  std::unique_ptr<XkbDescRec, MapFreer> map_;
  std::vector<KeyCode> spare_;
  std::vector<char32_t> lent_;  // of the first spare keys
};

}  // namespace velumar
