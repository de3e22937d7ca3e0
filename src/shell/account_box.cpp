#include "shell/account_box.h"

#include "base/decimal.h"
#include "base/number_text.h"

namespace velumar {

namespace {

std::string_view CaptionOf(const Form1& setup, const TextBox& box) {
  if (&box == &setup.txtcomm) return "Comm.";
  if (&box == &setup.txtInitPorfolio) return "Portfolio";
  if (&box == &setup.txtVAT) return "VAT";
  if (&box == &setup.txtContractValue) return "Initial Margin";
  return "Profit/Contract";
}

// The tax and a commission in money are counted in 16 bits by the orders.
bool IsCountedSmall(const Form1& setup, const TextBox& box) {
  return &box == &setup.txtVAT || (&box == &setup.txtcomm && !setup.lblPercentComm.Visible());
}

}  // namespace

std::array<TextBox*, 5> AccountBoxes(Form1& setup) {
  return {&setup.txtcomm, &setup.txtInitPorfolio, &setup.txtVAT, &setup.txtContractValue,
          &setup.txtProfitperContract};
}

std::optional<std::string> FigureProblem(const Form1& setup, const TextBox& box) {
  const std::string& text = box.Text();
  const std::string quoted = std::string(CaptionOf(setup, box)) + ": \"" + text + "\" ";
  const std::optional<Decimal> number = Decimal::FromText(text);
  if (!number) return quoted + "is not a number";
  if (number->Negative() && !number->IsZero()) return quoted + "is negative";
  const bool fits =
      IsCountedSmall(setup, box) ? ToInt16(text).has_value() : ToSingle(text).has_value();
  return fits ? std::nullopt : std::optional(quoted + "is out of range");
}

void MarkFigure(const Form1& setup, TextBox& box) {
  const std::optional<std::string> problem = FigureProblem(setup, box);
  box.SetForeColour(problem ? kRed : Form1::kField.colour);
  box.SetToolTip(std::string(Form1::kPathTip) + (problem ? "\n" + *problem : ""));
}

void ReadFigure(const Form1& setup, TextBox& box, float& field) {
  field = ToSingle(box.Text()).value_or(field);
  MarkFigure(setup, box);
}

}  // namespace velumar
