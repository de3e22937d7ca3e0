#include "trading/account_text.h"

#include "base/decimal.h"
#include "base/number_text.h"

namespace velumar {

namespace {

// A text that would be a number without its commas.
bool MisplacesCommas(std::string_view text) {
  std::string without(text);
  return std::erase(without, ',') > 0 && Decimal::FromText(without).has_value();
}

}  // namespace

std::optional<std::string> AccountTextProblem(std::string_view caption, std::string_view text,
                                              FigureWidth width) {
  const std::string quoted = std::string(caption) + ": \"" + std::string(text) + "\" ";
  const std::optional<Decimal> number = Decimal::FromText(text);
  if (!number && MisplacesCommas(text)) {
    return quoted + "is unclear: commas group thousands, a point starts the decimals";
  }
  if (!number) return quoted + "is not a number";
  if (number->Negative() && !number->IsZero()) return quoted + "is negative";
  const bool fits =
      width == FigureWidth::kInt16 ? ToInt16(text).has_value() : ToSingle(text).has_value();
  return fits ? std::nullopt : std::optional(quoted + "is out of range");
}

}  // namespace velumar
