#include "app/controls/key_codes.h"

#include <QHash>
#include <QKeyEvent>

namespace velumar {

int VirtualKeyCode(const QKeyEvent& event) {
  const int key = event.key();
  // Space, digits and letters: the code is the character itself.
  if (key == Qt::Key_Space || (key >= Qt::Key_0 && key <= Qt::Key_9) ||
      (key >= Qt::Key_A && key <= Qt::Key_Z)) {
    return key;
  }
  constexpr int kF1 = 112;
  if (key >= Qt::Key_F1 && key <= Qt::Key_F16) return kF1 + key - Qt::Key_F1;
  static const QHash<int, int> kNamedKeys{
      {Qt::Key_Backspace, 8}, {Qt::Key_Tab, 9},       {Qt::Key_Backtab, 9},  {Qt::Key_Return, 13},
      {Qt::Key_Enter, 13},    {Qt::Key_Shift, 16},    {Qt::Key_Control, 17}, {Qt::Key_Alt, 18},
      {Qt::Key_Pause, 19},    {Qt::Key_CapsLock, 20}, {Qt::Key_Escape, 27},  {Qt::Key_PageUp, 33},
      {Qt::Key_PageDown, 34}, {Qt::Key_End, 35},      {Qt::Key_Home, 36},    {Qt::Key_Left, 37},
      {Qt::Key_Up, 38},       {Qt::Key_Right, 39},    {Qt::Key_Down, 40},    {Qt::Key_Insert, 45},
      {Qt::Key_Delete, 46},   {Qt::Key_NumLock, 144}};
  return kNamedKeys.value(key);
}

bool IsEnter(const QKeyEvent& event) {
  const bool enter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
  return enter && !event.isAutoRepeat();
}

}  // namespace velumar
