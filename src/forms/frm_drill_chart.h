#pragma once

#include "forms/form.h"
#include "forms/panels.h"

namespace velumar {

// Where a drill is, below the trade panel.
class FrmDrillChart : public Form {
 public:
  FrmDrillChart() : Form({"frmDrillChart", "Velumar: drill", 6900, 2115}) {}

  static constexpr Look kCaption{.colour = kDarkBlue, .bold = true};
  static constexpr Look kLine{.colour = kDarkBlue};

  Picture Image1{*this, {"Image1", 0, 0, 6900, 2115, "backdrop-result"}};
  Frame Frame1{*this, {"Frame1", 105, 105, 6690, 1905, "Drill", "", kCaption}};
  Label lblStatus{*this, {"lblStatus", 240, 390, 6420, 240, "", "", kCaption}};
  Label lblResult{*this, {"lblResult", 240, 690, 6420, 255, "", "", kLine}};
  Label lblFigures{*this, {"lblFigures", 240, 960, 6420, 255, "", "", kLine}};
  Label lblAll{*this, {"lblAll", 240, 1230, 6420, 255, "", "", kLine}};
  Button cmdNext{*this, {"cmdNext", 240, 1575, 1560, 300, "&Next chart", "Draw another chart"}};
  Button cmdStop{*this,
                 {"cmdStop", 5100, 1575, 1560, 300, "&Stop",
                  "End the drill: positions are closed, and what was played counts"}};
};

}  // namespace velumar
