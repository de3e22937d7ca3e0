#pragma once

#include <signal.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <optional>
#include <stdexcept>

#include "platform/eventually.h"
#include "platform/typing_target.h"
#include "platform/x11/chart_desktop.h"
#include "platform/x11/connection.h"
// The X library comes last, since it defines macros with common names.
#include <X11/XKBlib.h>
extern "C" {
#include <xdo.h>
}

namespace velumar {

// A program that ends with the object, or with the test program if that crashes.
class PipedProgram {
 public:
  explicit PipedProgram(const std::string& command)
      : output_(::popen(
            ("echo $$; exec setpriv --pdeathsig TERM " + command + " 2> /dev/null").c_str(), "re")),
        id_(std::stoi(Line())) {}
  PipedProgram(const PipedProgram&) = delete;
  PipedProgram& operator=(const PipedProgram&) = delete;
  ~PipedProgram() {
    ::kill(id_, SIGTERM);
    ::pclose(output_);
  }
  // The next line of its output.
  std::string Line() const {
    std::array<char, 256> text{};
    if (std::fgets(text.data(), text.size(), output_) == nullptr) return "";
    const std::string line = text.data();
    return line.substr(0, line.find('\n'));
  }

 private:
  std::FILE* output_;
  pid_t id_;
};

// A virtual X display, with or without a window manager.
class XServer {
 public:
  static constexpr unsigned kWidth = 800;
  // Returns true if the programs that it needs are installed.
  static bool Installed() {
    return std::system("type Xvfb openbox setxkbmap setpriv > /dev/null 2>&1") == 0;
  }

  explicit XServer(bool with_window_manager) {
    if (!with_window_manager) return;
    window_manager_.emplace("env DISPLAY=" + display_ +
                            " openbox --sm-disable --startup 'echo ready'");
    // It writes messages too.
    for (std::string line; line != "ready";) {
      line = window_manager_->Line();
      if (line.empty()) throw std::runtime_error("openbox didn't start");
    }
  }

  // ":7"
  const std::string& Display() const { return display_; }
  // A layout of setxkbmap: "us", "us,ru".
  void SetLayout(const std::string& layout) const {
    const std::string command = "setxkbmap -display " + display_ + " " + layout;
    if (std::system(command.c_str()) != 0) throw std::runtime_error("no layout " + layout);
  }

 private:
  PipedProgram server_{"Xvfb -displayfd 1 -screen 0 800x600x24 -nolisten tcp -noreset"};
  std::string display_ = ":" + server_.Line();
  std::optional<PipedProgram> window_manager_;
};

// The chart program, another program and a user at the keyboard of a display.
class KeyDriver {
 public:
  static bool Available() { return XServer::Installed(); }
  // The display that all tests share.
  static const XServer& Managed() {
    static const XServer server(true);
    return server;
  }

  explicit KeyDriver(const XServer& server = Managed()) : display(server.Display()) {}
  KeyDriver(const KeyDriver&) = delete;
  KeyDriver& operator=(const KeyDriver&) = delete;
  ~KeyDriver() {
    SetCapsLock(false);
    xdo_free(user_);
  }

  ChartWindows& Windows() { return *windows_; }
  KeySender& Keys() { return *keys_; }
  WindowId OpenChart(const std::string& title) { return OpenInFront(chart, {.title = title}); }
  WindowId OpenOther(const std::string& title) { return OpenInFront(editor, {.title = title}); }
  // Waits until the window manager has given the new window the focus. It notices the focus later
  // than the X server.
  Window OpenInFront(TypingTarget& program, const TypingTarget::Look& look) {
    const Window window = program.Open(look);
    programs_[window] = &program;
    EXPECT_TRUE(Eventually([&] {
      return windows_->FocusedWindow() == window && connection_.FrontWindow() == window;
    })) << look.title;
    return window;
  }
  void Minimise(WindowId window) {
    xdo_minimize_window(user_, window);
    XSync(user_->xdpy, False);
  }
  std::string Taken(WindowId window) { return programs_.at(window)->TakeTyped(window); }
  // The chart program reads no keys while it is busy.
  void SetBusy(WindowId, bool busy) { chart.SetBusy(busy); }

  void PressL() { xdo_send_keysequence_window(user_, CURRENTWINDOW, "l", 0); }
  void HoldShift(bool down) {
    (down ? xdo_send_keysequence_window_down : xdo_send_keysequence_window_up)(user_, CURRENTWINDOW,
                                                                               "Shift_R", 0);
  }
  void MoveToWorkspace(Window window, long workspace) {
    xdo_set_desktop_for_window(user_, window, workspace);
    XSync(user_->xdpy, False);
  }
  unsigned Width(Window window) const {
    unsigned width = 0;
    xdo_get_window_size(user_, window, &width, nullptr);
    return width;
  }
  // As a program with an open menu.
  void GrabKeyboard(bool grab) {
    grab ? XGrabKeyboard(user_->xdpy, DefaultRootWindow(user_->xdpy), True, GrabModeAsync,
                         GrabModeAsync, CurrentTime)
         : XUngrabKeyboard(user_->xdpy, CurrentTime);
    XSync(user_->xdpy, False);
  }
  void SetCapsLock(bool on) {
    XkbLockModifiers(user_->xdpy, XkbUseCoreKbd, LockMask, on ? LockMask : 0u);
    XSync(user_->xdpy, False);
  }
  void SwitchToLayout(unsigned number) {
    XkbLockGroup(user_->xdpy, XkbUseCoreKbd, number);
    XSync(user_->xdpy, False);
  }
  // The symbols of all keys.
  std::vector<KeySym> Layout() const {
    int width = 0;
    const int count = user_->keycode_high - user_->keycode_low + 1;
    KeySym* const symbols =
        XGetKeyboardMapping(user_->xdpy, static_cast<KeyCode>(user_->keycode_low), count, &width);
    std::vector<KeySym> layout(symbols, symbols + std::ptrdiff_t{count} * width);
    XFree(symbols);
    return layout;
  }

  const std::string display;  // ":7"
  TypingTarget chart{display};
  TypingTarget editor{display};

 private:
  xdo_t* user_ = xdo_new(display.c_str());
  std::unique_ptr<ChartWindows> windows_ = MakeX11ChartWindows(display);
  std::unique_ptr<KeySender> keys_ = MakeX11KeySender(display);
  X11Connection connection_{display};
  std::map<WindowId, TypingTarget*> programs_;
};

}  // namespace velumar
