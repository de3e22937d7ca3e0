#include "platform/ipc.h"

#include <windows.h>

#include <optional>
#include <string>
#include <utility>

#include "base/windows_text.h"
#include "platform/windows/chart_program.h"

namespace velumar {

namespace {

constexpr const wchar_t* kListenerClass = L"VelumarListener";

// A number of its own on this desktop, the same for all programs.
UINT ListenerMessage() {
  static const UINT message = ::RegisterWindowMessageW(kListenerClass);
  return message;
}

// Marks the texts that are requests, among those that other programs may send to any window.
constexpr ULONG_PTR kRequestMark = 0x56454C55;
constexpr LRESULT kRefused = 1;
constexpr LRESULT kAccepted = 2;

HWND ListenerWindow(std::string_view name) {
  return ::FindWindowExW(HWND_MESSAGE, nullptr, kListenerClass, WideText(name).c_str());
}

// A window that is never shown, found by its title. Only programs on the same desktop can send to
// it, and the system stops those with fewer rights.
class WindowListener : public MessageListener {
 public:
  // Handles a window message and returns its result; nothing if it is not for the listener.
  using Receive = std::function<std::optional<LRESULT>(UINT message, WPARAM first, LPARAM second)>;

  WindowListener(std::string_view name, Receive receive) : receive_(std::move(receive)) {
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
    const auto result =
        listener == nullptr ? std::nullopt : listener->receive_(message, first, second);
    return result ? *result : ::DefWindowProcW(window, message, first, second);
  }

  Receive receive_;
  HWND window_ = nullptr;
};

std::unique_ptr<MessageListener> Listen(std::string_view name, WindowListener::Receive receive) {
  auto listener = std::make_unique<WindowListener>(name, std::move(receive));
  if (!listener->Listens()) return nullptr;
  return listener;
}

}  // namespace

bool SendIpcMessage(std::string_view name, const IpcMessage& message) {
  const HWND window = ListenerWindow(name);
  if (window == nullptr) return false;
  // The listener may want to come to the front, which only this process could do now.
  ::AllowSetForegroundWindow(ProcessOf(window));
  return ::PostMessageW(window, ListenerMessage(), message.first,
                        static_cast<LPARAM>(message.second)) != 0;
}

std::unique_ptr<MessageListener> ListenForMessages(std::string_view name,
                                                   std::function<void(const IpcMessage&)> receive) {
  return Listen(name,
                [receive = std::move(receive)](UINT message, WPARAM first,
                                               LPARAM second) -> std::optional<LRESULT> {
                  if (message != ListenerMessage()) return std::nullopt;
                  receive({static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(second)});
                  return 0;
                });
}

IpcAnswer SendIpcRequest(std::string_view name, std::string_view text,
                         std::chrono::milliseconds patience) {
  if (text.size() > kLongestIpcRequest) return IpcAnswer::kRefused;
  const HWND window = ListenerWindow(name);
  if (window == nullptr) return IpcAnswer::kNobodyListens;
  std::string bytes(text);
  COPYDATASTRUCT request{kRequestMark, static_cast<DWORD>(bytes.size()), bytes.data()};
  DWORD_PTR result = 0;
  ::SendMessageTimeoutW(window, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&request), SMTO_BLOCK,
                        static_cast<UINT>(patience.count()), &result);
  if (result == 0) return IpcAnswer::kNone;
  return static_cast<LRESULT>(result) == kAccepted ? IpcAnswer::kAccepted : IpcAnswer::kRefused;
}

std::unique_ptr<MessageListener> ListenForRequests(std::string_view name,
                                                   std::function<bool(std::string_view)> accepts) {
  return Listen(name,
                [accepts = std::move(accepts)](UINT message, WPARAM,
                                               LPARAM second) -> std::optional<LRESULT> {
                  if (message != WM_COPYDATA) return std::nullopt;
                  const auto* const request = reinterpret_cast<const COPYDATASTRUCT*>(second);
                  if (request->dwData != kRequestMark || request->cbData > kLongestIpcRequest) {
                    return std::nullopt;
                  }
                  return accepts({static_cast<const char*>(request->lpData), request->cbData})
                             ? kAccepted
                             : kRefused;
                });
}

}  // namespace velumar
