#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/typing_target.h"
#include "platform/x11/chart_desktop.h"
#include "platform/x11/connection.h"
#include "platform/x11/person.h"
#include "platform/x_server.h"

namespace velumar {

// The chart program, another program and a user on a display.
class KeyDriver {
 public:
  static constexpr const char* kHost = "MetaStock";
  static bool Available() { return XServer::Installed(); }

  // On a display with a window manager that all tests share.
  KeyDriver() : KeyDriver(SharedDisplay()) {}
  explicit KeyDriver(const std::string& display)
      : chart(display),
        editor(display),
        person(display),
        windows_(MakeX11ChartWindows(kHost, display)),
        keys_(MakeX11KeySender(kHost, display)),
        connection_(display) {}

  ChartWindows& Windows() { return *windows_; }
  KeySender& Keys() { return *keys_; }
  WindowId OpenChart(const std::string& title) { return OpenInFront(chart, {.title = title}); }
  WindowId OpenOther(const std::string& title) { return OpenInFront(editor, {.title = title}); }
  // Waits until the window manager has given the new window the focus.
  Window OpenInFront(TypingTarget& program, const TypingTarget::Look& look) {
    const Window window = program.Open(look);
    programs_[window] = &program;
    EXPECT_TRUE(Eventually([&] { return IsInFront(window); })) << look.title;
    return window;
  }
  // The window manager notices the new focus later than the X server.
  bool IsInFront(Window window) {
    return windows_->FocusedWindow() == window && connection_.FrontWindow() == window;
  }
  void Minimise(WindowId window) { programs_.at(window)->Iconify(window); }
  std::string Taken(WindowId window) { return programs_.at(window)->TakeTyped(window); }
  // The chart program reads no keys while it is busy.
  void SetBusy(WindowId, bool busy) { chart.SetBusy(busy); }

  void PressL() { person.Press("l"); }
  void HoldShift(bool down) { down ? person.Hold("Shift_R") : person.LetGo("Shift_R"); }
  void SetCapsLock(bool on) { person.SetCapsLock(on); }
  bool HasCapsLock() const { return person.HasCapsLock(); }

  TypingTarget chart;
  TypingTarget editor;
  Person person;

 private:
  static const std::string& SharedDisplay() {
    static const XServer server(true);
    return server.Display();
  }

  std::unique_ptr<ChartWindows> windows_;
  std::unique_ptr<KeySender> keys_;
  X11Connection connection_;
  std::map<WindowId, TypingTarget*> programs_;
};

}  // namespace velumar
