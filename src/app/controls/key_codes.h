#pragma once

class QKeyEvent;

namespace velumar {

// The usual virtual code of the key: 13 for Enter, 27 for Esc, letters by their capital.
// 0 for a key that has none.
int VirtualKeyCode(const QKeyEvent& event);

}  // namespace velumar
