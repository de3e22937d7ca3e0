#pragma once

#include "forms/form.h"
#include "forms/panels.h"
#include "forms/table.h"

namespace velumar {

// What a drill is to be, and the earlier ones.
class FrmDrill : public Form {
 public:
  FrmDrill() : Form({"frmDrill", "Velumar: drill", 11400, 5550}) { SetKeepsKeys(true); }

  static constexpr Look kCaption{.colour = kDarkBlue, .bold = true};
  static constexpr Look kField{.colour = kDarkBlue};
  static constexpr Look kStatus{.colour = kDarkBlue, .points = 9};

  Picture Image1{*this, {"Image1", 0, 0, 11400, 5550, "backdrop-result"}};
  Frame Frame1{*this, {"Frame1", 120, 240, 11160, 5190, "Drill", "", kCaption}};
  Label Label1{*this, {"Label1", 360, 660, 750, 285, "Charts", "", kCaption}};
  TextBox txtCharts{*this,
                    {"txtCharts", 1140, 660, 600, 285, "5",
                     "Blind charts, one after another, 1 to 50", kField, "Charts"}};
  Label Label2{*this, {"Label2", 1980, 660, 1080, 285, "Bars of each", "", kCaption}};
  TextBox txtBars{*this,
                  {"txtBars", 3120, 660, 600, 285, "40",
                   "A chart ends after this many bars, 10 to 500", kField, "Bars of each chart"}};
  Label Label3{*this, {"Label3", 3960, 660, 1320, 285, "Minutes of each", "", kCaption}};
  TextBox txtMinutes{*this,
                     {"txtMinutes", 5340, 660, 600, 285, "3",
                      "A chart ends after this time, also while it is paused; 0: no limit", kField,
                      "Minutes of each chart"}};
  Label lblSource{*this, {"lblSource", 6180, 660, 4920, 285, "", "", kField}};
  Table lstDrills{*this, {"lstDrills", 240, 1050, 10920, 3585, "", "Earlier drills"}};
  Label lblStatus{*this, {"lblStatus", 240, 4740, 8880, 600, "", "", kStatus}};
  Button cmdStart{*this,
                  {"cmdStart", 9480, 4860, 1560, 300, "&Start", "Draw the first chart (Enter)"}};
  PictureButton Image5{*this, {"Image5", 9900, 345, 1140, 195, "close", "Close (Esc)"}};
};

}  // namespace velumar
