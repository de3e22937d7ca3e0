#include "app/wiring/unattended.h"

#include <QDir>
#include <chrono>
#include <iostream>
#include <stdexcept>
#include <utility>

#include "charts/picture_file.h"
#include "charts/qt_text.h"

namespace velumar {

namespace {

constexpr std::chrono::milliseconds kInterval{50};
constexpr std::chrono::milliseconds kTimeout = std::chrono::minutes{2};

}  // namespace

AutoPlay::AutoPlay(Plan plan, Desktop& desktop, const DesktopView& view, const SimSession& session,
                   const Program& program, FailRun fail)
    : plan_(std::move(plan)),
      desktop_(desktop),
      view_(view),
      session_(session),
      program_(program),
      fail_(std::move(fail)) {}

void AutoPlay::Begin() {
  if (!QDir().mkpath(plan_.folder)) {
    fail_("could not create the folder " + plan_.folder.toStdString());
    return;
  }
  SavePicture(desktop_.form1());
  since_progress_.start();
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Step(); });
  timer_.start(kInterval);
  // The click returns only at the end of the run; the timer fires during its waits.
  QTimer::singleShot(0, &timer_, [this] { desktop_.form1().Image3.UserClick(); });
}

void AutoPlay::Step() {
  if (stage_ == Stage::kEnding) return;
  if (std::exchange(newest_bar_, session_.BarIndex) != session_.BarIndex) since_progress_.restart();
  if (since_progress_.hasExpired(kTimeout.count())) {
    stage_ = Stage::kEnding;
    fail_("no bar was played for two minutes");
  } else if (stage_ == Stage::kStarting && program_.Feeding()) {
    stage_ = Stage::kPlaying;
    first_bar_ = session_.BarIndex;
    desktop_.form3().Combo2.UserType("0");
    desktop_.form3().chkShowBigform.UserToggle();
  } else if (stage_ == Stage::kPlaying &&
             (session_.BarIndex - first_bar_ >= plan_.bars || !program_.Feeding())) {
    LastBar();
  }
}

void AutoPlay::LastBar() {
  stage_ = Stage::kEnding;
  for (const Form* form : desktop_.All()) {
    if (form->Visible()) SavePicture(*form);
  }
  desktop_.form2().Image4.UserClick();
  desktop_.form2().Image5.UserClick();
  desktop_.form1().Image5.UserClick();
}

void AutoPlay::SavePicture(const Form& form) {
  FormView* window = view_.Find(form);
  if (window == nullptr) return;
  const QString file = QDir(plan_.folder).filePath(ToQt(form.Name()) + QStringLiteral(".png"));
  try {
    SaveWhole(file, [window](QIODevice& device) {
      if (!window->grab().save(&device, "PNG"))
        throw std::runtime_error("could not draw the window");
    });
  } catch (const std::runtime_error& error) {
    fail_(error.what());
  }
}

void PrintedMessageBoxes::Show(std::string_view text, BoxIcon) {
  std::cerr << "velumar: " << text << std::endl;
}

std::size_t PrintedMessageBoxes::Ask(std::string_view text,
                                     const std::vector<std::string>& answers) {
  std::cerr << "velumar: " << text << " " << answers.back() << std::endl;
  return answers.size() - 1;
}

std::optional<std::int32_t> PrintedMessageBoxes::AskDate(std::string_view, std::int32_t,
                                                         std::int32_t, std::int32_t) {
  return std::nullopt;
}

std::string UnansweredFolderDialog::BrowseForFolder(std::string_view prompt) {
  fail_("--play needs a folder that only a user can choose: " + std::string(prompt));
  return {};
}

}  // namespace velumar
