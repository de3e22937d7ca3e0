#include "shell/account_box.h"

#include <optional>
#include <string>

#include "base/decimal.h"
#include "base/number_text.h"

namespace velumar {

void ReadFigure(TextBox& box, float& field) {
  const std::string tip(Form1::kPathTip);
  if (const std::optional<float> value = ToSingle(box.Text())) {
    field = *value;
    box.SetForeColour(Form1::kField.colour);
    box.SetToolTip(tip);
    return;
  }
  const bool number = Decimal::FromText(box.Text()).has_value();
  box.SetForeColour(kRed);
  box.SetToolTip(tip + "\n\"" + box.Text() + "\" " +
                 (number ? "is out of range" : "is not a number"));
}

}  // namespace velumar
