#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "forms/desktop.h"
#include "ledger/ledger.h"
#include "marketdata/index_cache.h"
#include "platform/platform.h"
#include "session/reveal.h"
#include "session/session_list.h"

namespace velumar {

// What the controls of the practice window do. The last session that was played is chosen when it
// opens, so that Enter goes on with it. The list is read again after each change.
class PracticeWindow {
 public:
  // What is done with the session of a number.
  struct Actions {
    std::function<void(int number)> resume;
    std::function<std::optional<RevealedSession>(int number)> reveal;  // ends a blind one
  };
  PracticeWindow(Desktop& desktop, Platform& platform, LedgerConnection& ledger, IndexCache& cache,
                 Actions actions);

 private:
  void Open();
  void Load();
  void List();
  void ShowChosen();
  // Null if none is chosen.
  const SessionLine* Chosen();
  void Resume();
  void End();
  void Delete();
  FrmPractice& Window() { return desktop_.frmPractice(); }

  Desktop& desktop_;
  Platform& platform_;
  LedgerConnection& ledger_;
  IndexCache& cache_;
  Actions actions_;
  std::vector<SessionLine> lines_;
};

}  // namespace velumar
