#include "trading/drill.h"

#include <algorithm>

#include "progress/drill_results.h"

namespace velumar {

void Drill::Begin(const LedgerDrill& plan) {
  drill_ = plan;
  last_.reset();
  StartChart();
}

void Drill::BeginNext() { StartChart(); }

void Drill::StartChart() {
  stage_ = Stage::kStarting;
  session_before_ = session_.SessionNumber;
}

void Drill::ChartFailed() {
  if (stage_ != Stage::kStarting) return;
  stage_ = drill_.sessions.empty() ? Stage::kNone : Stage::kOver;
}

void Drill::Check() {
  if (session_.Preparing) return;
  if (stage_ == Stage::kStarting) return NoticeBegin();
  if (stage_ != Stage::kPlaying) return;
  if (session_.SessionNumber != drill_.sessions.back()) {
    stage_ = Stage::kOver;  // the trader has revealed or left it
  } else if (BarsShown() >= drill_.bars || TimeLeft().count() <= 0) {
    EndChart();
    const bool all = std::ssize(drill_.sessions) == drill_.charts;
    if (stage_ == Stage::kBetween && all) Finish();
  }
}

void Drill::NoticeBegin() {
  const int number = session_.SessionNumber;
  if (number == 0 || number == session_before_) return;
  try {
    drill_.number = LedgerAddToDrill(ledger_, drill_, number);
  } catch (const LedgerError& error) {
    ChartFailed();
    platform_.boxes.Show("The drill has ended, because it could not be saved in the ledger.\n" +
                             std::string(error.what()),
                         BoxIcon::kExclamation);
    return;
  }
  drill_.sessions.push_back(number);
  last_.reset();
  began_ = platform_.events.Now();
  stage_ = Stage::kPlaying;
}

// Clicks run while it ends; none of them may end the chart again.
void Drill::EndChart() {
  stage_ = Stage::kEnding;
  last_.reset();
  run_.EndRun();
  orders_.OffsetAll();
  // A position that could not be closed stays with its session, which can be resumed.
  if (session_.LAccum <= 0 && session_.SAccum <= 0) last_ = run_.Reveal();
  view_.ShowEnded();
  stage_ = last_ ? Stage::kBetween : Stage::kOver;
}

void Drill::Finish() {
  stage_ = Stage::kOver;
  try {
    LedgerFinishDrill(ledger_, drill_.number);
    drill_.finished = true;
  } catch (const LedgerError& error) {
    platform_.boxes.Show(
        "The end of the drill could not be saved in the ledger.\n" + std::string(error.what()),
        BoxIcon::kExclamation);
  }
}

void Drill::Stop() {
  if (stage_ == Stage::kPlaying) EndChart();
  if (stage_ == Stage::kBetween) stage_ = Stage::kOver;
}

std::chrono::milliseconds Drill::TimeLeft() const {
  if (drill_.seconds == 0) return std::chrono::milliseconds::max();
  return std::chrono::seconds(drill_.seconds) - (platform_.events.Now() - began_);
}

std::string Drill::StatusText() const {
  const std::string charts = " of " + std::to_string(drill_.charts);
  const std::string played = std::to_string(drill_.sessions.size());
  if (stage_ == Stage::kOver) {
    return drill_.finished ? "The drill is finished." : "Stopped after " + played + charts + ".";
  }
  if (stage_ != Stage::kPlaying) {
    return stage_ == Stage::kStarting ? "The chart is being opened ..."
                                      : "Chart " + played + charts + " has ended.";
  }
  std::string text = "Chart " + played + charts + ", bar " + std::to_string(BarsShown()) + " of " +
                     std::to_string(drill_.bars);
  if (drill_.seconds > 0) {
    const auto left = std::chrono::ceil<std::chrono::seconds>(TimeLeft()).count();
    text += ", " + ClockText(static_cast<int>(std::max<std::int64_t>(left, 0))) + " left";
  }
  return text;
}

}  // namespace velumar
