#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "forms/desktop.h"
#include "platform/platform.h"
#include "session/sim_session.h"

namespace velumar {

// What the controls of the score board do. Clicks run during a request, orders too; a feed waits
// for the answer. Closing the board ends the request. Failed requests and a missing run are
// reported in the status line, not in a box.
class ScoreBoard {
 public:
  ScoreBoard(const SimSession& session, Desktop& desktop, Platform& platform);

  // Shows the window and reads the scores.
  void Open();

 private:
  void Load();
  void SaveAddress();
  void RefreshTopScores();
  void SendScore();
  void ListScores(const std::string& status);
  std::string Query();
  // The one last typed into the window, else the one in section [Score] of the settings file.
  std::string Address() const;
  void ExplainAddress();
  void NameChanged();

  struct Answer {
    bool failed = false;
    std::string text;  // the answer, or why there is none
  };
  // Requests the target while the status line shows `status`. Returns nothing if another request is
  // running or the window was closed.
  std::optional<Answer> Ask(std::string_view target, std::string_view status);
  void ShowStatus(std::string_view text) { Window().lblStatus.SetText(text); }
  FrmScore& Window() { return desktop_.frmScore(); }

  const SimSession& session_;
  Desktop& desktop_;
  Platform& platform_;
  int load_ = 0;         // how often the window was opened
  int asking_load_ = 0;  // load_ when the running request began; 0: none
};

}  // namespace velumar
