#pragma once

#include <array>

#include "forms/form.h"
#include "forms/panels.h"
#include "forms/table.h"

namespace velumar {

// The price files of a batch, what was understood of each, and what can be decided before they are
// imported. It fits on a screen of 1920 by 1080 pixels at 200 %.
class FrmImport : public Form {
 public:
  FrmImport() : Form({"frmImport", "Import", 14100, 7500, true}) {
    SetKeepsKeys(true);
    const Control* frame = nullptr;
    for (Control* control : Controls()) {
      if (control == &lstRows) break;  // what follows lies on the window itself
      if (control->Kind() == ControlKind::kFrame) {
        frame = control;
      } else if (frame != nullptr) {
        control->PlaceIn(*frame);
      }
    }
    lstUnderstood.SetWraps(true);
    for (ComboBox* list : {&cbxInterval, &cbxDates, &cbxLong}) list->SetTypable(false);
  }

  static constexpr std::size_t kMostAnswers = 8;
  static constexpr std::size_t kFewAnswers = 3;
  static constexpr Look kCaption{.colour = kBlue};
  static constexpr Look kHeading{.colour = kBlue, .bold = true};
  static constexpr Look kAsks{.colour = kRed, .points = 10, .bold = true};
  static constexpr Look kResult{.colour = kDarkBlue};
  static constexpr Look kStatus{.colour = kDarkBlue, .points = 9};
  static constexpr std::string_view kZoneTip =
      "Empty: times are kept as the file writes them.\nElse a time zone such as Europe/Berlin";

  Table lstFiles{*this, {"lstFiles", 120, 120, 8700, 4245, "", "Files"}};

  Frame fraFile{*this, {"fraFile", 8940, 60, 5040, 1980, " Understood ", "", kHeading}};
  ListBox lstUnderstood{
      *this, {"lstUnderstood", 120, 270, 4800, 1620, "", "What was understood of the file"}};
  Label lblQuestion{*this, {"lblQuestion", 150, 270, 4740, 330, "", "", kAsks}};
  Button cmdAnswer1{*this, AnswerSpec("cmdAnswer1", "Answer 1", 0)};
  Button cmdAnswer2{*this, AnswerSpec("cmdAnswer2", "Answer 2", 1)};
  Button cmdAnswer3{*this, AnswerSpec("cmdAnswer3", "Answer 3", 2)};
  Button cmdAnswer4{*this, AnswerSpec("cmdAnswer4", "Answer 4", 0)};
  Button cmdAnswer5{*this, AnswerSpec("cmdAnswer5", "Answer 5", 0)};
  Button cmdAnswer6{*this, AnswerSpec("cmdAnswer6", "Answer 6", 0)};
  Button cmdAnswer7{*this, AnswerSpec("cmdAnswer7", "Answer 7", 0)};
  Button cmdAnswer8{*this, AnswerSpec("cmdAnswer8", "Answer 8", 0)};
  Label lblResult1{*this, ResultSpec("lblResult1", 0)};
  Label lblResult2{*this, ResultSpec("lblResult2", 1)};
  Label lblResult3{*this, ResultSpec("lblResult3", 2)};
  CheckBox chkAll{*this,
                  {"chkAll", 150, 1665, 4740, 270, "For all files with this question",
                   "Answers the question for files that are still to be read, too"}};

