#include "trading/order_texts.h"

#include <optional>

#include "base/number_text.h"
#include "trading/account_text.h"

namespace velumar {

namespace {

// The text as a number, or 0 and the first problem that was met.
double Usable(std::string_view caption, std::string_view text, FigureWidth width,
              std::string& problem) {
  if (const std::optional<std::string> why = AccountTextProblem(caption, text, width)) {
    if (problem.empty()) problem = *why;
    return 0;
  }
  if (width == FigureWidth::kSingle) return ToSingle(text).value_or(0);
  return ToInt16(text).value_or(0);
}

}  // namespace

OrderTexts ReadOrderTexts(Desktop& desktop, std::string_view quantity, bool stock) {
  const Form1& setup = desktop.form1();
  OrderTexts texts;
  std::string& problem = texts.problem;
  texts.quantity_single =
      static_cast<float>(Usable("Vol/Contract", quantity, FigureWidth::kSingle, problem));
  texts.quantity = ToDouble(quantity).value_or(0);
  texts.commission =
      Usable(kCommissionCaption, setup.txtcomm.Text(), CommissionWidth(stock), problem);
  texts.vat = Usable(kVatCaption, setup.txtVAT.Text(), FigureWidth::kInt16, problem);
  Usable(kMarginCaption, setup.txtContractValue.Text(), FigureWidth::kSingle, problem);
  return texts;
}

}  // namespace velumar
