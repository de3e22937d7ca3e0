#pragma once

#include "forms/form.h"
#include "forms/panels.h"

namespace velumar {

// A card: the trader decides at the end of the chart, then judges the decision.
class FrmCard : public Form {
 public:
  FrmCard() : Form({"frmCard", "Velumar: card", 5640, 4140}) {
    SetKeepsKeys(true);
    cboConfidence.SetTypable(false);
    lstOutcome.SetWraps(true);
  }

  static constexpr Look kCaption{.colour = kDarkBlue, .bold = true};
  static constexpr Look kField{.colour = kDarkBlue};
  static constexpr Look kProblem{.colour = kRed};

  Picture Image1{*this, {"Image1", 0, 0, 5640, 4140, "backdrop-result"}};
  Frame Frame1{*this, {"Frame1", 120, 240, 5400, 3780, "Card", "", kCaption}};
  Label Label1{*this, {"Label1", 360, 660, 600, 285, "Stop", "", kCaption}};
  TextBox txtStop{*this,
                  {"txtStop", 960, 660, 1260, 285, "",
                   "Price at which the trade would be given up; without it there is no R", kField}};
  Label Label2{*this, {"Label2", 3000, 660, 1050, 285, "Confidence", "", kCaption}};
  ComboBox cboConfidence{*this,
                         {"cboConfidence", 4080, 660, 1200, 285, "none",
                          "How sure you are, from 1 (hardly) to 5 (very)", kField, "Confidence"},
                         {"none", "1", "2", "3", "4", "5"}};
  Button cmdLong{*this,
                 {"cmdLong", 360, 1080, 1560, 315, "&Long", "You would buy at the last close"}};
  Button cmdShort{
      *this, {"cmdShort", 2040, 1080, 1560, 315, "&Short", "You would sell at the last close"}};
  Button cmdNothing{*this, {"cmdNothing", 3720, 1080, 1560, 315, "&Nothing", "You would stay out"}};
  ListBox lstOutcome{*this, {"lstOutcome", 360, 1500, 4920, 1500, "", "", kField, "Decisions"}};
  Label lblStatus{*this, {"lblStatus", 360, 3060, 4920, 285, "", "", kField}};
  Button cmdGood{
      *this,
      {"cmdGood", 360, 3480, 1560, 315, "&Good", "Whatever the result: you would do it again"}};
  Button cmdFair{*this, {"cmdFair", 2040, 3480, 1560, 315, "&Fair", "Neither good nor poor"}};
  Button cmdPoor{
      *this, {"cmdPoor", 3720, 3480, 1560, 315, "&Poor", "Whatever the result: it was a mistake"}};
  Button cmdNext{*this,
                 {"cmdNext", 3720, 3480, 1560, 315, "Ne&xt card", "The next card that is due"}};
  PictureButton Image5{*this, {"Image5", 4140, 345, 1140, 195, "close", "Close (Esc)"}};
};

}  // namespace velumar
