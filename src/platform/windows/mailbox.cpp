#include "platform/windows/mailbox.h"

#include <windows.h>

#include <stdexcept>
#include <string>
#include <utility>

#include "base/windows_text.h"

namespace velumar {

namespace {

constexpr const wchar_t* kClass = L"VelumarMailbox";

// A number of its own on this desktop, the same for all programs.
UINT MailMessage() {
  static const UINT message = ::RegisterWindowMessageW(kClass);
  return message;
}

}  // namespace

struct WindowsMailbox::Box {
  static LRESULT CALLBACK Handle(HWND window, UINT message, WPARAM first, LPARAM second) {
    const auto* const box = reinterpret_cast<Box*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
    if (box == nullptr || message != MailMessage()) {
      return ::DefWindowProcW(window, message, first, second);
    }
    box->receive({static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(second)});
    return 0;
  }

  static void RegisterClass() {
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = Handle;
    window_class.hInstance = ::GetModuleHandleW(nullptr);
    window_class.lpszClassName = kClass;
    ::RegisterClassW(&window_class);  // a second time changes nothing
  }

  std::function<void(const Mail&)> receive;
  HWND window = nullptr;
};

WindowsMailbox::WindowsMailbox(std::string_view name, std::function<void(const Mail&)> receive)
    : box_(std::make_unique<Box>()) {
  box_->receive = std::move(receive);
  Box::RegisterClass();
  box_->window = ::CreateWindowExW(0, kClass, WideText(name).c_str(), 0, 0, 0, 0, 0, HWND_MESSAGE,
                                   nullptr, ::GetModuleHandleW(nullptr), nullptr);
  if (box_->window == nullptr) {
    throw std::runtime_error("there is no mailbox: " + SystemErrorText(::GetLastError()));
  }
  ::SetWindowLongPtrW(box_->window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(box_.get()));
}

WindowsMailbox::~WindowsMailbox() { ::DestroyWindow(box_->window); }

bool PostMail(std::string_view name, const Mail& mail) {
  const HWND window = ::FindWindowExW(HWND_MESSAGE, nullptr, kClass, WideText(name).c_str());
  if (window == nullptr) return false;
  // The one who gets it may come to the front, which only this process could now.
  DWORD process = 0;
  ::GetWindowThreadProcessId(window, &process);
  ::AllowSetForegroundWindow(process);
  return ::PostMessageW(window, MailMessage(), mail.first, static_cast<LPARAM>(mail.second)) != 0;
}

}  // namespace velumar
