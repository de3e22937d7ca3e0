#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QTimer>
#include <functional>

#include "app/windows/desktop_view.h"
#include "forms/desktop.h"
#include "session/sim_session.h"
#include "shell/program.h"

namespace velumar {

// The hand of a run that nobody watches: clicks "Start", lets so many bars go by, saves a picture
// of every window, and closes the program by its own buttons.
class AutoPlay {
 public:
  struct Plan {
    QString folder;
    int bars = 0;
  };

  // `fail` ends the process with a failure after a sentence that says why.
  AutoPlay(Plan plan, Desktop& desktop, const DesktopView& view, const SimSession& session,
           const Program& program, std::function<void(const std::string& why)> fail);

  // To be called once the setup window stands.
  void Begin();

 private:
  enum class Stage { kStarting, kPlaying, kEnding };

  void Step();
  void FirstBar();
  void LastBar();
  void SavePicture(const Form& form);

  Plan plan_;
  Desktop& desktop_;
  const DesktopView& view_;
  const SimSession& session_;
  const Program& program_;
  std::function<void(const std::string& why)> fail_;
  QTimer watch_;
  QElapsedTimer since_progress_;
  Stage stage_ = Stage::kStarting;
  int first_bar_ = 0;
  int newest_bar_ = -1;
};

}  // namespace velumar
