#pragma once

namespace velumar {

// A pressed key. `letter` is an upper-case Latin letter, '\t' for Tab, '\x1b' for Escape and 0 for
// every other key. Modifiers alone are no keys.
struct ChartKey {
  char letter = 0;
  bool alt = false;
  bool control = false;
  bool shift = false;
  bool meta = false;
};

enum class HostAction { kNone, kOpen, kCloseAll, kRefresh, kNextChart, kPreviousChart };
enum class HostMenu { kNone, kFile, kView };

// The keys that other programs send: Alt+F, then E or O; Alt+V, then R; Ctrl+Tab. They may arrive
// before a menu could open, with or without Alt and Shift still held. So Alt+F only arms the File
// menu: the next key acts at once. The menu itself opens if no key follows for a while.
class HostKeys {
 public:
  struct Answer {
    bool taken = false;  // nothing else gets the key
    HostAction action = HostAction::kNone;
  };

  Answer Press(const ChartKey& key);
  // What Press would answer, without changing anything.
  Answer Peek(const ChartKey& key) const;

  // The menu whose letters act now.
  HostMenu Armed() const { return armed_; }
  void Disarm() { armed_ = HostMenu::kNone; }

 private:
  HostMenu armed_ = HostMenu::kNone;
};

}  // namespace velumar
