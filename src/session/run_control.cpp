#include "session/run_control.h"

#include "platform/chart_program_names.h"
#include "platform/waiting.h"
#include "session/delay.h"
#include "session/status_line.h"

namespace velumar {

RunControl::RunControl(SimSession& session, Desktop& desktop, Platform& platform, IndexCache& cache,
                       LedgerConnection& ledger, ChartSide& chart)
    : session_(session),
      desktop_(desktop),
      platform_(platform),
      chart_(chart),
      ledger_(session, desktop, platform.boxes, ledger),
      loader_(session, desktop, cache),
      store_(session, desktop, platform, cache),
      stepper_(session, desktop, cache) {}

void RunControl::BeginRun(const Form& window) {
  const bool from_setup = &window == &desktop_.form1();
  const RunNumber run = ++newest_run_;
  feeding_ = false;
  session_.Preparing = false;
  const bool begun = ledger_.Begin();
  // The box of a ledger that failed lets clicks run.
  if (Superseded(run)) return;
  session_.StopRequested = begun ? 0 : -1;
  if (!begun) return;
  if (desktop_.form1().Combo1.Text().empty()) {
    platform_.boxes.Show("Plase specificy Symbol to simulate!", BoxIcon::kInformation);
    session_.StopRequested = -1;
    return;
  }
  ShowRunning();
  ReadDelay();
  SetStatusLine(desktop_, "Begin ... ");
  session_.HostTitle = kChartTitle;
  SetStatusLine(desktop_, "Activate Program ...");
  if (from_setup) {
    if (!PrepareRun(run)) return;
  } else {
    SetStatusLine(desktop_, "Mode [Continues]... ");
    BringChartUp();
  }
  // The waits and the boxes of a preparation let clicks run.
  if (Superseded(run)) return;
  SetStatusLine(desktop_, "Begin of data feed ... ");
  BringChartUp();
  Feed(run);
}

bool RunControl::PrepareRun(RunNumber run) {
  // However it ends, unless another run has begun meanwhile.
  struct Ending {
    const RunControl& control;
    RunNumber run;
    ~Ending() {
      if (!control.Superseded(run)) control.session_.Preparing = false;
    }
  };
  session_.Preparing = true;
  const Ending ending{*this, run};
  const auto superseded = [this, run] { return Superseded(run); };
  chart_.CloseCharts(superseded);
  if (Superseded(run)) return false;
  if (!store_.Refill()) {
    if (!Superseded(run)) ShowPlay();
    return false;
  }
  chart_.OpenChart(superseded);
  if (Superseded(run)) return false;
  SetStatusLine(desktop_, "Mode [Date]... ");
  BringChartUp();
  Prepare();
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
  Form1& setup = desktop_.form1();
  setup.Text3.SetEnabled(false);
  setup.Combo1.SetEnabled(false);
  setup.Command5.SetEnabled(false);
  setup.Label6.SetVisible(true);
  setup.Text3.SetVisible(false);
  setup.Command5.SetVisible(false);
}

void RunControl::ReadDelay() {
  ComboBox& delay = desktop_.form3().Combo2;
  delay.SetText(UsableDelay(delay.Text()));
  session_.RefreshDelay = DelayMilliseconds(delay.Text());
}

void RunControl::Prepare() {
  SetStatusLine(desktop_, "Init Data... ");
  if (store_.PrepareStore() == -1) LoadSeries();
}

void RunControl::LoadSeries() {
  session_.BarIndex = loader_.LoadBars(session_.Symbol, session_.SimDir);
  if (session_.BarIndex == -1) session_.BarIndex = 0;
  session_.LastBarIndex = loader_.LoadBars(session_.Symbol, session_.DataDir);
  session_.FirstShownBar = session_.BarIndex;
  session_.NewestShownBar = session_.BarIndex;
  if (session_.HasBar(session_.BarIndex)) {
    const auto bar = static_cast<std::size_t>(session_.BarIndex);
    session_.StartDate = std::to_string(session_.BarDate[bar]);
    session_.StartTime = std::to_string(session_.BarTime[bar]);
  }
  // Last: its box lets clicks run, and one of them may begin another run.
  ledger_.NoteSeries();
}

void RunControl::Feed(RunNumber run) {
  const int limit = session_.LastBarIndex;
  // The loop's own index: steps by hand in a pause don't move it.
  for (int i = session_.BarIndex + 1; i <= limit; ++i) {
    feeding_ = true;
    bool go_on = false;
    try {
      go_on = FeedOne(i, run);
    } catch (const std::exception& error) {
      // A handler that ran in the pause, or the market data library: the feed can't go on.
      if (Superseded(run)) return;
      ShowPlay();
      platform_.boxes.Show(error.what(), BoxIcon::kExclamation);
    }
    if (Superseded(run)) return;
    feeding_ = false;
    if (!go_on) return;
  }
  ShowPlay();
  SetStatusLine(desktop_, "End of data feed... ");
}

// False when the loop was stopped, or another run has begun: whoever did that has set the windows.
bool RunControl::FeedOne(int bar, RunNumber run) {
  platform_.events.ProcessPending();
  if (Superseded(run)) return false;
  try {
    stepper_.FeedBar(bar, session_.Symbol);
  } catch (const MetaLibError& error) {
    ShowPlay();
    ShowLibraryError(error);
    return false;
  }
  session_.BarIndex = static_cast<std::int16_t>(bar);
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
  Form1& setup = desktop_.form1();
  setup.DTPicker1.SetEnabled(false);
  desktop_.form3().Combo2.SetEnabled(true);
  setup.Text3.SetEnabled(true);
  setup.Combo1.SetEnabled(true);
  setup.Command5.SetEnabled(true);
  setup.Label6.SetVisible(false);
  setup.Text3.SetVisible(true);
  setup.Command5.SetVisible(true);
}

void RunControl::GoNext() {
  Step("Goto Next Date Plase wait ...", [this] {
    // The cursor moves with the store, so a failed write leaves it.
    int bar = session_.BarIndex + 1;
    stepper_.FeedBar(bar, session_.Symbol);
    session_.BarIndex = static_cast<std::int16_t>(bar);
  });
}

void RunControl::GoFastForward() {
  Step("Fast Forward " + std::to_string(BarStepper::kFastStep) + " Dates Plase wait ...",
       [this] { session_.BarIndex = stepper_.FastFeed(session_.BarIndex, session_.Symbol); });
}

void RunControl::GoPrevious() {
  Step("Goto Previous  Date Plase wait ...",
       [this] { stepper_.UnfeedBar(session_.BarIndex, session_.Symbol); });
}

void RunControl::GoFastRewind() {
  Step("Fast Rewind " + std::to_string(BarStepper::kFastStep) + "  Dates Plase wait ...",
       [this] { session_.BarIndex = stepper_.FastUnfeed(session_.BarIndex, session_.Symbol); });
}

void RunControl::Step(std::string_view status, const std::function<void()>& step) {
  if (session_.Preparing) return;
  SetStatusLine(desktop_, status);
  if (stepper_.HasBars()) {
    try {
      step();
    } catch (const MetaLibError& error) {
      ShowLibraryError(error);
    }
  } else {
    SetStatusLine(desktop_, "No bars loaded");
  }
  chart_.RefreshCharts();
}

void RunControl::ShowLibraryError(const MetaLibError& error) {
  platform_.boxes.Show(LibraryErrorText(error), BoxIcon::kExclamation);
}

}  // namespace velumar
