#pragma once

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <array>
#include <atomic>
#include <clocale>
#include <functional>
#include <map>
#include <mutex>
#include <stdexcept>
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

  explicit TypingTarget(const std::string& display) : display_(XOpenDisplay(display.c_str())) {
    if (display_ == nullptr) throw std::runtime_error("no display " + display);
    std::setlocale(LC_CTYPE, "C.UTF-8");
    XSetLocaleModifiers("@im=none");
    input_method_ = XOpenIM(display_, nullptr, nullptr, nullptr);
    thread_ = std::thread([this] { Run(); });
  }
  ~TypingTarget() {
    ending_ = true;
    thread_.join();
    XCloseIM(input_method_);
    XCloseDisplay(display_);
  }

  Window Open(const Look& look) {
    const std::lock_guard lock(mutex_);
    const Window window =
        XCreateSimpleWindow(display_, DefaultRootWindow(display_), 0, 0, 200, 100, 0, 0, 0);
    XChangeProperty(display_, window, AtomOf("_NET_WM_NAME"), AtomOf("UTF8_STRING"), 8,
                    PropModeReplace, reinterpret_cast<const unsigned char*>(look.title.data()),
                    static_cast<int>(look.title.size()));
    // xdotool finds windows by this older name only.
    XStoreName(display_, window, look.title.c_str());
    std::string program_file = look.program_file;
    XClassHint names{program_file.data(), program_file.data()};
    XSetClassHint(display_, window, &names);
    if (look.owner != 0) XSetTransientForHint(display_, window, look.owner);
    Atom ping = AtomOf("_NET_WM_PING");
    if (look.answers_pings) XSetWMProtocols(display_, window, &ping, 1);
    XSelectInput(display_, window, KeyPressMask | StructureNotifyMask);
    fields_[window] = {XCreateIC(input_method_, XNInputStyle, XIMPreeditNothing | XIMStatusNothing,
                                 XNClientWindow, window, nullptr),
                       ""};
    XMapWindow(display_, window);
    XSync(display_, False);
    return window;
  }
  void Close(Window window) {
    const std::lock_guard lock(mutex_);
    XDestroyIC(fields_.at(window).input);
    fields_.erase(window);
    XDestroyWindow(display_, window);
    XFlush(display_);
  }

  // Returns and clears what was typed: characters as they are, other keys as "<Return>", with "%"
  // and "^" for Alt and Ctrl.
  std::string TakeTyped(Window window) {
    const std::lock_guard lock(mutex_);
    return std::exchange(fields_.at(window).typed, "");
  }
  // A busy program reads no events.
  void SetBusy(bool busy) { busy_ = busy; }
  // Called on the program's thread at each key, before the program answers a ping. It may close
  // windows.
  void SetOnKey(std::function<void(const std::string& key)> on_key) {
    const std::lock_guard lock(mutex_);
    on_key_ = std::move(on_key);
  }

 private:
  struct Field {
    XIC input;
    std::string typed;
  };

  void Run() {
    while (!ending_) {
      {
        const std::lock_guard lock(mutex_);
        while (!busy_ && XPending(display_) > 0) {
          XEvent event{};
          XNextEvent(display_, &event);
          if (XFilterEvent(&event, None) == False) Handle(event);
        }
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }
  void Handle(XEvent& event) {
    const Window root = DefaultRootWindow(display_);
    if (event.type == MappingNotify) XRefreshKeyboardMapping(&event.xmapping);
    if (event.type == KeyPress) HandleKey(event.xkey);
    if (event.type == ClientMessage &&
        event.xclient.data.l[0] == static_cast<long>(AtomOf("_NET_WM_PING"))) {
      event.xclient.window = root;
      // Toolkits send their answers to one or the other.
      const long audience = ++pings_ % 2 == 0 ? StructureNotifyMask
                                              : SubstructureRedirectMask | SubstructureNotifyMask;
      XSendEvent(display_, root, False, audience, &event);
      XFlush(display_);
    }
  }
  void HandleKey(XKeyEvent& key) {
    const auto field = fields_.find(key.window);
    if (field == fields_.end()) return;
    const std::string text = TextOf(field->second.input, key);
    field->second.typed += text;
    if (!text.empty() && on_key_) on_key_(text);
  }
  static std::string TextOf(XIC input, XKeyEvent& key) {
    std::array<char, 16> text{};
    KeySym symbol = NoSymbol;
    Status status = 0;
    const int bytes = Xutf8LookupString(input, &key, text.data(), text.size(), &symbol, &status);
    if (IsModifierKey(symbol)) return "";
    const bool shortcut = (key.state & (ControlMask | Mod1Mask)) != 0;
    const KeySym unshifted = XLookupKeysym(&key, 0);
    std::string typed = (key.state & ControlMask) != 0 ? "^" : "";
    if ((key.state & Mod1Mask) != 0) typed += "%";
    if (shortcut && (key.state & ShiftMask) != 0) typed += "+";
    if (shortcut && unshifted < 0x80) return typed + static_cast<char>(unshifted);
    const bool plain = bytes > 0 && static_cast<unsigned char>(text[0]) >= 0x20;
    if (plain) return typed + std::string(text.data(), static_cast<std::size_t>(bytes));
    return typed + "<" + XKeysymToString(symbol) + ">";
  }
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
