#pragma once

#include "forms/form.h"
#include "forms/panels.h"

namespace velumar {

// The score board: the best scores of a service, and the trader's own to send.
class FrmScore : public Form {
 public:
  FrmScore() : Form({"frmScore", "Velumar: score board", 7125, 5925}) { SetKeepsKeys(true); }

  // The corner of the frame that contains the rest.
  static constexpr float kLeft = 120;
  static constexpr float kTop = 240;
  static constexpr Look kCaption{.colour = kDarkBlue, .bold = true};
  static constexpr Look kField{.colour = kDarkBlue};
  static constexpr Look kFixed{.colour = kDarkBlue, .backdrop = Backdrop::kBluePaper};
  static constexpr Look kHelp{.colour = kDarkBlue};
  static constexpr Look kStatus{.colour = kDarkBlue, .points = 9};

  Picture Image1{*this, {"Image1", 0, 0, 9990, 9075, "backdrop-result"}};
  Frame Frame2{*this, {"Frame2", kLeft, kTop, 6855, 5535, "Top 10 score", "", kCaption}};
  // Shown instead of the list while no service is set.
  Label lblHelp1{*this, HelpLine("lblHelp1", 0, "No score service is set yet.")};
  Label lblHelp2{*this, HelpLine("lblHelp2", 1, "Type its address below and press Enter,")};
  Label lblHelp3{*this, HelpLine("lblHelp3", 2, "such as http://127.0.0.1:8080")};
  Label Label3{*this, {"Label3", kLeft + 720, kTop + 3600, 1020, 285, "Service", "", kCaption}};
  TextBox txtAddress{*this,
                     {"txtAddress", kLeft + 1800, kTop + 3600, 3975, 285, "",
                      "Address of the score service", kField}};
  Label lblStatus{*this, {"lblStatus", kLeft + 1200, kTop + 3945, 5415, 240, "", "", kStatus}};
  Label Label1{*this, {"Label1", kLeft + 720, kTop + 4200, 1020, 285, "Your Name", "", kCaption}};
  TextBox txtName{
      *this,
      {"txtName", kLeft + 1800, kTop + 4200, 3975, 285, "", "Your name on the list", kField}};
  Label Label2{*this, {"Label2", kLeft + 720, kTop + 4680, 1020, 285, "Last Score", "", kCaption}};
  TextBox txtScore{*this,
                   {"txtScore", kLeft + 1800, kTop + 4680, 3975, 285, "",
                    "The portfolio's value when this window was opened", kFixed}};
  Button btnSend{*this,
                 {"btnSend", kLeft + 2640, kTop + 5160, 2055, 255, "&Send Score",
                  "Send this score to the service"}};
  ListBox List1{*this,
                {"List1", kLeft + 1200, kTop + 360, 5415, 3195, "", "The best scores", kField}};
  PictureButton Image5{*this, {"Image5", kLeft + 5475, kTop + 135, 1140, 195, "close", "Close"}};

 private:
  static constexpr ControlSpec HelpLine(std::string_view name, int line, std::string_view text) {
    constexpr float kFirst = kTop + 720;
    constexpr float kHeight = 300;
    return {name, kLeft + 1320, kFirst + kHeight * static_cast<float>(line), 5175, 255, text,
            "",   kHelp};
  }
};

}  // namespace velumar
