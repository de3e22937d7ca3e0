#include "shell/account_box.h"

#include "base/number_text.h"
#include "trading/account_text.h"

namespace velumar {

namespace {

std::string_view CaptionOf(const Form1& setup, const TextBox& box) {
  if (&box == &setup.txtcomm) return kCommissionCaption;
  if (&box == &setup.txtInitPorfolio) return "Portfolio";
  if (&box == &setup.txtVAT) return kVatCaption;
  if (&box == &setup.txtContractValue) return kMarginCaption;
  return "Profit/Contract";
}

FigureWidth WidthOf(const Form1& setup, const TextBox& box, bool stock) {
  if (&box == &setup.txtVAT) return FigureWidth::kInt16;
  return &box == &setup.txtcomm ? CommissionWidth(stock) : FigureWidth::kSingle;
}

}  // namespace

std::array<TextBox*, 5> AccountBoxes(Form1& setup) {
  return {&setup.txtcomm, &setup.txtInitPorfolio, &setup.txtVAT, &setup.txtContractValue,
          &setup.txtProfitperContract};
}

std::optional<std::string> FigureProblem(const Form1& setup, const TextBox& box, bool stock) {
  return AccountTextProblem(CaptionOf(setup, box), box.Text(), WidthOf(setup, box, stock));
}

void MarkFigure(const Form1& setup, TextBox& box, bool stock) {
  const std::optional<std::string> problem = FigureProblem(setup, box, stock);
  box.SetForeColour(problem ? kRed : Form1::kField.colour);
  box.SetToolTip(std::string(Form1::kPathTip) + (problem ? "\n" + *problem : ""));
}

void ReadFigure(const Form1& setup, TextBox& box, bool stock, float& field) {
  if (!FigureProblem(setup, box, stock)) field = ToSingle(box.Text()).value_or(field);
  MarkFigure(setup, box, stock);
}

}  // namespace velumar
