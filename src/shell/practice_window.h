#pragma once

#include <functional>
#include <vector>

#include "forms/desktop.h"
#include "ledger/ledger.h"
#include "marketdata/index_cache.h"
#include "platform/platform.h"
#include "session/run_control.h"
#include "shell/cards_page.h"
#include "trading/session_list.h"

namespace velumar {

// What the controls of the practice window do. The last session that was played is chosen when it
// opens, so that Enter goes on with it. The list is read again after each change.
class PracticeWindow {
 public:
  // `resume` goes on with the session of that number, `practise` plays the card of that number.
  PracticeWindow(Desktop& desktop, Platform& platform, LedgerConnection& ledger, IndexCache& cache,
                 RunControl& run, CardMaker& maker, std::function<void(int number)> resume,
                 std::function<void(int card)> practise);

  // Opens it with the cards.
  void ShowCards();

 private:
  void Open();
  void Load();
  void ShowPage();
  void List();
  void ShowChosen();
  // Null if none is chosen.
  const SessionLine* Chosen();
  void Resume();
  void End();
  void Delete();
  // The run that goes on without its windows would end. Asks whether a card may end it.
  bool MayEndRun();
  FrmPractice& Window() { return desktop_.frmPractice(); }

  Desktop& desktop_;
  Platform& platform_;
  LedgerConnection& ledger_;
  IndexCache& cache_;
  RunControl& run_;
  std::function<void(int number)> resume_;
  CardsPage cards_;
  std::vector<SessionLine> lines_;
};

}  // namespace velumar
