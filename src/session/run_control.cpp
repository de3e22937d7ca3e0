#include "session/run_control.h"

#include "base/text.h"
#include "platform/chart_program.h"
#include "platform/event_loop.h"
#include "session/delay.h"
#include "session/loaded_series.h"
#include "session/status_line.h"

namespace velumar {

RunControl::RunControl(SimSession& session, Desktop& desktop, Platform& platform, IndexCache& cache,
                       LedgerConnection& ledger, ChartSide& chart)
    : session_(session),
      desktop_(desktop),
      platform_(platform),
      chart_(chart),
      ledger_(session, platform.boxes, ledger),
      loader_(session, cache),
      store_(session, desktop, platform, cache),
      stepper_(session, cache) {}

bool RunControl::ClaimStore() {
  if (!RequireSymbol()) return false;
  const Form1& setup = desktop_.form1();
  next_ = {session_.DataDir, NormalisedSymbol(session_.Symbol), setup.cbxPeriod.Text(),
           setup.DTPicker1.Value()};
  if (!store_.Claim()) return false;
  LockSetup();
  return true;
}

bool RunControl::Start() {
  const RunNumber run = NewRun();
  if (!PrepareRun()) return false;
  Feed(run);
  return true;
}

void RunControl::Continue() {
  if (session_.Preparing || !RequireSymbol() || !RequireLoadedSeries()) return;
  const RunNumber run = NewRun();
  if (Resume(run)) Feed(run);
}

RunControl::RunNumber RunControl::NewRun() {
  feeding_ = false;
  return ++newest_run_;
}

bool RunControl::RequireSymbol() {
  if (!desktop_.form1().Combo1.Text().empty()) return true;
  platform_.boxes.Show("Plase specificy Symbol to simulate!", BoxIcon::kInformation);
  session_.StopRequested = -1;
  return false;
}

bool RunControl::RequireLoadedSeries() {
  const std::string problem = LoadedSeriesProblem(session_, desktop_);
  if (!problem.empty()) platform_.boxes.Show(problem + ".", BoxIcon::kExclamation);
  return problem.empty();
}

// No other run begins in the waits and boxes of a preparation. If it fails, no bars are left in
// memory that could be fed or traded.
bool RunControl::PrepareRun() {
  const PreparingScope preparing(session_);
  session_.ForgetBars();
  session_.Run = next_;
  session_.StopRequested = 0;
  try {
    // The rows of the run before stay in place until there is a run to follow it.
    if (PrepareChartAndStore() && ledger_.Begin()) return true;
  } catch (const std::exception& error) {
    ShowFailure("The run was not started.", error);
  }
  session_.ForgetBars();
  session_.StopRequested = -1;
  UnlockSetup();
  return false;
}

bool RunControl::PrepareChartAndStore() {
  ShowRunning();
  chart_.CloseCharts();
  if (!store_.Refill()) return false;
  chart_.OpenChart();
  SetStatusLine(desktop_, "Mode [Date]... ");
  BringChartUp();
  SetStatusLine(desktop_, "Init Data... ");
  if (store_.PrepareStore() == 0) return false;
  LoadSeries();
  return true;
}

bool RunControl::Resume(RunNumber run) {
  const bool begun = ledger_.Begin();
  // The box of a ledger that failed lets clicks run.
  if (Superseded(run)) return false;
  session_.StopRequested = begun ? 0 : -1;
  if (!begun) return false;
  ShowRunning();
  SetStatusLine(desktop_, "Mode [Continues]... ");
  BringChartUp();
  return true;
}

void RunControl::BringChartUp() {
  chart_.MaximizeHost();
  chart_.BringHostToFront();
}

void RunControl::ShowRunning() {
  Form2& navigator = desktop_.form2();
  navigator.Image3.SetVisible(false);
  for (Control* button : {&navigator.Image4, &navigator.Image1, &navigator.Image2,
                          &navigator.Image6, &navigator.Image7}) {
    button->SetVisible(true);
  }
  LockSetup();
  ReadDelay();
  SetStatusLine(desktop_, "Begin ... ");
  session_.HostTitle = kChartTitle;
  SetStatusLine(desktop_, "Activate Program ...");
}

void RunControl::ReadDelay() {
  ComboBox& delay = desktop_.form3().Combo2;
  delay.SetText(UsableDelay(delay.Text()));
  session_.RefreshDelay = DelayMilliseconds(delay.Text());
}

void RunControl::LoadSeries() {
  session_.BarIndex = loader_.LoadBars(session_.SimDir);
  session_.LastBarIndex = loader_.LoadBars(session_.Run.directory);
  session_.FirstShownBar = session_.BarIndex;
  session_.NewestShownBar = session_.BarIndex;
  const auto bar = static_cast<std::size_t>(session_.BarIndex);
  session_.StartDate = std::to_string(session_.BarDate.at(bar));
  session_.StartTime = std::to_string(session_.BarTime.at(bar));
}

// Each bar is the one after BarIndex, which a step by hand may have moved.
void RunControl::Feed(RunNumber run) {
  SetStatusLine(desktop_, "Begin of data feed ... ");
  BringChartUp();
  while (session_.BarIndex < session_.LastBarIndex) {
    feeding_ = true;
    bool go_on = false;
    try {
      go_on = FeedOne(run);
    } catch (const std::exception& error) {
      // From the market data library or a handler that ran in the pause.
      if (Superseded(run)) return;
      ShowPlay();
      ShowFailure("The feed stopped.", error);
    }
    if (Superseded(run)) return;
    feeding_ = false;
    if (!go_on) return;
  }
  ShowPlay();
  SetStatusLine(desktop_, "End of data feed... ");
}

// False if the loop was stopped or another run has begun. Either has already set the windows.
bool RunControl::FeedOne(RunNumber run) {
  platform_.events.ProcessPending();
  if (Superseded(run)) return false;
  if (session_.BarIndex >= session_.LastBarIndex) return true;
  stepper_.FeedBar(session_.BarIndex);
  chart_.RefreshCharts();
  if (Superseded(run) || session_.StopRequested != 0) return false;
  WaitMilliseconds(platform_.events, session_.RefreshDelay);
  return !Superseded(run);
}

void RunControl::ShowPlay() {
  desktop_.form2().Image3.SetVisible(true);
  desktop_.form2().Image4.SetVisible(false);
}

void RunControl::EndRun() {
  session_.StopRequested = -1;
  ShowPlay();
  desktop_.form3().Combo2.SetEnabled(true);
  UnlockSetup();
}

void RunControl::LockSetup() {
  Form1& setup = desktop_.form1();
  setup.Text3.SetEnabled(false);
  setup.Combo1.SetEnabled(false);
  setup.Command5.SetEnabled(false);
  setup.Label6.SetVisible(true);
  setup.Text3.SetVisible(false);
  setup.Command5.SetVisible(false);
}

void RunControl::UnlockSetup() {
  Form1& setup = desktop_.form1();
  setup.Text3.SetEnabled(true);
  setup.Combo1.SetEnabled(true);
  setup.Command5.SetEnabled(true);
  setup.Label6.SetVisible(false);
  setup.Text3.SetVisible(true);
  setup.Command5.SetVisible(true);
}

void RunControl::GoNext() { Step("Goto Next Date Plase wait ...", &BarStepper::FeedBar); }

void RunControl::GoFastForward() {
  Step("Fast Forward " + std::to_string(BarStepper::kFastStep) + " Dates Plase wait ...",
       &BarStepper::FastFeed);
}

void RunControl::GoPrevious() {
  Step("Goto Previous  Date Plase wait ...", &BarStepper::UnfeedBar);
}

void RunControl::GoFastRewind() {
  Step("Fast Rewind " + std::to_string(BarStepper::kFastStep) + "  Dates Plase wait ...",
       &BarStepper::FastUnfeed);
}

void RunControl::Step(std::string_view status, void (BarStepper::*step)(std::int16_t& index)) {
  if (session_.Preparing) return;
  SetStatusLine(desktop_, status);
  if (!stepper_.HasBars()) {
    SetStatusLine(desktop_, "No bars loaded");
  } else if (RequireLoadedSeries()) {
    try {
      (stepper_.*step)(session_.BarIndex);
    } catch (const MetaLibError& error) {
      ShowFailure("The step was not made.", error);
    }
  }
  chart_.RefreshCharts();
}

void RunControl::ShowFailure(const std::string& what, const std::exception& error) {
  const auto* library = dynamic_cast<const MetaLibError*>(&error);
  const std::string text =
      library != nullptr ? LibraryErrorText(*library) + "\r" + what : what + "\n" + error.what();
  platform_.boxes.Show(text, BoxIcon::kExclamation);
}

}  // namespace velumar
