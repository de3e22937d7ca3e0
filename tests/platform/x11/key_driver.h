#pragma once

#include <map>
#include <string>

#include "platform/typing_target.h"
#include "platform/x11/chart_windows.h"
#include "platform/x11/connection.h"
#include "platform/x11/key_sender.h"
#include "platform/x11/person.h"
#include "platform/x_server.h"

namespace velumar {

// The chart program, another program and a person on a display with a window manager.
class KeyDriver {
 public:
  static constexpr const char* kHost = "MetaStock";
  static bool Available() { return XServer::Installed(); }

  WindowId OpenChart(const std::string& title) { return Open(chart_, title); }
  WindowId OpenOther(const std::string& title) { return Open(editor_, title); }
  void Minimise(WindowId window) { programs_.at(window)->Iconify(window); }
  std::string Taken(WindowId window) { return programs_.at(window)->TakeTyped(window); }
  // The chart program reads no keys while it is busy.
  void SetBusy(WindowId, bool busy) { chart_.SetBusy(busy); }

  void PressL() { person_.Press("l"); }
  void HoldShift(bool down) { down ? person_.Hold("Shift_R") : person_.LetGo("Shift_R"); }
  void SetCapsLock(bool on) { person_.SetCapsLock(on); }
  bool HasCapsLock() const { return person_.HasCapsLock(); }

 private:
  static const std::string& Display() {
    static const XServer server(true);
    return server.Display();
  }
  WindowId Open(TypingTarget& program, const std::string& title) {
    const WindowId window = program.Open({.title = title});
    programs_[window] = &program;
    // The window manager notices the focus after the X server has moved it.
    EXPECT_TRUE(Eventually([&] {
      return windows.FocusedWindow() == window && connection_.FrontWindow() == window;
    })) << title;
    return window;
  }

  X11Connection connection_{Display()};
  TypingTarget chart_{Display()};
  TypingTarget editor_{Display()};
  Person person_{Display()};
  std::map<WindowId, TypingTarget*> programs_;

 public:
  X11ChartWindows windows{kHost, Display()};
  X11KeySender keys{kHost, Display()};
};

}  // namespace velumar
