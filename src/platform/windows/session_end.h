#pragma once

namespace velumar {

// Whether a window's message (a MSG) says that the user logs out or the system goes down.
bool IsSessionEnd(const void* message);

}  // namespace velumar
