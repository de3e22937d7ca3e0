#include "app/auto_play.h"

#include <QDir>
#include <chrono>
#include <stdexcept>
#include <utility>

#include "resultchart/chart_file.h"

namespace velumar {

namespace {

constexpr std::chrono::milliseconds kLook{50};
constexpr std::chrono::milliseconds kPatience = std::chrono::minutes{2};

}  // namespace

AutoPlay::AutoPlay(Plan plan, Desktop& desktop, const DesktopView& view, const SimSession& session,
                   const Program& program, std::function<void(const std::string& why)> fail)
    : plan_(std::move(plan)),
      desktop_(desktop),
      view_(view),
      session_(session),
      program_(program),
      fail_(std::move(fail)) {}

void AutoPlay::Begin() {
  if (!QDir().mkpath(plan_.folder)) {
    fail_("the folder " + plan_.folder.toStdString() + " can't be made");
    return;
  }
  SavePicture(desktop_.form1());
  since_progress_.start();
  QObject::connect(&watch_, &QTimer::timeout, &watch_, [this] { Step(); });
  watch_.start(kLook);
  // The click comes back only when the run is over; the watch goes on inside its waits.
  QTimer::singleShot(0, &watch_, [this] { desktop_.form1().Image3.UserClick(); });
}

void AutoPlay::Step() {
  if (stage_ == Stage::kEnding) return;
  if (std::exchange(newest_bar_, session_.BarIndex) != session_.BarIndex) since_progress_.restart();
  if (since_progress_.hasExpired(kPatience.count())) {
    stage_ = Stage::kEnding;
    fail_("no bar was fed for two minutes");
  } else if (stage_ == Stage::kStarting && program_.Feeding()) {
    FirstBar();
  } else if (stage_ == Stage::kPlaying &&
             (session_.BarIndex - first_bar_ >= plan_.bars || !program_.Feeding())) {
    LastBar();
  }
}

void AutoPlay::FirstBar() {
  stage_ = Stage::kPlaying;
  first_bar_ = session_.BarIndex;
  desktop_.form3().Combo2.UserType("0");
  desktop_.form3().chkShowBigform.UserToggle();
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
  const QString file =
      QDir(plan_.folder).filePath(QString::fromStdString(form.Name()) + QStringLiteral(".png"));
  try {
    SaveWhole(file, [window](QIODevice& device) {
      if (!window->grab().save(&device, "PNG")) throw std::runtime_error("it can't be drawn");
    });
  } catch (const std::runtime_error& error) {
    fail_(error.what());
  }
}

}  // namespace velumar
