#pragma once

#include "forms/form.h"

namespace velumar {

// The setup window: the process starts and ends with it.
class Form1 : public Form {
 public:
  Form1() : Form({"Form1", "Velumar", 4290, 2865}) {}

  static constexpr std::string_view kPathTip = "Read Meta Stock Data from which path";
  static constexpr Look kCaption{.colour = kWhite};
  static constexpr Look kBoldCaption{.colour = kDarkBlue, .bold = true};
  static constexpr Look kField{.colour = kDarkBlue};
  static constexpr Look kTitle{.colour = kWhite, .face = FontFace::kImpact, .points = 18};
  static constexpr Look kTick{.colour = kWhite};
  static constexpr Look kVersion{.colour = kWhite, .face = FontFace::kImpact, .points = 9};

  Picture Image12{*this, {"Image12", 0, 0, 4320, 2910, "backdrop-setup"}};
  Label Label5{*this, {"Label5", 240, 120, 1755, 375, "Velumar", "", kTitle}};
  Label Label8{*this, {"Label8", 2040, 240, 1095, 255, "", "", kVersion}};
  PictureButton ImgDonate{*this, {"ImgDonate", 1920, 80, 1080, 435, "donate", "Donate..."}};
  PictureButton Image5{*this, {"Image5", 3000, 80, 1140, 195, "close", "Close Program"}};
  PictureButton imgGraph{*this,
                         {"imgGraph", 3840, 300, 240, 210, "graph", "Results", {}, "Results"}};
  TextBox Text3{*this,
                {"Text3", 240, 600, 3375, 285, "C:\\MetaStock Data\\Samples\\", kPathTip, kField}};
  Label Label6{*this,
               {"Label6",
                240,
                600,
                3855,
                300,
                "",
                "",
                {.colour = kOrange, .backdrop = Backdrop::kWhitePaper}}};
  Button Command5{*this, {"Command5", 3720, 620, 375, 255, "....", "Open Directory"}};
  Label Label4{*this, {"Label4", 240, 960, 495, 255, "Sec:", "", kBoldCaption}};
  ComboBox Combo1{
      *this, {"Combo1", 720, 960, 1815, 315, "", "Select Symbol to simulate", kField}, {}, true};
  Label Label13{*this, {"Label13", 2760, 960, 585, 255, "Period", "", kBoldCaption}};
  ComboBox cbxPeriod{*this,
                     {"cbxPeriod", 3480, 960, 615, 330, "", "Minutes of a bar, or D for daily bars",
                      kField, "Period of a bar"},
                     {"5", "15", "30", "60", "120"}};
  Label Label3{*this, {"Label3", 240, 1440, 615, 255, "Date:", "", kBoldCaption}};
  DatePicker DTPicker1{
      *this, {"DTPicker1", 1080, 1440, 1455, 375, "", "Select Date", kField}, 20051203};
  CheckBox chkBlind{
      *this,
      {"chkBlind", 2640, 1290, 1500, 195, "Blind",
       "Hides what is played until the session ends: symbol, dates and prices", kTick}};
  Link lnkPractice{*this,
                   {"lnkPractice", 2640, 1470, 1500, 210, "Practice ...",
                    "Go on with an earlier session, or practise the cards that are due"}};
  Label Label2{*this, {"Label2", 2640, 1800, 495, 255, "Comm.", "", kCaption}};
  TextBox txtcomm{*this,
                  {"txtcomm", 3240, 1800, 615, 195, "1,000",
                   "Commission per contract; under stock rules in percent of the order's value",
                   kField, "Commission"}};
  Label lblPercentComm{*this, {"lblPercentComm", 3960, 1800, 135, 255, "%", "", kCaption}};
  Label Label11{*this, {"Label11", 360, 1920, 1095, 255, "Portfolio", "", kCaption}};
  TextBox txtInitPorfolio{*this,
                          {"txtInitPorfolio", 1440, 1920, 975, 195, "2,000,000",
                           "Money at the start of the run", kField, "Portfolio"}};
  Label Label12{*this, {"Label12", 2640, 2040, 495, 255, "VAT", "", kCaption}};
  TextBox txtVAT{
      *this,
      {"txtVAT", 3240, 2040, 615, 195, "7", "VAT on the commission, in percent", kField, "VAT"}};
  Label Label9{*this, {"Label9", 360, 2160, 975, 255, "Initial Margin:", "", kCaption}};
  TextBox txtContractValue{*this,
                           {"txtContractValue", 1800, 2160, 615, 195, "50,000",
                            "Money that one contract ties up", kField, "Initial margin"}};
  Label Label10{*this, {"Label10", 360, 2400, 1095, 255, "Profit/Contract", "", kCaption}};
  TextBox txtProfitperContract{
      *this,
      {"txtProfitperContract", 1800, 2400, 615, 195, "1,000",
       "Money that one point is worth, per contract", kField, "Profit per contract"}};
  PictureButton Image3{*this, {"Image3", 3360, 2280, 390, 375, "start", "Start"}};
};

}  // namespace velumar
