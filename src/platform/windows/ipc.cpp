#include "platform/ipc.h"

#include <windows.h>

#include <string>
#include <utility>

#include "base/windows_text.h"

namespace velumar {

namespace {

constexpr const wchar_t* kListenerClass = L"VelumarListener";

// A number of its own on this desktop, the same for all programs.
UINT ListenerMessage() {
  static const UINT message = ::RegisterWindowMessageW(kListenerClass);
  return message;
}

// A window that is never shown, found by its title.
class WindowListener : public MessageListener {
 public:
  WindowListener(std::string_view name, std::function<void(const IpcMessage&)> receive)
      : receive_(std::move(receive)) {
    const HINSTANCE program = ::GetModuleHandleW(nullptr);
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = Handle;
    window_class.hInstance = program;
    window_class.lpszClassName = kListenerClass;
    ::RegisterClassW(&window_class);  // a second time changes nothing
    window_ = ::CreateWindowExW(0, kListenerClass, WideText(name).c_str(), 0, 0, 0, 0, 0,
                                HWND_MESSAGE, nullptr, program, nullptr);
    if (Listens()) {
      ::SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }
  }
  ~WindowListener() override {
    if (Listens()) ::DestroyWindow(window_);
  }
  WindowListener(const WindowListener&) = delete;
  WindowListener& operator=(const WindowListener&) = delete;

  bool Listens() const { return window_ != nullptr; }

 private:
  static LRESULT CALLBACK Handle(HWND window, UINT message, WPARAM first, LPARAM second) {
    const auto* const listener =
        reinterpret_cast<WindowListener*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
    if (listener == nullptr || message != ListenerMessage()) {
      return ::DefWindowProcW(window, message, first, second);
    }
    listener->receive_({static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(second)});
    return 0;
  }

  std::function<void(const IpcMessage&)> receive_;
  HWND window_ = nullptr;
};

}  // namespace

bool SendIpcMessage(std::string_view name, const IpcMessage& message) {
  const HWND window =
      ::FindWindowExW(HWND_MESSAGE, nullptr, kListenerClass, WideText(name).c_str());
  if (window == nullptr) return false;
  // The listener may want to come to the front, which only this process could do now.
  DWORD process = 0;
  ::GetWindowThreadProcessId(window, &process);
  ::AllowSetForegroundWindow(process);
  return ::PostMessageW(window, ListenerMessage(), message.first,
                        static_cast<LPARAM>(message.second)) != 0;
}

std::unique_ptr<MessageListener> ListenForMessages(std::string_view name,
                                                   std::function<void(const IpcMessage&)> receive) {
  auto listener = std::make_unique<WindowListener>(name, std::move(receive));
  if (!listener->Listens()) return nullptr;
  return listener;
}

}  // namespace velumar
