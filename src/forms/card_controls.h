#pragma once

#include <vector>

#include "forms/form.h"
#include "forms/table.h"

namespace velumar {

// The page of the cards in the practice window.
struct CardControls {
  explicit CardControls(Form& form) : form_(form) {}

  // All of them, to show or hide the page.
  std::vector<Control*> All() { return {&lstCards, &cmdPractise, &cmdLosses, &cmdDeleteCard}; }

 private:
  Form& form_;

 public:
  Table lstCards{form_, {"lstCards", 240, 720, 10920, 3915, "", "Cards"}};
  Button cmdPractise{form_,
                     {"cmdPractise", 6120, 4860, 1560, 300, "&Practise",
                      "Decide the chosen card again, on the chart (Enter)"}};
  Button cmdLosses{form_,
                   {"cmdLosses", 7800, 4860, 1560, 300, "&From losses",
                    "Make cards of the five largest losses that have none yet"}};
  Button cmdDeleteCard{form_,
                       {"cmdDeleteCard", 9480, 4860, 1560, 300, "&Delete",
                        "Delete the chosen card and its answers (Delete)"}};
};

}  // namespace velumar
