#include "shell/card_window.h"

#include <algorithm>
#include <utility>

#include "base/dates.h"
#include "base/number_text.h"
#include "marketdata/interval.h"
#include "results/figure_texts.h"
#include "session/blind_mask.h"
#include "shell/event_guard.h"
#include "shell/window_shaping.h"
#include "trading/card_list.h"
#include "trading/trade_ticket.h"

namespace velumar {

namespace {

using Decision = LedgerCardAnswer::Decision;
using Verdict = LedgerCardAnswer::Verdict;

constexpr std::string_view kTopKey = "CardTop";
constexpr std::string_view kLeftKey = "CardLeft";
constexpr std::string_view kDeciding = "Playing the card on";
constexpr std::string_view kJudging = "Keeping the answer";

// Masked prices have more decimals than a trader reads.
std::string ShortText(double number) { return PatternText(static_cast<float>(number), "0.00##"); }

std::string SignedText(double number) { return (number > 0 ? "+" : "") + ShortText(number); }

std::string BarsText(int bars) { return std::to_string(bars) + (bars == 1 ? " bar" : " bars"); }

}  // namespace

CardWindow::CardWindow(Desktop& desktop, Platform& platform, LedgerConnection& ledger,
                       CardPlay& play, std::function<void()> closed)
    : desktop_(desktop),
      platform_(platform),
      ledger_(ledger),
      play_(play),
      closed_(std::move(closed)) {
  const EventGuard guarded(platform_.boxes);
  FrmCard& form = desktop_.Untouched().frmCard;
  form.on_load = guarded("Opening the card", [this] { Load(); });
  form.on_unload = guarded("Closing the card", [this] {
    platform_.settings.Save(kTopKey, PlaceText(Window().Top()));
    platform_.settings.Save(kLeftKey, PlaceText(Window().Left()));
    play_.Leave();
  });
  form.on_close = form.on_escape = form.Image5.on_click =
      guarded("Closing the card", [this] { Close(); });
  form.on_press = form.Image1.on_press = form.Frame1.on_press =
      guarded("Moving the card", [this] { Window().StartDrag(); });
  form.cmdLong.on_click = guarded(kDeciding, [this] { Decide(Decision::kLong); });
  form.cmdShort.on_click = guarded(kDeciding, [this] { Decide(Decision::kShort); });
  form.cmdNothing.on_click = guarded(kDeciding, [this] { Decide(Decision::kNothing); });
  form.cmdGood.on_click = guarded(kJudging, [this] { Judge(Verdict::kGood); });
  form.cmdFair.on_click = guarded(kJudging, [this] { Judge(Verdict::kFair); });
  form.cmdPoor.on_click = guarded(kJudging, [this] { Judge(Verdict::kPoor); });
  form.cmdNext.on_click = guarded("Playing the next card", [this] { PlayNext(); });
}

void CardWindow::Open(int card) {
  const std::vector<LedgerCard> cards = LedgerCards(ledger_);
  const auto found = std::ranges::find(cards, card, &LedgerCard::id);
  if (found == cards.end()) return;
  Window().Show();
  desktop_.form1().Hide();
  Play(*found);
}

// Where the setup is, until the trader drags it elsewhere.
void CardWindow::Load() {
  FrmCard& form = Window();
  form.Image1.SetSize(form.Width(), form.Height());
  ShapeSmallWindow(form);
  std::string top = platform_.settings.Read(kTopKey).value_or("0");
  std::string left = platform_.settings.Read(kLeftKey).value_or("0");
  if (!CanRestorePlace(top, left, form, platform_.screen)) {
    return PlaceSetupFirst(form, platform_.screen);
  }
  form.SetTop(PlaceFromText(top));
  form.SetLeft(PlaceFromText(left));
}

void CardWindow::ShowStep(Step step) {
  FrmCard& form = Window();
  for (Control* const control : std::initializer_list<Control*>{
           &form.txtStop, &form.cboConfidence, &form.cmdLong, &form.cmdShort, &form.cmdNothing}) {
    control->SetEnabled(step == Step::kAsk);
  }
  for (Control* const button : {&form.cmdGood, &form.cmdFair, &form.cmdPoor}) {
    button->SetVisible(step == Step::kJudge);
  }
  form.cmdNext.SetVisible(step == Step::kNext);
}

void CardWindow::Play(const LedgerCard& card) {
  FrmCard& form = Window();
  ShowStep(Step::kWait);
  form.txtStop.SetText("");
  form.cboConfidence.SetIndex(0);
  form.lblStatus.SetText("");
  form.lstOutcome.SetLines({std::string(kLoadingNotice)});
  const bool shown = play_.Show(card);
  if (!form.Loaded()) return play_.Leave();  // it was closed while the chart was opened
  shown ? Ask() : Close();
}

void CardWindow::Ask() {
  FrmCard& form = Window();
  ShowStep(Step::kAsk);
  form.lstOutcome.SetLines({"The chart ends at the bar before. What do you do for the next " +
                            BarsText(CardPlay::kBars) + "?"});
  form.Show();
}

void CardWindow::Decide(Decision side) {
  FrmCard& form = Window();
  CardDecision decision{side, {}, std::max(form.cboConfidence.Index(), 0)};
  std::string problem = ReadPrice("Stop", form.txtStop.Text(), decision.stop);
  if (problem.empty()) problem = play_.Problem(decision);
  form.lblStatus.SetForeColour(kRed);
  form.lblStatus.SetText(problem);
  if (!problem.empty()) return;
  if (!decision.Trades()) decision.stop.reset();
  ShowStep(Step::kWait);
  form.lstOutcome.SetLines({"The chart plays on ..."});
  const int card = play_.Card().id;
  if (play_.Decide(decision)) return ShowOutcome();
  if (play_.Playing() && play_.Card().id == card) Close();  // the feed failed
}

std::string CardWindow::OutcomeText(const std::string& who, const CardOutcome& outcome) const {
  const CardDecision& decision = outcome.decision;
  std::string text = who + ": " + DecisionText(decision.side);
  if (decision.Trades()) text += " at " + ShortText(outcome.price);
  if (decision.stop) text += ", stop " + ShortText(*decision.stop);
  if (decision.confidence != 0) text += ", confidence " + std::to_string(decision.confidence);
  if (!outcome.points) return text;
  text += ": " + SignedText(*outcome.points) + " points";
  if (outcome.r) text += ", " + MoneyText(*outcome.r) + " R";
  if (outcome.stopped) text += ", stopped after " + BarsText(*outcome.stopped - outcome.bar);
  return text;
}

void CardWindow::ShowOutcome() {
  FrmCard& form = Window();
  const auto& then = play_.Then();
  form.lstOutcome.SetLines(
      {OutcomeText("Now", play_.Now()),
       then ? OutcomeText("Then", *then) : "Then: no order in these bars",
       BarsText(play_.BarsPlayed()) + " were played on. How good was your decision?"});
  ShowStep(Step::kJudge);
}

std::string CardWindow::IdentityText() {
  for (const CardLine& line : ListCards(ledger_, platform_.clock.Today())) {
    if (line.card.id != play_.Card().id) continue;
    if (line.hidden) return "It is of a blind session that is not revealed.";
    const bool daily = line.card.interval == kDailyInterval;
    return "It was " + line.symbol + (daily ? ", daily, " : ", " + line.card.interval + " min, ") +
           DateText(line.date, platform_.locale.ShortDatePattern()) +
           (daily ? "" : " " + PatternText(line.time, kTimePattern)) + ".";
  }
  return {};
}

void CardWindow::Judge(Verdict verdict) {
  const CardTurn turn = play_.Answer(verdict);
  ShowStep(Step::kWait);  // it is kept, even if the list can't be read now
  FrmCard& form = Window();
  std::vector<std::string> lines = form.lstOutcome.Lines();
  lines.back() = IdentityText();
  lines.push_back("Your decision was " + VerdictText(verdict) + ". It comes back on " +
                  DateText(turn.due, platform_.locale.ShortDatePattern()) + ".");
  form.lstOutcome.SetLines(std::move(lines));
  form.lblStatus.SetForeColour(kDarkBlue);
  const int due = CountDueCards(ledger_, platform_.clock.Today());
  form.lblStatus.SetText(due == 0 ? "No more cards are due." : std::to_string(due) + " more due.");
  ShowStep(due > 0 ? Step::kNext : Step::kWait);
}

std::optional<LedgerCard> CardWindow::Next() {
  const std::vector<LedgerCard> cards = LedgerCards(ledger_);
  const std::vector<std::size_t> due =
      DueCards(cards, platform_.clock.Today(), SecurityOf(play_.Card()));
  return due.empty() ? std::nullopt : std::optional(cards.at(due.front()));
}

void CardWindow::PlayNext() {
  const std::optional<LedgerCard> next = Next();
  if (!next) return Close();
  play_.Leave();
  Play(*next);
}

void CardWindow::Close() {
  desktop_.form1().Show();
  desktop_.Unload(Window());
  closed_();
}

}  // namespace velumar
