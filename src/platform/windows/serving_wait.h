#pragma once

#include <windows.h>

namespace velumar {

// Waits without letting window events run. What other programs send to windows of this thread is
// answered all the same: they would hang meanwhile.
inline void WaitServingOthers(DWORD milliseconds) {
  const ULONGLONG end = ::GetTickCount64() + milliseconds;
  for (ULONGLONG now = ::GetTickCount64(); now < end; now = ::GetTickCount64()) {
    ::MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(end - now), QS_SENDMESSAGE);
    MSG message;
    ::PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
  }
}

}  // namespace velumar
