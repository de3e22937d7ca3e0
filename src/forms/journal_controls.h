#pragma once

#include "forms/form.h"
#include "forms/panels.h"
#include "forms/table.h"

namespace velumar {

// The journal's tab in the result window: filters, trades, and below them the picture, the plan and
// the note of the one that is selected.
struct JournalControls {
  enum PictureTab { kEntryPicture, kExitPicture };
  enum NoteTab { kTradeNote, kSessionNote };

  explicit JournalControls(Form& form) : form_(form) {
    for (ComboBox* list : {&cbxSetup, &cbxSide, &cbxOutcome}) list->SetTypable(false);
    lstTrade.SetWraps(true);
  }

  static constexpr Look kCaption{.colour = kBlue};
  static constexpr Look kNote{.colour = kDarkBlue, .points = 9};

  // All of them, to show or hide the tab.
  std::vector<Control*> All() {
    return {&lblFind,  &txtFind,   &cbxSetup,    &cbxSide,  &cbxOutcome,
            &lblCount, &lstTrades, &tabPicture,  &imgTrade, &lstTrade,
            &tabNote,  &txtNote,   &lblNoteDate, &lnkCard,  &lnkAgain};
  }

 private:
  Form& form_;

 public:
  Label lblFind{form_, {"lblFind", 120, 75, 480, 315, "Find", "", kCaption}};
  TextBox txtFind{form_,
                  {"txtFind",
                   630,
                   120,
                   2610,
                   315,
                   "",
                   "Find trades by symbol, date, setup, reasons or note",
                   {},
                   "Find"}};
  ComboBox cbxSetup{form_, {"cbxSetup", 3360, 120, 2280, 315, "", "Setup"}};
  ComboBox cbxSide{
      form_, {"cbxSide", 5760, 120, 1440, 315, "", "Side"}, {"Both sides", "Long", "Short"}};
  ComboBox cbxOutcome{form_,
                      {"cbxOutcome", 7320, 120, 1440, 315, "", "Result"},
                      {"All results", "Won", "Lost", "Open"}};
  Label lblCount{form_, {"lblCount", 8880, 75, 1575, 315, "", "", kNote}};
  Table lstTrades{form_, {"lstTrades", 120, 540, 10335, 2940, "", "Trades"}};
  TabBar tabPicture{form_, {"tabPicture", 120, 3570, 1800, 300, "", "Picture"}, {"Entry", "Exit"}};
  PictureFile imgTrade{form_,
                       {"imgTrade",
                        120,
                        3900,
                        6000,
                        3900,
                        "",
                        "The chart as it was; Enter shows it in full size",
                        {},
                        "Chart"}};
  ListBox lstTrade{form_, {"lstTrade", 6240, 3570, 4215, 1860, "", "", {}, "Trade and plan"}};
  TabBar tabNote{form_, {"tabNote", 6240, 5520, 3000, 300, "", "Note"}, {"Note", "Session's note"}};
  NoteBox txtNote{form_,
                  {"txtNote", 6240, 5850, 4215, 1350, "", "Kept when you leave it", {}, "Note"}};
  Label lblNoteDate{form_, {"lblNoteDate", 6240, 7230, 4215, 270, "", "", kNote}};
  Link lnkCard{form_,
               {"lnkCard", 6240, 7515, 1815, 300, "Make a card",
                "The bar of the entry comes back as a card, to be decided again"}};
  Link lnkAgain{form_,
                {"lnkAgain", 8640, 7515, 1815, 300, "Play it again...",
                 "Start a session of its own at the bar before the entry"}};
};

}  // namespace velumar
