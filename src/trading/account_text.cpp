#include "trading/account_text.h"

#include "base/decimal.h"
#include "base/number_text.h"

namespace velumar {

std::optional<std::string> AccountTextProblem(std::string_view caption, std::string_view text,
                                              FigureWidth width) {
  const std::string quoted = std::string(caption) + ": \"" + std::string(text) + "\" ";
  const std::optional<Decimal> number = Decimal::FromText(text);
  if (!number) return quoted + "is not a number";
  if (number->Negative() && !number->IsZero()) return quoted + "is negative";
  const bool fits =
      width == FigureWidth::kInt16 ? ToInt16(text).has_value() : ToSingle(text).has_value();
  return fits ? std::nullopt : std::optional(quoted + "is out of range");
}

}  // namespace velumar
