#include "platform/windows/session_end.h"

#include <windows.h>

namespace velumar {

bool IsSessionEnd(const void* message) {
  const MSG& told = *static_cast<const MSG*>(message);
  return told.message == WM_ENDSESSION && told.wParam != 0;
}

}  // namespace velumar
