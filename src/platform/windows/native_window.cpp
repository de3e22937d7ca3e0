#include "platform/windows/native_window.h"

#include <windows.h>

namespace velumar {

namespace {

HWND HandleOf(NativeWindow window) { return reinterpret_cast<HWND>(window); }

}  // namespace

void RoundNativeWindow(NativeWindow window, int width, int height, int corner_width,
                       int corner_height) {
  const HRGN region = ::CreateRoundRectRgn(0, 0, width, height, corner_width, corner_height);
  // The window owns the region from then on.
  if (::SetWindowRgn(HandleOf(window), region, TRUE) == 0) ::DeleteObject(region);
}

void SetNativeAlpha(NativeWindow window, int alpha) {
  constexpr int kSolid = 255;
  if (alpha < 0 || alpha > kSolid) return;
  const LONG style = ::GetWindowLongA(HandleOf(window), GWL_EXSTYLE);
  ::SetWindowLongA(HandleOf(window), GWL_EXSTYLE, style | WS_EX_LAYERED);
  ::SetLayeredWindowAttributes(HandleOf(window), 0, static_cast<BYTE>(alpha), LWA_ALPHA);
}

void KeepNativeOnTop(NativeWindow window) {
  ::SetWindowPos(HandleOf(window), HWND_TOPMOST, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

// If the button is up already, the window would stay attached to the mouse.
void DragNativeWindow(NativeWindow window) {
  const int button = ::GetSystemMetrics(SM_SWAPBUTTON) != 0 ? VK_RBUTTON : VK_LBUTTON;
  if ((::GetAsyncKeyState(button) & 0x8000) == 0) return;
  ::ReleaseCapture();
  ::SendMessageA(HandleOf(window), WM_NCLBUTTONDOWN, HTCAPTION, 0);
}

bool IsSessionEnd(const void* message) {
  const MSG& ended = *static_cast<const MSG*>(message);
  return ended.message == WM_ENDSESSION && ended.wParam != 0;
}

}  // namespace velumar
