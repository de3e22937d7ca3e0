#pragma once

#include <vector>

#include "forms/chart.h"
#include "forms/form.h"
#include "forms/panels.h"
#include "forms/table.h"

namespace velumar {

// The progress tab of the result window, over all sessions: which trades count, their figures, a
// picture, and what both say in sentences.
struct ProgressControls {
  explicit ProgressControls(Form& form) : form_(form) {
    for (ComboBox* list : Lists()) list->SetTypable(false);
    lstFindings.SetWraps(true);
  }

  // The figures and pictures, alone and with those of a second group next to them.
  static constexpr float kWide = 10335;
  static constexpr float kNarrow = 6150;
  static constexpr float kHigh = 4365;
  static constexpr float kLow = 1740;

  // Those that say which trades count and what they are compared with.
  std::vector<ComboBox*> Filters() {
    return {&cbxOfSecurity, &cbxOfSetup, &cbxOfSide, &cbxOfConfidence, &cbxOfBlind, &cbxOfPeriod,
            &cbxOfInterval, &cbxOfDay,   &cbxOfHour, &cbxOfSession,    &cbxCompare};
  }
  std::vector<ComboBox*> Lists() {
    std::vector<ComboBox*> lists = Filters();
    lists.push_back(&cbxPicture);
    return lists;
  }
  // All of them, to show or hide the tab.
  std::vector<Control*> All() {
    std::vector<Control*> all{&chkLookAhead, &lblDays,     &txtFromDay, &lblToDay, &txtToDay,
                              &lstFigures,   &lblOwn,      &lblOther,   &pltOther, &cmdSavePicture,
                              &pltProgress,  &lstFindings, &cmdReport};
    for (ComboBox* list : Lists()) all.push_back(list);
    return all;
  }
  // Makes room for the pictures of two groups below the figures, or for one next to them.
  void Arrange(bool two) {
    lstFigures.SetSize(two ? kWide : kNarrow, two ? kLow : kHigh);
    const float top = two ? 3120 : 1305;
    cbxPicture.SetPlace(6345, top);
    cmdSavePicture.SetPlace(9495, top);
    pltProgress.SetPlace(two ? 120 : 6345, top + 390);
    pltProgress.SetSize(two ? 5130 : 4110, two ? 2745 : 3975);
    lstFindings.SetPlace(120, two ? 6330 : 5745);
    lstFindings.SetSize(kWide, two ? 1485 : 2070);
    for (Control* const control : {&lblOwn, &lblOther}) control->SetVisible(two);
    pltOther.SetVisible(two);
  }

 private:
  Form& form_;

 public:
  ComboBox cbxOfSecurity{form_, {"cbxOfSecurity", 120, 120, 2040, 315, "", "Security"}};
  ComboBox cbxOfSetup{form_, {"cbxOfSetup", 2235, 120, 2040, 315, "", "Setup of the trades"}};
  ComboBox cbxOfSide{form_,
                     {"cbxOfSide", 4350, 120, 1440, 315, "", "Side of the trades"},
                     {"Both sides", "Long", "Short"}};
  ComboBox cbxOfConfidence{
      form_,
      {"cbxOfConfidence", 5865, 120, 1965, 315, "", "Confidence before the trade"},
      {"Any confidence", "No confidence", "Confidence 1", "Confidence 2", "Confidence 3",
       "Confidence 4", "Confidence 5"}};
  ComboBox cbxOfBlind{form_,
                      {"cbxOfBlind", 7905, 120, 1290, 315, "", "Blind sessions"},
                      {"Blind or not", "Blind", "Not blind"}};
  CheckBox chkLookAhead{form_,
                        {"chkLookAhead", 9270, 120, 1185, 315, "Look-ahead",
                         "Also trades whose later bars were known"}};
  ComboBox cbxOfPeriod{form_,
                       {"cbxOfPeriod", 120, 510, 2040, 315, "", "When the session was last played"},
                       {"Any time", "Last 7 days", "Last 30 days", "Last 90 days", "Last year"}};
  ComboBox cbxOfInterval{form_, {"cbxOfInterval", 2235, 510, 2040, 315, "", "Interval"}};
  ComboBox cbxOfDay{
      form_,
      {"cbxOfDay", 4350, 510, 1440, 315, "", "Weekday of the entry"},
      {"Any day", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"}};
  ComboBox cbxOfHour{form_, {"cbxOfHour", 5865, 510, 1965, 315, "", "Hour of the entry"}};
  ComboBox cbxCompare{
      form_,
      {"cbxCompare", 7905, 510, 2550, 315, "", "A second group next to these trades"},
      {"No comparison", "All other trades", "The time before", "The session before"}};
  ComboBox cbxOfSession{form_, {"cbxOfSession", 120, 900, 4155, 315, "", "Session"}};
  Label lblDays{form_, {"lblDays", 4350, 915, 1440, 225, "Entries from"}};
  TextBox txtFromDay{
      form_,
      {"txtFromDay", 5865, 900, 1110, 315, "", "First day of the entries, such as 2024-01-31"}};
  Label lblToDay{form_, {"lblToDay", 7035, 915, 795, 225, "until"}};
  TextBox txtToDay{
      form_, {"txtToDay", 7905, 900, 1110, 315, "", "Last day of the entries, such as 2024-12-31"}};
  Table lstFigures{form_,
                   {"lstFigures", 120, 1305, kNarrow, kHigh, "", "Figures over all sessions"}};
  ComboBox cbxPicture{form_, {"cbxPicture", 6345, 1305, 3075, 315, "", "Picture"}};
  Button cmdSavePicture{
      form_,
      {"cmdSavePicture", 9495, 1305, 960, 315, "Save...", "Save the picture as PNG, SVG or PDF"}};
  Label lblOwn{form_, {"lblOwn", 120, 3135, 3000, 225, "These trades"}};
  Label lblOther{form_, {"lblOther", 5325, 3135, 960, 225, "Compared"}};
  Plot pltProgress{form_, {"pltProgress", 6345, 1695, 4110, 3975, "", ""}};
  Plot pltOther{form_, {"pltOther", 5325, 3510, 5130, 2745, "", ""}};
  ListBox lstFindings{form_,
                      {"lstFindings", 120, 5745, 10335, 2070, "", "", {}, "What the figures say"}};
  Button cmdReport{form_,
                   {"cmdReport", 7470, 7920, 1320, 345, "Report...",
                    "Save these figures, pictures and trades for a coach, as PDF or HTML"}};
};

}  // namespace velumar
