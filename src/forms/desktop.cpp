#include "forms/desktop.h"

namespace velumar {

Desktop::Desktop()
    : big_date_time_({"frmBigDateTime", "Velumar", 6195, 990},
                     {"lblScore", 0, 120, 6135, 900, "01/25/2007  - 16:00", "",
                      BigWindow::BigType(kBlue, Alignment::kCentre)}),
      big_score_({"frmBigScore", "Velumar", 4125, 990},
                 {"lblScore", 0, 120, 4095, 900, "100,000,000", "",
                  BigWindow::BigType(kDarkGreen, Alignment::kCentre)}),
      big_price_({"frmBigPrice", "Velumar", 11955, 1035},
                 {"lblScore", 0, 120, 11895, 900, "O: 111.00 H:222.00 L:333.00 C:444.00", "",
                  BigWindow::BigType(kDarkGreen, Alignment::kLeft)}) {}

void Desktop::Load(Form& form) {
  if (!form.Loaded()) form.BeLoaded();
}

void Desktop::Unload(Form& form) {
  if (form.Loaded()) form.BeUnloaded();
}

Desktop::Windows Desktop::Untouched() {
  return {form1_,     form2_,     form3_,      big_date_time_, big_score_,
          big_price_, frm_score_, frm_result_, graph2_};
}

std::array<Form*, 9> Desktop::All() {
  return {&form1_,     &form2_,     &form3_,      &big_date_time_, &big_score_,
          &big_price_, &frm_score_, &frm_result_, &graph2_};
}

Form* Desktop::Find(std::string_view name) {
  for (Form* form : All()) {
    if (form->Name() == name) return form;
  }
  return nullptr;
}

void Desktop::SetListener(FormListener* listener) {
  for (Form* form : All()) form->SetListener(listener);
}

}  // namespace velumar
