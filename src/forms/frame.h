#pragma once

#include "forms/control.h"

namespace velumar {

// White paper with a line around it and its Text in that line; other controls stand on it.
class Frame : public Control {
 public:
  Frame(Form& form, const ControlSpec& spec) : Control(form, ControlKind::kFrame, spec) {}
};

}  // namespace velumar
