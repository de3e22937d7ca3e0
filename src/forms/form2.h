#pragma once

#include "forms/form.h"

namespace velumar {

// The navigator: status line, steps, play and pause.
class Form2 : public Form {
 public:
  Form2() : Form({"Form2", "Velumar", 4215, 1155}) {}

  static constexpr Look kStatus{.colour = kBlue, .backdrop = Backdrop::kWhitePaper};
  static constexpr Look kCount{.colour = kDarkBlue};

  Picture Image8{*this, {"Image8", 0, 0, 4230, 1155, "backdrop-navigator"}};
  Label Label6{*this, {"Label6", 200, 320, 3855, 300, "", "", kStatus}};
  Slider HScrollx{*this,
                  {"HScrollx", 120, 120, 2415, 150, "", "Opacity of this window", {}, "Opacity"},
                  {0, 250, 5},
                  250};
  TextBox txtRefresh{*this,
                     {"txtRefresh", 2640, 120, 255, 150, "1",
                      "Charts to refresh in a chart program that is driven by keys", kCount,
                      "Number of charts to refresh"}};
  PictureButton Image5{*this, {"Image5", 3000, 80, 1140, 195, "close", "Close & Return"}};
  PictureButton Image6{*this, {"Image6", 240, 645, 405, 375, "rewind", "30 bars back (PageUp)"}};
  PictureButton Image2{*this, {"Image2", 1080, 645, 405, 375, "previous", "Previous (Left)"}};
  PictureButton Image3{*this, {"Image3", 1920, 645, 405, 375, "play", "Play (Space)"}};
  PictureButton Image4{*this, {"Image4", 1920, 645, 405, 375, "pause", "Pause (Space)"}};
  PictureButton Image1{*this, {"Image1", 2760, 645, 405, 375, "next", "Next (Right)"}};
  PictureButton Image7{*this,
                       {"Image7", 3600, 645, 405, 375, "forward", "30 bars forward (PageDown)"}};
  // Along the lower edge.
  ProgressLine Progress{*this,
                        {"Progress", 180, 1095, 3855, 45, "", "", {}, "Progress of the run"}};
};

}  // namespace velumar
