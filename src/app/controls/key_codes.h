#pragma once

class QKeyEvent;

namespace velumar {

// The virtual key code of a key: 13 for Enter, 27 for Esc, letters by their capital; 0 if there is
// none.
int VirtualKeyCode(const QKeyEvent& event);

// True for a press of Enter, which clicks the button that has the focus. Holding it down counts
// once.
bool IsEnter(const QKeyEvent& event);

}  // namespace velumar
