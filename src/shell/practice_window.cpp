#include "shell/practice_window.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/dates.h"
#include "base/number_text.h"
#include "marketdata/interval.h"
#include "shell/event_guard.h"
#include "shell/reveal_text.h"
#include "shell/window_shaping.h"

namespace velumar {

namespace {

std::string MoneyText(float money) { return PatternText(money, kWholePattern); }

std::string MomentText(const SessionLine& line, std::string_view date_pattern) {
  if (line.date == 0) return "before the first bar";
  const std::string date = DateText(line.date, date_pattern);
  return line.interval == kDailyInterval ? date : date + " " + PatternText(line.time, kTimePattern);
}

std::string SeriesText(const SessionLine& line) {
  return line.symbol +
         (line.interval == kDailyInterval ? ", daily" : ", " + line.interval + " min");
}

std::string BarsLeftText(const SessionLine& line) {
  if (!line.bars_left) return "no data";
  return *line.bars_left == 0 ? "none" : std::to_string(*line.bars_left);
}

}  // namespace

PracticeWindow::PracticeWindow(Desktop& desktop, Platform& platform, LedgerConnection& ledger,
                               IndexCache& cache, RunControl& run, CardMaker& maker,
                               std::function<void(int number)> resume,
                               std::function<void(int card)> practise)
    : desktop_(desktop),
      platform_(platform),
      ledger_(ledger),
      cache_(cache),
      run_(run),
      resume_(std::move(resume)),
      cards_(desktop, platform, ledger, maker, [this, practise = std::move(practise)](int card) {
        if (!MayEndRun()) return;
        desktop_.Unload(Window());
        practise(card);
      }) {
  Desktop::Windows& windows = desktop_.Untouched();
  const EventGuard guarded(platform_.boxes);
  windows.form1.lnkPractice.on_click = guarded("Opening the sessions", [this] { Open(); });
  FrmPractice& form = windows.frmPractice;
  form.on_load = guarded("Opening the sessions", [this] { Load(); });
  form.on_close = form.on_escape = form.Image5.on_click =
      guarded("Closing the sessions", [this] { desktop_.Unload(Window()); });
  form.on_press = form.Image1.on_press = form.Frame1.on_press =
      guarded("Moving the sessions", [this] { Window().StartDrag(); });
  form.tabPage.on_click = guarded("Choosing the page", [this] { ShowPage(); });
  form.lstSessions.on_select = guarded("Choosing a session", [this] { ShowChosen(); });
  form.lstSessions.on_double_click = form.cmdResume.on_click =
      guarded("Resuming the session", [this] { Resume(); });
  form.cmdEnd.on_click = guarded("Ending the session", [this] { End(); });
  form.cmdDelete.on_click = guarded("Deleting the session", [this] { Delete(); });
  form.lstSessions.on_key_up = guarded("Changing the sessions", [this](int key) {
    if (key == kEnterKey) Resume();
    if (key == kDeleteKey) Delete();
  });
}

void PracticeWindow::Open() { Window().Show(); }

void PracticeWindow::Load() {
  FrmPractice& form = Window();
  form.Image1.SetSize(form.Width(), form.Height());
  form.lstSessions.SetColumns({{"Security", false, 1800},
                               {"Moment", false, 1800},
                               {"Held", false, 1500},
                               {"Open profit", true, 1300},
                               {"Closed profit", true, 1300},
                               {"Bars left", true, 900},
                               {"Last played", false, 1950}});
  ShapeSmallWindow(form);
  CentreOnScreen(form, platform_.screen);
  cards_.SetUp();
  ShowPage();
}

void PracticeWindow::ShowCards() {
  Window().tabPage.SetIndex(FrmPractice::kCardsPage);
  Open();
}

void PracticeWindow::ShowPage() {
  FrmPractice& form = Window();
  const bool cards = form.tabPage.Index() == FrmPractice::kCardsPage;
  for (Control* const control : std::initializer_list<Control*>{&form.lstSessions, &form.cmdResume,
                                                                &form.cmdEnd, &form.cmdDelete}) {
    control->SetVisible(!cards);
  }
  cards_.SetVisible(cards);
  if (!cards) List();
}

// Clicks run while a chart is opened; its bars would be written over those of the card.
bool PracticeWindow::MayEndRun() {
  if (run_.Preparing()) {
    platform_.boxes.Show("A chart is still being opened. Play the card after that.",
                         BoxIcon::kInformation);
    return false;
  }
  if (!run_.Feeding()) return true;
  return platform_.boxes.Ask(
             "A run goes on in the background. A card takes its place; the run can be resumed.",
             {"Play the card", "Cancel"}) == 0;
}

void PracticeWindow::List() {
  lines_ = ledger_.CanRead() ? ListSessions(ledger_, cache_) : std::vector<SessionLine>();
  const std::string pattern = platform_.locale.ShortDatePattern();
  Window().lstSessions.SetContent(
      {lines_.size(),
       [this, pattern](std::size_t row, std::size_t column) {
         const SessionLine& line = lines_.at(row);
         const std::array texts = {
             SeriesText(line),
             MomentText(line, pattern),
             HoldingText(line),
             MoneyText(line.open_profit),
             MoneyText(line.closed_profit),
             BarsLeftText(line),
             IsoMinuteText(platform_.clock.LocalMoment(line.touched), pattern) +
                 (line.ended ? ", ended" : "")};
         return texts.at(column);
       },
       [this](std::size_t row) { return lines_.at(row).directory; }});
  const auto open = std::ranges::find(lines_, false, &SessionLine::ended);
  if (open != lines_.end()) {
    Window().lstSessions.Select({static_cast<std::size_t>(open - lines_.begin())});
  }
  ShowChosen();
}

const SessionLine* PracticeWindow::Chosen() {
  const std::vector<std::size_t>& rows = Window().lstSessions.Selected();
  return rows.size() == 1 && rows.front() < lines_.size() ? &lines_[rows.front()] : nullptr;
}

void PracticeWindow::ShowChosen() {
  FrmPractice& form = Window();
  const SessionLine* const chosen = Chosen();
  const bool open = chosen != nullptr && !chosen->ended;
  const bool writable = ledger_.CanWrite();
  form.cmdResume.SetEnabled(open && writable);
  form.cmdEnd.SetEnabled(open && writable);
  form.cmdDelete.SetEnabled(chosen != nullptr && writable);
  form.lblStatus.SetText(!writable           ? ledger_.WhyNot()
                         : lines_.empty()    ? "No session yet: \"Start\" begins one."
                         : chosen == nullptr ? "Choose a session."
                         : open              ? "Enter goes on with the chosen session."
                                             : "This session has been ended.");
}

void PracticeWindow::Resume() {
  const SessionLine* const chosen = Chosen();
  if (chosen == nullptr || !Window().cmdResume.Enabled()) return;
  const int number = chosen->number;
  desktop_.Unload(Window());
  resume_(number);
}

void PracticeWindow::End() {
  const SessionLine* const chosen = Chosen();
  if (chosen == nullptr) return;
  if (const auto revealed = run_.EndSession(chosen->number)) {
    platform_.boxes.ShowTitled("Blind session",
                               RevealText(*revealed, ledger_, platform_.locale.ShortDatePattern()),
                               BoxIcon::kInformation);
  }
  List();
}

void PracticeWindow::Delete() {
  const SessionLine* const chosen = Chosen();
  if (chosen == nullptr || !Window().cmdDelete.Enabled()) return;
  const int number = chosen->number;
  const std::string lost = chosen->blind ? "resumed or revealed" : "resumed";
  const std::size_t answer = platform_.boxes.Ask("Take the session of " + SeriesText(*chosen) +
                                                     " off the list? It can't be " + lost +
                                                     " then. Its orders stay in the ledger.",
                                                 {"Delete", "Cancel"});
  if (answer != 0) return;
  run_.ForgetSession(number);
  List();
}

}  // namespace velumar
