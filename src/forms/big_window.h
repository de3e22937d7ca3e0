#pragma once

#include "forms/form.h"

namespace velumar {

// One number of the run in very large type.
class BigWindow : public Form {
 public:
  BigWindow(const FormSpec& form, const ControlSpec& label) : Form(form), lblScore(*this, label) {}

  static constexpr Look BigType(Colour colour, Alignment alignment) {
    return {.colour = colour,
            .face = FontFace::kImpact,
            .points = 36,
            .bold = true,
            .italic = true,
            .alignment = alignment};
  }

  Label lblScore;
};

}  // namespace velumar
