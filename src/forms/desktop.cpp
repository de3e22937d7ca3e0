#include "forms/desktop.h"

namespace velumar {

void Desktop::Unload(Form& form) {
  if (form.Loaded()) form.BeUnloaded();
}

std::array<Form*, 9> Desktop::All() {
  return {&windows_.form1,          &windows_.form2,       &windows_.form3,
          &windows_.frmBigDateTime, &windows_.frmBigScore, &windows_.frmBigPrice,
          &windows_.frmScore,       &windows_.frmResult,   &windows_.graph2};
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
