#pragma once

#include <cstdint>

#include "forms/chart.h"
#include "forms/form.h"
#include "forms/journal_controls.h"
#include "forms/panels.h"
#include "forms/progress_controls.h"
#include "forms/table.h"

namespace velumar {

// The results of a session or a run: tabs with chart, statistics, orders and journal, and the
// figures below.
class FrmResult : public Form {
 public:
  enum Tab { kChartTab, kStatisticsTab, kOrdersTab, kJournalTab, kProgressTab };
  enum ToolbarButton {
    kSaveAs = 1,
    kPreview = 3,
    kShadow = 5,
    kNoShadow = 7,
    kEffect = 9,
    kDefault = 11,
    kClose = 13,
    kReport = 15
  };

  FrmResult() : Form({"FrmResult", "", 10560, 11115, true}) {
    SetKeepsKeys(true);
    // A frame contains the controls after it in the table.
    const Control* frame = nullptr;
    for (Control* control : Controls()) {
      if (control->Kind() == ControlKind::kFrame) {
        frame = control;
      } else if (frame != nullptr) {
        control->PlaceIn(*frame);
      }
    }
    Combo1.SetTypable(false);
    cbxRun.SetTypable(false);
  }

  // The tabs cover the lower end of the frame.
  static constexpr float kStripTop = 7890;

  static constexpr Look kCaption{.colour = kBlue};
  static constexpr Look kHeading{.colour = kBlue, .bold = true};
  static constexpr Look kNote{.colour = kDarkBlue, .points = 9};
  static constexpr Look kValue{.alignment = Alignment::kCentre, .backdrop = Backdrop::kYellowPaper};

  // The size of the chart in twips at 100 percent of the print preview.
  std::int32_t full_height = 0;
  std::int32_t full_width = 0;

  Toolbar Toolbar1{*this,
                   {"Toolbar1", 0, 0, 8220, 480},
                   {{kSaveAs, "&Save As", "Save As", "result-save"},
                    {kPreview, "&Preview", "Preview", "result-preview"},
                    // Alt+S is Save As.
                    {kShadow, "S&hadow", "Shadow", "result-shadow"},
                    {kNoShadow, "&No Shadow", "No Shadow", "result-no-shadow"},
                    {kEffect, "&Effect", "Effect", "result-effect"},
                    {kDefault, "&Default", "Restore Default", "result-default"},
                    {kReport, "&Report", "Print a report of the session or run, or save it as PDF",
                     "result-report"},
                    {kClose, "&Close", "Close", "result-close"}}};
  ComboBox Combo1{*this,
                  {"Combo1", 8280, 120, 1575, 315, "2D Line", "How the chart is drawn"},
                  {"2D Bar", "3D Bar", "2D Line", "2D Area", "3D Line", "3D Step", "3D Step"}};
  Swatch picCommonDialog{
      *this,
      {"picCommonDialog", 10080, 120, 375, 255, "", "Colour of the chart", {.colour = 49152}}};

  Frame Frame3{*this, {"Frame3", 0, 480, 10575, 8295}};
  Chart MSChart1{*this, {"MSChart1", 0, 0, 10575, 8295, "", ""}, kStripTop};
  Table lstStatistics{*this, {"lstStatistics", 120, 120, 10335, 7380, "", "Statistics"}};
  Label lblSheetNote{
      *this,
      {"lblSheetNote", 120, 7530, 10335, 300,
       "Statistics: profit in money, commission of all orders. Figures below: profit "
       "in points, commission of entries only.",
       "", kNote}};
  Table lstOrders{*this, {"lstOrders", 120, 120, 10335, 7740, "", "Orders"}};
  JournalControls journal{*this};
  ProgressControls progress{*this};
  TabBar tabSheets{*this,
                   {"tabSheets", 60, 7920, 5190, 345, "", ""},
                   {"Chart", "Statistics", "Orders", "Journal", "Progress"}};
  Button cmdCopy{
      *this,
      {"cmdCopy", 5325, 7920, 675, 345, "Copy", "Copy the selected rows, or all rows (Ctrl+C)"}};
  Button cmdExport{*this,
                   {"cmdExport", 6075, 7920, 1320, 345, "Export CSV...",
                    "Save the orders, the journal or the trades of all sessions as CSV"}};
  ComboBox cbxRun{
      *this, {"cbxRun", 7470, 7920, 2985, 345, "", "The session or run whose results are shown"}};

