#pragma once

#include "forms/card_controls.h"
#include "forms/form.h"
#include "forms/panels.h"
#include "forms/table.h"

namespace velumar {

// The sessions of the ledger, to resume one, end it or delete it, and its cards.
class FrmPractice : public Form {
 public:
  FrmPractice() : Form({"frmPractice", "Velumar: practice", 11400, 5550}) { SetKeepsKeys(true); }

  enum Page { kSessionsPage, kCardsPage };

  // The corner of the frame that contains the rest.
  static constexpr float kLeft = 120;
  static constexpr float kTop = 240;
  static constexpr Look kCaption{.colour = kDarkBlue, .bold = true};
  static constexpr Look kStatus{.colour = kDarkBlue, .points = 9};

  Picture Image1{*this, {"Image1", 0, 0, 11400, 5550, "backdrop-result"}};
  Frame Frame1{*this, {"Frame1", kLeft, kTop, 11160, 5190, "Practice", "", kCaption}};
  Table lstSessions{*this, {"lstSessions", kLeft + 120, kTop + 480, 10920, 3915, "", "Sessions"}};
  Label lblStatus{*this, {"lblStatus", kLeft + 120, kTop + 4440, 5700, 600, "", "", kStatus}};
  Button cmdResume{*this,
                   {"cmdResume", kLeft + 6000, kTop + 4620, 1560, 300, "&Resume",
                    "Go on at the bar where the session was left (Enter)"}};
  Button cmdEnd{
      *this,
      {"cmdEnd", kLeft + 7680, kTop + 4620, 1560, 300, "&End session",
       "The session is over: it stays in the list and can't be resumed; a blind one is revealed"}};
  Button cmdDelete{*this,
                   {"cmdDelete", kLeft + 9360, kTop + 4620, 1560, 300, "&Delete",
                    "Take the session off this list; its orders stay in the ledger (Delete)"}};
  PictureButton Image5{*this, {"Image5", kLeft + 9780, kTop + 105, 1140, 195, "close", "Close"}};
  CardControls cards{*this};
  // After the lists, so that one of them has the keys at first.
  TabBar tabPage{
      *this, {"tabPage", kLeft + 120, kTop + 150, 2400, 300, "", "Page"}, {"Sessions", "Cards"}};
  Button cmdDrill{*this,
                  {"cmdDrill", kLeft + 2640, kTop + 150, 1560, 300, "D&rill ...",
                   "A few blind charts in a row, with a limit of bars and time"}};
};

}  // namespace velumar
