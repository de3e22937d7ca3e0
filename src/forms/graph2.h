#pragma once

#include <cstdint>
#include <initializer_list>

#include "forms/chart.h"
#include "forms/form.h"
#include "forms/panels.h"

namespace velumar {

// The print preview: the chart of the result window on a sheet of paper.
class Graph2 : public Form {
 public:
  enum MenuList : std::uint8_t { kPaperSize, kOrientation, kPrintQuality, kNoOfCopies };

  Graph2() : Form({"graph2", "PRINT PREVIEW", 9825, 7695, true}) {
    SetKeepsKeys(true);
    const auto place_in = [](const Control& container, std::initializer_list<Control*> controls) {
      for (Control* control : controls) control->PlaceIn(container);
    };
    place_in(Picture1, {&Picture2, &Line1});
    place_in(Frame1, {&Frame2, &Frame3, &cmdcancel, &cmdPrint});
    place_in(Frame2, {&HScroll2, &Label1});
    place_in(Frame3, {&Label2, &chtscroll0, &Label3, &chtscroll1});
  }

  static constexpr Slider::Range kPercent{25, 100, 1, 5};
  static constexpr Slider::Range kScroll{0, 14, 1, 1};
  static constexpr int kSmallest = 25;
  static constexpr Look kHeading{.colour = kDarkBlue, .bold = true};

  Menu op1{*this,
           {"op1", 0, 0, 9825, 0, "Options"},
           {{"Paper Size", {"A4"}},
            {"Orientation", {"Portrait/Landscape"}},
            {"Print Quality", {"Low", "Medium", "High"}, 1},
            {"No Of Copies", {"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}}}};

  Sheet Picture1{*this, {"Picture1", 0, 0, 12000, 17000}};
  ChartPicture Picture2{
      *this, {"Picture2", 120, 120, 9000, 6000, "", "Drag and drop anywhere on the page"}};
  Line Line1{*this, {"Line1", 0, 0, 9000, 45, "", "", {.colour = kRed}}};

  Frame Frame1{*this, {"Frame1", 0, 6720, 9495, 975}};
  Frame Frame2{*this, {"Frame2", 0, 120, 3615, 855, "ZOOM", "", kHeading}};
  ScrollBar HScroll2{
      *this, {"HScroll2", 120, 360, 2895, 255, "", "Zoom in percent"}, kPercent, kSmallest};
  Label Label1{*this, {"Label1", 3120, 360, 375, 255, "%"}};
  Frame Frame3{*this, {"Frame3", 3600, 120, 3975, 855, "Chart Dim", "", kHeading}};
  Label Label2{*this, {"Label2", 240, 210, 1695, 255, "Height"}};
  ScrollBar chtscroll0{
      *this, {"chtscroll(0)", 240, 480, 1695, 255, "", "Height of the chart"}, kPercent, kSmallest};
  Label Label3{*this, {"Label3", 2160, 210, 1575, 255, "Width"}};
  ScrollBar chtscroll1{
      *this, {"chtscroll(1)", 2160, 480, 1575, 255, "", "Width of the chart"}, kPercent, kSmallest};
  Button cmdcancel{*this, {"cmdcancel", 7560, 120, 975, 855, "&Cancel", "Cancel"}};
  Button cmdPrint{*this, {"cmdPrint", 8520, 120, 975, 855, "P&rint", "Print"}};

  // In front of the panel, which would cover half of the lower one.
  ScrollBar HScroll1{*this, {"HScroll1", 0, 6600, 9495, 255}, kScroll, 0};
  ScrollBar VScroll1{*this, {"VScroll1", 9240, 0, 255, 6615}, kScroll, 0};
};

}  // namespace velumar
