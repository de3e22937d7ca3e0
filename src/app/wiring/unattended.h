#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QTimer>
#include <functional>
#include <string>

#include "app/windows/desktop_view.h"
#include "forms/desktop.h"
#include "platform/services.h"
#include "session/sim_session.h"
#include "shell/program.h"

namespace velumar {

// Ends the process as failed, after a sentence that says why. Doesn't return.
using FailRun = std::function<void(const std::string& why)>;

// Plays a run without a user: clicks "Start", plays some bars, saves a picture of every window, and
// closes the program with its own buttons.
class AutoPlay {
 public:
  struct Plan {
    QString folder;
    int bars = 0;
  };

  AutoPlay(Plan plan, Desktop& desktop, const DesktopView& view, const SimSession& session,
           const Program& program, FailRun fail);

  // Call it when the setup window is shown.
  void Begin();

 private:
  enum class Stage { kStarting, kPlaying, kEnding };

  void Step();
  void LastBar();
  void SavePicture(const Form& form);

  Plan plan_;
  Desktop& desktop_;
  const DesktopView& view_;
  const SimSession& session_;
  const Program& program_;
  FailRun fail_;
  QTimer timer_;
  QElapsedTimer since_progress_;
  Stage stage_ = Stage::kStarting;
  int first_bar_ = 0;
  int newest_bar_ = -1;
};

// Replaces the user's answers: the text of a box goes to standard error, and a question is answered
// with its last answer.
class PrintedMessageBoxes : public MessageBoxes {
 public:
  void Show(std::string_view text, BoxIcon icon) override;
  void ShowTitled(std::string_view, std::string_view text, BoxIcon icon) override {
    Show(text, icon);
  }
  std::size_t Ask(std::string_view text, const std::vector<std::string>& answers) override;
  std::optional<std::int32_t> AskDate(std::string_view text, std::int32_t first, std::int32_t last,
                                      std::int32_t present) override;
};

// Fails the run, since nobody can choose a folder.
class UnansweredFolderDialog : public FolderDialog {
 public:
  explicit UnansweredFolderDialog(FailRun fail) : fail_(std::move(fail)) {}
  std::string BrowseForFolder(std::string_view prompt) override;

 private:
  FailRun fail_;
};

}  // namespace velumar
