#pragma once

#include "forms/form.h"

namespace velumar {

// The trade panel: orders and account, below the navigator.
class Form3 : public Form {
 public:
  Form3() : Form({"Form3", "Velumar", 4260, 2115}) {}

  static constexpr Look kLine{.colour = kBlue, .backdrop = Backdrop::kWhitePaper};
  static constexpr Look kCaption{.colour = kWhite};
  static constexpr Look kField{.colour = kDarkBlue};
  static constexpr Look kBoldCaption{.colour = kDarkBlue, .bold = true};
  static constexpr Look kLongSide{.colour = kBlue, .face = FontFace::kVerdana};
  static constexpr Look kShortSide{.colour = kLightRed, .face = FontFace::kVerdana};
  static constexpr Look kTick{.backdrop = Backdrop::kGreenPaper};

  Picture Image1{*this, {"Image1", 0, 0, 4260, 2130, "backdrop-panel"}};
  Slider HScrollx{*this,
                  {"HScrollx", 200, 120, 2415, 150, "", "Opacity of this window", {}, "Opacity"},
                  {0, 250, 5},
                  250};
  PictureButton imgGraph{*this,
                         {"imgGraph", 2700, 80, 240, 210, "graph", "Results", {}, "Results"}};
  PictureButton Image5{*this, {"Image5", 3000, 80, 1140, 195, "close", "Close & Return"}};
  Label Label6{*this, {"Label6", 200, 320, 3855, 300, "", "", kLine}};
  Label lblinfo{*this, {"lblinfo", 200, 640, 3855, 300, "", "", kLine}};
  Label Label1{*this, {"Label1", 240, 1080, 495, 255, " Long", "", kLongSide}};
  PictureButton imgLong{*this, {"imgLong", 840, 1080, 390, 375, "long", "Long (L)"}};
  PictureButton imgOffsetLong{
      *this, {"imgOffsetLong", 1320, 1080, 390, 375, "offset-long", "Offset Long (Shift+L)"}};
  Label Label2{*this, {"Label2", 240, 1560, 615, 255, " Short", "", kShortSide}};
  PictureButton ImgShort{*this, {"ImgShort", 840, 1560, 390, 375, "short", "Short (S)"}};
  PictureButton ImgOffsetShort{
      *this, {"ImgOffsetShort", 1320, 1560, 390, 375, "offset-short", "Offset Short (Shift+S)"}};
  TextBox txtContractVol{*this,
                         {"txtContractVol", 1920, 1080, 1215, 195, "1",
                          "Quantity of the next order", kField, "Quantity of an order"}};
  Label Label4{*this, {"Label4", 3240, 1080, 855, 255, "Vol/Contract", "", kCaption}};
  ComboBox Combo2{
      *this,
      {"Combo2", 3480, 1320, 615, 330, "", "Seconds between two bars; 0.2 is five bars a second",
       kField, "Seconds between bars"},
      {"0", "0.1", "0.2", "0.5", "1", "3", "5", "10"}};
  Label Label3{*this, {"Label3", 2640, 1440, 705, 255, "Refresh", "", kBoldCaption}};
  PictureButton imgPlan{
      *this, {"imgPlan", 1980, 1590, 330, 315, "plan", "Plan of a trade (N)", {}, "Plan"}};
  CheckBox chkShowBigform{*this,
                          {"chkShowBigform", 3840, 1800, 255, 210, "",
                           "Price, date and score in large type", kTick, "Big numbers"}};
  Label Label5{*this, {"Label5", 2880, 1800, 855, 255, "Big Number", "", kCaption}};
};

}  // namespace velumar
