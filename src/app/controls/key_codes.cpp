#include "app/controls/key_codes.h"

#include <QKeyEvent>
#include <algorithm>
#include <array>

namespace velumar {

namespace {

struct NamedKey {
  Qt::Key key;
  int code;
};

constexpr std::array kNamedKeys{
    NamedKey{Qt::Key_Backspace, 8}, NamedKey{Qt::Key_Tab, 9},     NamedKey{Qt::Key_Backtab, 9},
    NamedKey{Qt::Key_Return, 13},   NamedKey{Qt::Key_Enter, 13},  NamedKey{Qt::Key_Shift, 16},
    NamedKey{Qt::Key_Control, 17},  NamedKey{Qt::Key_Alt, 18},    NamedKey{Qt::Key_Pause, 19},
    NamedKey{Qt::Key_CapsLock, 20}, NamedKey{Qt::Key_Escape, 27}, NamedKey{Qt::Key_PageUp, 33},
    NamedKey{Qt::Key_PageDown, 34}, NamedKey{Qt::Key_End, 35},    NamedKey{Qt::Key_Home, 36},
    NamedKey{Qt::Key_Left, 37},     NamedKey{Qt::Key_Up, 38},     NamedKey{Qt::Key_Right, 39},
    NamedKey{Qt::Key_Down, 40},     NamedKey{Qt::Key_Insert, 45}, NamedKey{Qt::Key_Delete, 46},
    NamedKey{Qt::Key_NumLock, 144}};

}  // namespace

int VirtualKeyCode(const QKeyEvent& event) {
  const int key = event.key();
  // Digits, capital letters and the blank have their own character as code.
  if (key == Qt::Key_Space || (key >= Qt::Key_0 && key <= Qt::Key_9) ||
      (key >= Qt::Key_A && key <= Qt::Key_Z)) {
    return key;
  }
  constexpr int kF1 = 112;
  if (key >= Qt::Key_F1 && key <= Qt::Key_F16) return kF1 + key - Qt::Key_F1;
  const auto* named =
      std::find_if(kNamedKeys.begin(), kNamedKeys.end(),
                   [key](const NamedKey& candidate) { return candidate.key == key; });
  return named == kNamedKeys.end() ? 0 : named->code;
}

}  // namespace velumar
