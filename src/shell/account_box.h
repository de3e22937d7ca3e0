#pragma once

#include <array>
#include <optional>
#include <string>

#include "forms/form1.h"

namespace velumar {

// The boxes of the account, as they stand in the setup window from the top.
std::array<TextBox*, 5> AccountBoxes(Form1& setup);

// Why the text of an account box can't be used in the market family, as a sentence that names the
// box by its caption.
std::optional<std::string> FigureProblem(const Form1& setup, const TextBox& box, bool stock);

// Marks a box whose text can't be used: red, with the reason as the second line of its tooltip.
void MarkFigure(const Form1& setup, TextBox& box, bool stock);

// Reads a figure of the account from its box and marks the box. A text that can't be used leaves
// the field as it was.
void ReadFigure(const Form1& setup, TextBox& box, bool stock, float& field);

}  // namespace velumar
