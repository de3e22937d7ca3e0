#include "trading/order_texts.h"

#include "base/decimal.h"
#include "base/number_text.h"

namespace velumar {

namespace {

std::string Problem(std::string_view box, std::string_view text) {
  const std::string quoted = std::string(box) + ": \"" + std::string(text) + "\" ";
  const std::optional<Decimal> number = Decimal::FromText(text);
  if (!number) return quoted + "is not a number";
  return quoted + (number->Negative() && !number->IsZero() ? "is negative" : "is out of range");
}

// The converted text, or 0 and the first problem that was met.
template <typename Number>
double Usable(std::optional<Number> value, std::string_view box, std::string_view text,
              std::string& problem) {
  const std::optional<Decimal> number = Decimal::FromText(text);
  const bool negative = number && number->Negative() && !number->IsZero();
  if (value && !negative) return *value;
  if (problem.empty()) problem = Problem(box, text);
  return 0;
}

}  // namespace

OrderTexts ReadOrderTexts(Desktop& desktop, std::string_view quantity, bool stock) {
  const Form1& setup = desktop.form1();
  const std::string& commission = setup.txtcomm.Text();
  OrderTexts texts;
  std::string& problem = texts.problem;
  const std::optional<float> single = ToSingle(quantity);
  texts.quantity_single = static_cast<float>(Usable(single, "Vol/Contract", quantity, problem));
  texts.quantity = ToDouble(quantity).value_or(0);
  texts.commission = stock ? Usable(ToSingle(commission), "Comm.", commission, problem)
                           : Usable(ToInt16(commission), "Comm.", commission, problem);
  texts.vat = Usable(ToInt16(setup.txtVAT.Text()), "VAT", setup.txtVAT.Text(), problem);
  Usable(ToSingle(setup.txtContractValue.Text()), "Initial Margin", setup.txtContractValue.Text(),
         problem);
  return texts;
}

}  // namespace velumar
