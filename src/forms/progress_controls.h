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

  // Widths of the figures next to a picture, and with those of a second group instead of it.
  static constexpr float kNarrow = 6150;
  static constexpr float kWide = 10335;

  std::vector<ComboBox*> Lists() {
    return {&cbxOfSecurity, &cbxOfSetup, &cbxOfSide, &cbxOfConfidence, &cbxOfBlind, &cbxOfPeriod,
            &cbxOfInterval, &cbxOfDay,   &cbxOfHour, &cbxCompare,      &cbxPicture};
  }
  // All of them, to show or hide the tab.
  std::vector<Control*> All() {
    std::vector<Control*> all{&chkLookAhead, &lstFigures, &cmdSavePicture, &pltProgress,
                              &lstFindings};
    for (ComboBox* list : Lists()) all.push_back(list);
    return all;
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
      {"No comparison", "All other trades", "The time before"}};
  Table lstFigures{form_, {"lstFigures", 120, 915, kNarrow, 4755, "", "Figures over all sessions"}};
  ComboBox cbxPicture{form_, {"cbxPicture", 6345, 915, 3075, 315, "", "Picture"}};
  Button cmdSavePicture{
      form_,
      {"cmdSavePicture", 9495, 915, 960, 315, "Save...", "Save the picture as PNG, SVG or PDF"}};
  Plot pltProgress{form_, {"pltProgress", 6345, 1305, 4110, 4365, "", ""}};
  ListBox lstFindings{form_,
                      {"lstFindings", 120, 5745, 10335, 2070, "", "", {}, "What the figures say"}};
};

}  // namespace velumar
