#pragma once

namespace velumar {

// A key that went down. `letter` is an upper-case Latin letter, '\t' for Tab, '\x1b' for Escape and
// 0 for every other key; modifier keys themselves don't count as keys.
struct ChartKey {
  char letter = 0;
  bool alt = false;
  bool control = false;
  bool shift = false;
  bool meta = false;
};

enum class HostAction { kNone, kOpen, kCloseAll, kRefresh, kNextChart, kPreviousChart };
enum class HostMenu { kNone, kFile, kView };

// The keys by which other programs work this one: Alt+F and then E or O, Alt+V and then R,
// Ctrl+Tab. They may come faster than a menu opens, with Alt and Shift still held or not. So Alt+F
// only arms the File menu: the next key acts at once, and the menu itself is shown when none comes
// for a while, to a person who looks for the key to press.
class HostKeys {
 public:
  struct Answer {
    bool taken = false;  // the key has done its work and goes nowhere else
    HostAction action = HostAction::kNone;
  };

  Answer Press(const ChartKey& key);
  // What Press would answer, nothing changed.
  Answer Peek(const ChartKey& key) const;

  // The menu whose keys act now.
  HostMenu Armed() const { return armed_; }
  void Disarm() { armed_ = HostMenu::kNone; }

 private:
  HostMenu armed_ = HostMenu::kNone;
};

}  // namespace velumar
