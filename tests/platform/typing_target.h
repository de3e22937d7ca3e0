#pragma once

#include <X11/Xlib.h>

#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>

namespace velumar {

// A program with windows that records what is typed into them. It has its own thread and
// connection, so for the X server it is another program.
class TypingTarget {
 public:
  struct Look {
    std::string title;
    std::string program_file = "editor";  // the window's class
    Window owner = 0;
    bool answers_pings = true;
  };

  explicit TypingTarget(const std::string& display);
  TypingTarget(const TypingTarget&) = delete;
  TypingTarget& operator=(const TypingTarget&) = delete;
  ~TypingTarget();

  // Returns once the window is shown.
  Window Open(const Look& look);
  void Close(Window window);
  void Iconify(Window window);
  // Puts the window on another of the window manager's workspaces.
  void MoveToWorkspace(Window window, long workspace);
  int Width(Window window);

  // Returns and clears what was typed: characters as they are, other keys as "<Return>", with "%"
  // and "^" for Alt and Ctrl.
  std::string TakeTyped(Window window);
  // A busy program reads no events.
  void SetBusy(bool busy) { busy_ = busy; }
  // Called on the program's thread at each key, before the program answers a ping. It may close
  // windows.
  void SetOnKey(std::function<void(const std::string& key)> on_key);

 private:
  struct Field {
    XIC input;
    std::string typed;
  };

  void Run();
  void Handle(XEvent& event);
  void HandleKey(XKeyEvent& key);
  std::string TextOf(XIC input, XKeyEvent& key) const;
  Atom AtomOf(const char* name) const { return XInternAtom(display_, name, False); }

  std::recursive_mutex mutex_;  // all calls and fields below
  Display* display_;
  XIM input_method_;
  std::map<Window, Field> fields_;
  std::function<void(const std::string&)> on_key_;
  unsigned pings_ = 0;
  std::atomic<bool> busy_ = false;
  std::atomic<bool> ending_ = false;
  std::thread thread_;
};

}  // namespace velumar
