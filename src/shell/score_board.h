#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "forms/desktop.h"
#include "platform/platform.h"
#include "session/sim_session.h"

namespace velumar {

// The logic of the score board. While a request is on, windows stay alive; closing the board gives
// the request up.
class ScoreBoard {
 public:
  ScoreBoard(const SimSession& session, Desktop& desktop, Platform& platform);

  // Shows the window, the newest scores in it.
  void Open();

 private:
  void Load();
  void RefreshTopScores();
  void SendScore();
  std::string Query();
  std::string Address() const;
  void ExplainAddress(bool missing);
  void NameChanged();
  // Asks the service for the target. The status line says `meanwhile`, then `afterwards` or why it
  // failed, with an empty answer. Nothing when another request is on or the window was closed.
  std::optional<std::string> Ask(std::string_view target, std::string_view meanwhile,
                                 std::string_view afterwards);
  FrmScore& Window() { return desktop_.frmScore(); }

  const SimSession& session_;
  Desktop& desktop_;
  Platform& platform_;
  int load_ = 0;         // of the window, counted
  int asking_load_ = 0;  // the one that a request is on for
};

}  // namespace velumar
