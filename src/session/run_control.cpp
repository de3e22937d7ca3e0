#include "session/run_control.h"

#include <algorithm>
#include <utility>

#include "base/ignoring.h"
#include "platform/chart_program.h"
#include "platform/event_loop.h"
#include "session/delay.h"
#include "session/failure_box.h"
#include "session/moment.h"
#include "session/plan_levels.h"
#include "session/played_trades.h"
#include "session/trade_again.h"

namespace velumar {

RunControl::RunControl(SimSession& session, RunInputs& inputs, RunView& view, Platform& platform,
                       IndexCache& cache, LedgerConnection& ledger, ChartSide& chart)
    : session_(session),
      inputs_(inputs),
      view_(view),
      platform_(platform),
      ledger_(ledger),
      chart_(chart),
      cache_(cache),
      chooser_(session, inputs, platform, ledger, cache),
      source_(session, cache),
      store_(session, source_, view, platform.boxes, cache),
      compared_(session, cache),
      stepper_(session, cache, compared_),
      record_(session, inputs, platform.clock, ledger),
      blind_(session, source_, store_, chart) {}

bool RunControl::ClaimStore() {
  if (!RequireSymbol()) return false;
  blind_.RestoreSymbol();
  const std::optional<NextRun> choice = chooser_.Entered();
  return choice && ClaimFor(*choice);
}

bool RunControl::Claim(const NextRun& choice) {
  if (!RequireSymbol()) return false;
  blind_.RestoreSymbol();
  return ClaimFor(choice);
}

bool RunControl::ClaimFor(const NextRun& choice) {
  if (!store_.Claim()) return false;
  next_ = choice;
  if (choice.key) blind_.HideSymbol();
  asked_to_compare_.clear();
  view_.LockSetup();
  return true;
}

bool RunControl::Start() {
  const RunNumber run = NewRun();
  const std::optional<LedgerPlayed> resumed = std::exchange(next_.resumed, std::nullopt);
  if (!PrepareRun(resumed)) return false;
  on_move_();
  if (!resumed) {
    Feed(run);
    return true;
  }
  session_.StopRequested = -1;
  view_.ShowPaused();
  BringChartUp();
  chart_.RefreshCharts();  // values the holdings, as after a step
  if (resumed->moment.as_shown) static_cast<Book&>(session_) = BookFromText(resumed->moment.book);
  view_.SetStatusLine(session_.Again.run == 0 ? "Resumed. \"Play\" goes on."
                                              : "Before the entry. O shows the earlier trade.");
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
  if (!inputs_.Symbol().empty()) return true;
  platform_.boxes.Show("Plase specificy Symbol to simulate!", BoxIcon::kInformation);
  session_.StopRequested = -1;
  return false;
}

bool RunControl::RequireLoadedSeries() {
  const std::string problem = LoadedSeriesProblem(session_, inputs_);
  if (!problem.empty()) platform_.boxes.Show(problem + ".", BoxIcon::kExclamation);
  return problem.empty();
}

// No other run begins in the waits and boxes of a preparation. If it fails, no bars are left that
// could be fed or traded.
bool RunControl::PrepareRun(const std::optional<LedgerPlayed>& resumed) {
  const PreparingScope preparing(session_);
  session_.ForgetBars();
  compared_.Clear();
  session_.Run = next_.series;
  source_.SetKey(next_.key);
  session_.StopRequested = 0;
  try {
    // The rows of the last run stay until the next one can begin.
    const bool as_shown = !resumed || resumed->moment.as_shown;
    if (PrepareChartAndStore(resumed) && (!next_.recorded || BeginInLedger(as_shown))) {
      if (!resumed) ShowStartDay();
      return true;
    }
  } catch (const std::exception& error) {
    ShowFailure(platform_.boxes, "The run was not started.", error);
  }
  session_.ForgetBars();
  session_.StopRequested = -1;
  view_.UnlockSetup();
  return false;
}

// A day that the trader has chosen for the next run in the meantime stays. That of a blind run
// isn't one of the data.
void RunControl::ShowStartDay() {
  if (session_.Run.blind || inputs_.StartDay() != session_.Run.start_day) return;
  const int first = std::min(session_.BarIndex + 1, session_.LastArrayIndex());
  view_.ShowStartDay(session_.BarDate.at(static_cast<std::size_t>(first)));
}

bool RunControl::PrepareChartAndStore(const std::optional<LedgerPlayed>& resumed) {
  ShowRunning();
  chart_.CloseCharts();
  if (!store_.Refill()) return false;
  chart_.OpenChart();
  view_.SetStatusLine("Mode [Date]... ");
  BringChartUp();
  view_.SetStatusLine("Init Data... ");
  if (!store_.Prepare(resumed ? std::optional(resumed->moment.bar + 1) : std::nullopt))
    return false;
  store_.LoadSeries(next_.bars);
  if (resumed) Restore(*resumed);
  for (const int file_number : std::exchange(asked_to_compare_, {})) AddCompared(file_number);
  return true;
}

// A session that had gone back before its first bar has an empty store again.
void RunControl::Restore(const LedgerPlayed& played) {
  const LedgerMoment& moment = played.moment;
  if (moment.bar < 0) {
    stepper_.UnfeedBar(session_.BarIndex);
  } else {
    stepper_.MoveTo(session_.BarIndex, session_.BarIndex);  // shows the moment
  }
  record_.Restore(played);
}

bool RunControl::Resume(RunNumber run) {
  const bool begun = BeginInLedger(true);
  // Clicks run while a box about the ledger is open.
  if (Superseded(run)) return false;
  session_.StopRequested = begun ? 0 : -1;
  if (!begun) return false;
  ShowRunning();
  view_.SetStatusLine("Mode [Continues]... ");
  BringChartUp();
  return true;
}

bool RunControl::BeginInLedger(bool as_shown) {
  try {
    record_.BeginRun(source_.Key(), as_shown);
    return true;
  } catch (const LedgerError& error) {
    platform_.boxes.Show(
        "The run was not started, because it could not be recorded in the ledger.\n" +
            std::string(error.what()),
        BoxIcon::kExclamation);
    return false;
  }
}

void RunControl::BringChartUp() {
  chart_.MaximizeHost();
  chart_.BringHostToFront();
}

void RunControl::ShowRunning() {
  view_.ShowRunning();
  const std::string delay = UsableDelay(inputs_.Delay());
  view_.ShowDelay(delay);
  session_.RefreshDelay = DelayMilliseconds(delay);
  view_.SetStatusLine("Begin ... ");
  session_.HostTitle = kChartTitle;
  view_.SetStatusLine("Activate Program ...");
}

// Each bar is the one after BarIndex, which a manual step may have moved.
void RunControl::Feed(RunNumber run) {
  view_.SetStatusLine("Begin of data feed ... ");
  BringChartUp();
  while (session_.BarIndex < session_.LastBarIndex) {
    feeding_ = true;
    bool go_on = false;
    try {
      go_on = FeedOne(run);
    } catch (const std::exception& error) {
      // From the market data library or a handler that ran in the pause.
      if (Superseded(run)) return;
      view_.ShowEnded();
      ShowFailure(platform_.boxes, "The feed stopped.", error);
    }
    if (Superseded(run)) return;
    feeding_ = false;
    if (!go_on) return;
  }
  view_.ShowEnded();
  view_.SetStatusLine("End of data feed... ");
}

// False if the run was paused or another one has begun. Either has already shown that.
bool RunControl::FeedOne(RunNumber run) {
  platform_.events.ProcessPending();
  if (Superseded(run)) return false;
  if (session_.BarIndex >= session_.LastBarIndex) return true;
  const int before = session_.BarIndex;
  stepper_.FeedBar(session_.BarIndex);
  // Before the trader sees the bar: a session that is resumed never forgets one that was shown.
  try {
    record_.SaveMoment();
  } catch (const LedgerError&) {
    chart_.RefreshCharts();  // no order may fill at a bar that isn't shown
    throw;
  }
  chart_.RefreshCharts();
  on_move_();
  if (Superseded(run)) return false;
  if (PauseAtPlan(before) || session_.StopRequested != 0) return false;
  WaitMilliseconds(platform_.events, session_.RefreshDelay);
  return true;
}

bool RunControl::PauseAtPlan(int before) {
  std::string text = ReachedText(session_, before);
  if (text.empty()) return false;
  const bool pauses = feeding_ && session_.StopRequested == 0 &&
                      platform_.settings.Read(kPlanPauseSetting) != kNoPlanPause;
  if (pauses) {
    EndRun();
    text += " The run is paused.";
  }
  view_.SetStatusLine(text);
  return pauses;
}

void RunControl::EndRun() {
  session_.StopRequested = -1;
  view_.ShowPaused();
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

void RunControl::GoToDate() {
  if (session_.Preparing || !stepper_.HasBars()) return;
  const std::vector<std::int32_t>& days = session_.BarDate;
  const auto present = static_cast<std::size_t>(std::max<int>(session_.BarIndex, 0));
  const auto day =
      platform_.boxes.AskDate("Go to the first bar of:", days.front(), days.back(), days[present]);
  if (!day) return;
  Step("Goto Date Plase wait ...", [&, day = *day](std::int16_t& index) {
    const auto bar = std::lower_bound(session_.BarDate.begin(), session_.BarDate.end(), day);
    stepper_.MoveTo(index, static_cast<int>(bar - session_.BarDate.begin()));
  });
}

void RunControl::Step(std::string_view status, void (BarStepper::*step)(std::int16_t& index)) {
  Step(status, [&](std::int16_t& index) { (stepper_.*step)(index); });
}

void RunControl::Step(std::string_view status,
                      const std::function<void(std::int16_t& index)>& step) {
  if (session_.Preparing) return;
  const int before = session_.BarIndex;
  view_.SetStatusLine(status);
  if (!stepper_.HasBars()) {
    view_.SetStatusLine("No bars loaded");
  } else if (RequireLoadedSeries()) {
    try {
      step(session_.BarIndex);
      record_.SaveMoment();
    } catch (const MetaLibError& error) {
      ShowFailure(platform_.boxes, "The step was not made.", error);
    } catch (const LedgerError& error) {
      ShowFailure(platform_.boxes, "The step was made, but the session could not be saved.", error);
    }
  }
  chart_.RefreshCharts();
  PauseAtPlan(before);
  on_move_();
}

void RunControl::MarkBar(CardMaker& maker) {
  if (session_.Preparing || !stepper_.HasBars()) return;
  try {
    view_.SetStatusLine(maker.MarkBar(session_, source_.Key()) ? "Marked: a card for tomorrow."
                                                               : "This bar is a card already.");
  } catch (const std::exception& error) {
    view_.SetStatusLine("Not marked. " + std::string(error.what()));
  }
}

void RunControl::ShowEarlierTrade() {
  if (session_.Preparing || session_.Again.run == 0) return;
  if (session_.EarlierOrders.empty()) {
    session_.EarlierOrders = MarksOfTrade(ledger_, session_.Again, SeriesView(session_));
  }
  session_.ShowsEarlier = !session_.ShowsEarlier;
  chart_.ShowPositions();
}

bool RunControl::Blind() const {
  return session_.Run.blind && stepper_.HasBars() && !session_.Preparing;
}

std::optional<RevealedSession> RunControl::Reveal() {
  NewRun();
  session_.StopRequested = -1;
  const PreparingScope preparing(session_);
  try {
    RevealedSession revealed = session_.SessionNumber == 0
                                   ? blind_.Unrecorded()
                                   : RevealSession(ledger_, session_.SessionNumber, cache_);
    blind_.RestoreSymbol();
    ShowRevealed(revealed.key);
    session_.ForgetBars();
    return revealed;
  } catch (const std::exception& error) {
    ShowFailure(platform_.boxes, "The session was not revealed.", error);
    return std::nullopt;
  }
}

std::optional<RevealedSession> RunControl::EndSession(int number) {
  const LedgerSession session = LedgerReadSession(ledger_, number).session;
  const bool loaded = number == session_.SessionNumber;
  if (session.symbol == kBlindSymbol && !session.mask.empty()) {
    return loaded ? Reveal() : std::optional(RevealSession(ledger_, number, cache_));
  }
  LedgerEndSession(ledger_, number);
  if (loaded) {
    // Bars were shown after the last order.
    IgnoringErrors([this] { KeepTrades(ledger_, session_); });
    Leave();
  }
  return std::nullopt;
}

void RunControl::ForgetSession(int number) {
  LedgerForgetSession(ledger_, number);
  if (number == session_.SessionNumber) Leave();
}

void RunControl::Leave() {
  NewRun();
  EndRun();
  session_.ForgetBars();
  blind_.RestoreSymbol();
}

bool RunControl::ShowUnrecorded(const NextRun& choice) {
  blind_.RestoreSymbol();
  if (!ClaimFor(choice)) return false;
  static_cast<Book&>(session_) = Book();  // the charts show no holdings of another series
  if (Start()) return true;
  blind_.RestoreSymbol();
  return false;
}

bool RunControl::PlayOnTo(int bar) {
  constexpr std::int16_t kPauseMilliseconds = 150;
  const RunNumber run = NewRun();
  try {
    while (session_.BarIndex < bar) {
      stepper_.FeedBar(session_.BarIndex);
      chart_.RefreshCharts();
      if (!Superseded(run)) WaitMilliseconds(platform_.events, std::int16_t{kPauseMilliseconds});
      if (Superseded(run)) return false;
    }
    return true;
  } catch (const std::exception& error) {
    if (!Superseded(run)) ShowFailure(platform_.boxes, "The bars could not be played on.", error);
    return false;
  }
}

void RunControl::ShowRevealed(const BlindKey& key) {
  try {
    blind_.Show(key);
  } catch (const std::exception& error) {
    ShowFailure(platform_.boxes, "The revealed chart can't be shown.", error);
  }
}

void RunControl::Compare(int file_number) {
  if (session_.Preparing) return asked_to_compare_.push_back(file_number);
  if (!stepper_.HasBars()) return;
  if (AddCompared(file_number)) chart_.RefreshCharts();
}

bool RunControl::AddCompared(int file_number) {
  try {
    if (!compared_.Add(file_number)) return false;
    compared_.Follow(session_.BarIndex);
    return true;
  } catch (const MetaLibError& error) {
    ShowFailure(platform_.boxes, "This series is not shown next to the played one.", error);
    return false;
  }
}

void RunControl::EndCompare(int file_number) {
  std::erase(asked_to_compare_, file_number);
  if (session_.Preparing || !stepper_.HasBars()) return;
  try {
    compared_.Remove(file_number);
  } catch (const MetaLibError& error) {
    ShowFailure(platform_.boxes, "The bars of a series whose chart was closed were not removed.",
                error);
  }
}

}  // namespace velumar