  Frame Frame1{*this, {"Frame1", 0, 8760, 5295, 2175, " Summary ", "", kHeading}};
  Label Label1{*this, {"Label1", 240, 360, 900, 300, "Symbol:", "", kCaption}};
  Label lblSymbol{*this, {"lblSymbol", 1200, 360, 1560, 300, "", "Security of the orders", kValue}};
  Label Label2{*this, {"Label2", 240, 780, 900, 300, "Interval:", "", kCaption}};
  Label lblInterval{
      *this,
      {"lblInterval", 1200, 780, 1560, 300, "", "Minutes of a bar; -1: a daily series", kValue}};
  Label lblFiguresOf{*this,
                     {"lblFiguresOf", 2910, 360, 2190, 720, "",
                      "The rows that the figures below the chart are of. Chart, statistics and "
                      "orders are of the whole session",
                      kNote}};
  Label Label3{*this, {"Label3", 240, 1200, 900, 300, "Start Date:", "", kCaption}};
  Label lblStartDate{*this,
                     {"lblStartDate", 1200, 1200, 1560, 300, "",
                      "Date of the earliest bar with an order", kValue}};
  Label Label4{*this, {"Label4", 2910, 1200, 600, 300, " Time:", "", kCaption}};
  Label lblStartDateTime{*this,
                         {"lblStartDateTime", 3540, 1200, 1560, 300, "",
                          "Time of the earliest bar with an order", kValue}};
  Label Label5{*this, {"Label5", 240, 1620, 900, 300, "End Date:", "", kCaption}};
  Label lblEndDate{
      *this,
      {"lblEndDate", 1200, 1620, 1560, 300, "", "Date of the latest bar with an order", kValue}};
  Label Label6{*this, {"Label6", 2910, 1620, 600, 300, "Time:", "", kCaption}};
  Label lblEndDateTime{*this,
                       {"lblEndDateTime", 3540, 1620, 1560, 300, "",
                        "Time of the latest bar with an order", kValue}};

  Frame Frame2{*this, {"Frame2", 5280, 8760, 5295, 2175, " Trading Profit/Loss ", "", kHeading}};
  Label Label7{*this, {"Label7", 150, 360, 480, 300, "Long", "", kCaption}};
  Label lblLong{*this,
                {"lblLong", 660, 360, 1020, 300, "",
                 "Quantity of all Long orders: entered, not held", kValue}};
  Label Label8{*this, {"Label8", 1800, 360, 900, 300, "Profit/Loss", "", kCaption}};
  Label lblLongProfitLoss{*this,
                          {"lblLongProfitLoss", 2700, 360, 1020, 300, "",
                           "Realised by Offset Long orders, in points, not money", kValue}};
  Label Label9{*this, {"Label9", 3795, 360, 555, 300, "Comm.", "", kCaption}};
  Label lblLongComm{*this,
                    {"lblLongComm", 4380, 360, 810, 300, "",
                     "Commission of Long orders only, without offsets and VAT", kValue}};
  Label Label10{*this, {"Label10", 150, 780, 480, 300, "Short", "", kCaption}};
  Label lblShort{*this,
                 {"lblShort", 660, 780, 1020, 300, "",
                  "Quantity of all Short orders: entered, not held", kValue}};
  Label Label11{*this, {"Label11", 1800, 780, 900, 300, "Profit/Loss", "", kCaption}};
  Label lblShortProfitLoss{*this,
                           {"lblShortProfitLoss", 2700, 780, 1020, 300, "",
                            "Realised by Offset Short orders, in points, not money", kValue}};
  Label Label12{*this, {"Label12", 3795, 780, 555, 300, "Comm.", "", kCaption}};
  Label lblShortComm{*this,
                     {"lblShortComm", 4380, 780, 810, 300, "",
                      "Commission of Short orders only, without offsets and VAT", kValue}};
  Label Label13{*this, {"Label13", 150, 1200, 1080, 300, "Total Comm.:", "", kCaption}};
  Label lblTotalComm{
      *this,
      {"lblTotalComm", 1260, 1200, 1620, 300, "",
       "Commission of entries only (Long and Short orders), without offsets and VAT", kValue}};
  Label Label14{*this, {"Label14", 150, 1620, 1080, 300, "Portfolio:", "", kCaption}};
  Label lblPortfolio{*this,
                     {"lblPortfolio", 1260, 1620, 1620, 300, "",
                      "Money after the order at the latest bar: starting money and realised "
                      "profit, before commission and VAT; open positions do not count",
                      kValue}};
  Link lnkScore{
      *this,
      {"lnkScore", 3840, 1620, 1350, 300, "Score board...", "Compare your score with others"}};
};

}  // namespace velumar