  Frame fraBoxes{*this, {"fraBoxes", 8940, 2070, 5040, 2295, " Decide ", "", kHeading}};
  Label Label1{*this, {"Label1", 150, 300, 690, 285, "Symbol", "", kCaption}};
  TextBox txtSymbol{*this, {"txtSymbol", 870, 300, 1440, 285, "", "Symbol of the security"}};
  Label Label2{*this, {"Label2", 2460, 300, 585, 285, "Name", "", kCaption}};
  TextBox txtName{*this, {"txtName", 3060, 300, 1860, 285, "", "Name of the security"}};
  Label Label3{*this, {"Label3", 150, 630, 690, 285, "Interval", "", kCaption}};
  ComboBox cbxInterval{*this,
                       {"cbxInterval", 870, 630, 1440, 285, "",
                        "Interval of the imported bars; finer bars are put together"}};
  Label Label4{*this, {"Label4", 2460, 630, 585, 285, "Dates", "", kCaption}};
  ComboBox cbxDates{
      *this, {"cbxDates", 3060, 630, 1860, 285, "", "Order of day, month and year in the file"}};
  Label Label5{*this, {"Label5", 150, 960, 690, 285, "Times in", "", kCaption}};
  ComboBox cbxFromZone{
      *this, {"cbxFromZone", 870, 960, 1800, 285, "", kZoneTip, {}, "Time zone of the file"}};
  Label Label6{*this, {"Label6", 2760, 960, 285, 285, "to", "", kCaption}};
  ComboBox cbxToZone{
      *this, {"cbxToZone", 3060, 960, 1860, 285, "", kZoneTip, {}, "Time zone to convert to"}};
  Label Label7{*this, {"Label7", 150, 1290, 690, 285, "Days", "", kCaption}};
  TextBox txtFrom{*this,
                  {"txtFrom",
                   870,
                   1290,
                   1440,
                   285,
                   "",
                   "First day to import, as 2024-12-31; empty: all days",
                   {},
                   "First day"}};
  Label Label8{*this, {"Label8", 2760, 1290, 285, 285, "to", "", kCaption}};
  TextBox txtTo{*this,
                {"txtTo",
                 3060,
                 1290,
                 1860,
                 285,
                 "",
                 "Last day to import, as 2024-12-31; empty: all days",
                 {},
                 "Last day"}};
  Label Label9{*this, {"Label9", 150, 1620, 690, 285, "Too long", "", kCaption}};
  ComboBox cbxLong{*this,
                   {"cbxLong", 870, 1620, 1800, 285, "",
                    "What happens to a series that is longer than a replay can be"}};
  CheckBox chkAdjusted{*this,
                       {"chkAdjusted", 2760, 1620, 1050, 285, "Adjusted",
                        "Takes the adjusted close for the close; open, high and low follow"}};
  CheckBox chkReplace{*this,
                      {"chkReplace", 3840, 1620, 1110, 285, "Start over",
                       "Replaces a stored series instead of adding to it"}};
  CheckBox chkScale{*this,
                    {"chkScale", 150, 1950, 4770, 285, "",
                     "Orders fill in hundredths, so prices with more decimals are multiplied"}};

  Table lstRows{*this,
                {"lstRows", 120, 4455, 13860, 2490, "", "Lines of the file, and their bars"}};
  Label lblStatus{*this, {"lblStatus", 120, 7050, 8100, 270, "", "", kStatus}};
  ProgressLine Progress{*this, {"Progress", 120, 7335, 8100, 60, "", "", {}, "Progress"}};
  Button cmdNext{*this,
                 {"cmdNext", 8370, 7035, 1740, 375, "&Next question",
                  "Shows the next file that has a question"}};
  Button cmdImport{
      *this,
      {"cmdImport", 10245, 7035, 1800, 375, "&Import", "Imports the files that have no question"}};
  Button cmdClose{*this, {"cmdClose", 12180, 7035, 1800, 375, "&Close", "Closes the window"}};

  std::array<Button*, kMostAnswers> Answers() {
    return {&cmdAnswer1, &cmdAnswer2, &cmdAnswer3, &cmdAnswer4,
            &cmdAnswer5, &cmdAnswer6, &cmdAnswer7, &cmdAnswer8};
  }
  std::array<Label*, kFewAnswers> Results() { return {&lblResult1, &lblResult2, &lblResult3}; }

  // A few answers are listed one below the other, each next to its result; more of them in two
  // columns.
  void PlaceAnswers(std::size_t count) {
    for (std::size_t i = 0; i < kMostAnswers; ++i) {
      const bool few = count <= kFewAnswers;
      const float row = static_cast<float>(few ? i : i / 2);
      const bool right = !few && i % 2 == 1;
      Answers().at(i)->SetPlace(kFrameLeft + (right ? kHalf + 90 : 0),
                                kAnswersTop + row * (few ? kRow : kLowRow));
      Answers().at(i)->SetSize(few ? kAnswerWidth : kHalf, (few ? kRow : kLowRow) - 15);
    }
  }

 private:
  static constexpr float kFrameLeft = 150;
  static constexpr float kAnswersTop = 600;
  static constexpr float kRow = 345;
  static constexpr float kLowRow = 270;  // four of them are no higher than three others
  static constexpr float kAnswerWidth = 1950;
  static constexpr float kHalf = 2325;  // of the frame

  static constexpr ControlSpec AnswerSpec(std::string_view name, std::string_view tip, int row) {
    return {name, kFrameLeft, kAnswersTop + kRow * static_cast<float>(row), kAnswerWidth, kRow - 15,
            "",   tip};
  }
  static constexpr ControlSpec ResultSpec(std::string_view name, int row) {
    return {name,
            kFrameLeft + kAnswerWidth + 90,
            kAnswersTop + kRow * static_cast<float>(row),
            2730,
            kRow - 15,
            "",
            "",
            kResult};
  }
};

}  // namespace velumar
