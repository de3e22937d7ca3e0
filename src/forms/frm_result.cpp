#include "forms/frm_result.h"

namespace velumar {

FrmResult::FrmResult() : Form({"FrmResult", "", 10560, 11115, true}) {
  SetKeepsKeys(true);
  // A frame contains the controls after it in the table.
  const Control* frame = nullptr;
  for (Control* control : Controls()) {
    if (control->Kind() == ControlKind::kFrame) {
      frame = control;
    } else if (frame != nullptr) {
      control->PlaceIn(*frame);
    }
  }
  Combo1.SetTypable(false);
  cbxRun.SetTypable(false);
}

}  // namespace velumar
