#pragma once

#include "forms/form.h"
#include "forms/panels.h"

namespace velumar {

// The ticket: what the trader plans for the next order, or for one that was placed.
class FrmTicket : public Form {
 public:
  FrmTicket() : Form({"frmTicket", "Velumar: plan", 5640, 3990}) {
    SetKeepsKeys(true);
    cboSetup.SetSearched(true);
    cboFor.SetTypable(false);
  }

  static constexpr Look kCaption{.colour = kDarkBlue, .bold = true};
  static constexpr Look kField{.colour = kDarkBlue};
  static constexpr Look kProblem{.colour = kRed};

  Picture Image1{*this, {"Image1", 0, 0, 5640, 3990, "backdrop-result"}};
  Frame Frame1{*this, {"Frame1", 120, 240, 5400, 3630, "Plan", "", kCaption}};
  Label Label1{*this, {"Label1", 360, 660, 750, 285, "For", "", kCaption}};
  Label Label2{*this, {"Label2", 360, 1050, 750, 285, "Stop", "", kCaption}};
  TextBox txtStop{
      *this,
      {"txtStop", 1140, 1050, 1260, 285, "",
       "Price at which the trade is given up; the run pauses there, nothing is filled", kField}};
  Label Label3{*this, {"Label3", 3120, 1050, 855, 285, "Target", "", kCaption}};
  TextBox txtTarget{
      *this,
      {"txtTarget", 4020, 1050, 1260, 285, "",
       "Price at which the trade has won enough; the run pauses there, nothing is filled", kField}};
  Label Label4{*this, {"Label4", 360, 1440, 750, 285, "Setup", "", kCaption}};
  ComboBox cboSetup{
      *this, {"cboSetup", 1140, 1440, 2160, 285, "", "A word for this kind of trade", kField}};
  Label Label5{*this, {"Label5", 3480, 1440, 1050, 285, "Confidence", "", kCaption}};
  ComboBox cboConfidence{*this,
                         {"cboConfidence", 4560, 1440, 720, 285, "",
                          "How sure you are, from 1 (hardly) to 5 (very)", kField, "Confidence"},
                         {"1", "2", "3", "4", "5"}};
  Label Label6{*this, {"Label6", 360, 1830, 750, 285, "Reasons", "", kCaption}};
  TextBox txtReasons{*this,
                     {"txtReasons", 1140, 1830, 4140, 285, "", "Why you want this trade", kField}};
  Label lblRisk{*this, {"lblRisk", 360, 2250, 4920, 285, "", "", kField}};
  Label Label7{*this, {"Label7", 360, 2580, 750, 285, "To risk", "", kCaption}};
  TextBox txtPercent{*this,
                     {"txtPercent", 1140, 2580, 600, 285, "1",
                      "Percent of the portfolio that a trade may risk", kField}};
  Label lblQuantity{*this, {"lblQuantity", 1830, 2580, 3450, 285, "", "", kField}};
  CheckBox chkPause{
      *this,
      {"chkPause", 360, 2970, 3000, 285, "Pause at stop and target",
       "Pauses the run when a bar reaches the stop or target of an open trade", kField}};
  Label lblStatus{*this, {"lblStatus", 360, 3360, 3420, 390, "", "", kProblem}};
  Button cmdKeep{*this,
                 {"cmdKeep", 3900, 3390, 1380, 300, "&Keep", "Keep this plan (Enter)", {}, "Keep"}};
  ComboBox cboFor{*this,
                  {"cboFor", 1140, 660, 4140, 285, "", "The order that this plan is for", kField}};
  PictureButton Image5{*this, {"Image5", 4140, 345, 1140, 195, "close", "Close (Esc)"}};
};

}  // namespace velumar
