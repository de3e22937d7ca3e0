#pragma once

#include <functional>
#include <string>
#include <vector>

#include "forms/desktop.h"
#include "ledger/ledger.h"
#include "platform/platform.h"
#include "session/card_making.h"
#include "trading/card_list.h"

namespace velumar {

// Says in the setup window how many cards are due.
void ShowDueCards(Desktop& desktop, const Platform& platform, LedgerConnection& ledger);

// What the controls on the cards' page of the practice window do. The card that is due first is
// chosen when it opens.
class CardsPage {
 public:
  // `practise` plays the card of that number.
  CardsPage(Desktop& desktop, Platform& platform, LedgerConnection& ledger, CardMaker& maker,
            std::function<void(int card)> practise);

  // Call it when the practice window loads.
  void SetUp();
  void SetVisible(bool visible);
  // Reads the cards again.
  void List();

 private:
  std::string CellText(std::size_t row, std::size_t column) const;
  void ShowChosen();
  // Null if none is chosen.
  const CardLine* Chosen();
  void Practise();
  void MakeOfLosses();
  void Delete();
  FrmPractice& Window() { return desktop_.frmPractice(); }

  Desktop& desktop_;
  Platform& platform_;
  LedgerConnection& ledger_;
  CardMaker& maker_;
  std::function<void(int card)> practise_;
  std::vector<CardLine> lines_;
};

}  // namespace velumar
