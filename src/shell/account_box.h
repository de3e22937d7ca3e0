#pragma once

#include "forms/form1.h"

namespace velumar {

// Reads a figure of the account from its box. A text that is no figure leaves the field as it was
// and marks the box: red, with the reason as the second line of its tooltip.
void ReadFigure(TextBox& box, float& field);

}  // namespace velumar
