#include "shell/cards_page.h"

#include <utility>

#include "base/dates.h"
#include "base/number_text.h"
#include "marketdata/interval.h"
#include "results/figure_texts.h"
#include "shell/event_guard.h"

namespace velumar {

namespace {

constexpr int kLossesAtOnce = 5;

std::string CardsText(int count) {
  return std::to_string(count) + (count == 1 ? " card" : " cards");
}

std::string LastText(const CardLine& line) {
  if (!line.last) return "never";
  std::string text = VerdictText(line.last->verdict) + ", " + DecisionText(line.last->decision);
  return line.last->r ? text + ", " + MoneyText(line.last->r) + " R" : text;
}

std::string SecurityText(const CardLine& line) {
  if (line.hidden) return "hidden";
  return line.symbol +
         (line.card.interval == kDailyInterval ? ", daily" : ", " + line.card.interval + " min");
}

}  // namespace

void ShowDueCards(Desktop& desktop, const Platform& platform, LedgerConnection& ledger) {
  const int due = CountDueCards(ledger, platform.clock.Today());
  desktop.Untouched().form1.lnkPractice.SetText(
      due == 0 ? "Practice ..." : "Practice (" + std::to_string(due) + " due) ...");
}

CardsPage::CardsPage(Desktop& desktop, Platform& platform, LedgerConnection& ledger,
                     CardMaker& maker, std::function<void(int card)> practise)
    : desktop_(desktop),
      platform_(platform),
      ledger_(ledger),
      maker_(maker),
      practise_(std::move(practise)) {
  const EventGuard guarded(platform_.boxes);
  CardControls& controls = desktop_.Untouched().frmPractice.cards;
  controls.lstCards.on_select = guarded("Choosing a card", [this] { ShowChosen(); });
  controls.lstCards.on_double_click = controls.cmdPractise.on_click =
      guarded("Playing the card", [this] { Practise(); });
  controls.cmdLosses.on_click =
      guarded("Making cards of the largest losses", [this] { MakeOfLosses(); });
  controls.cmdDeleteCard.on_click = guarded("Deleting the card", [this] { Delete(); });
  controls.lstCards.on_key_up = guarded("Changing the cards", [this](int key) {
    if (key == kEnterKey) Practise();
    if (key == kDeleteKey) Delete();
  });
}

void CardsPage::SetUp() {
  Window().cards.lstCards.SetColumns({{"Due", false, 1500},
                                      {"Made of", false, 1300},
                                      {"Security", false, 1900},
                                      {"Chart until", false, 2000},
                                      {"Answers", true, 900},
                                      {"Last answer", false, 2950}});
}

void CardsPage::SetVisible(bool visible) {
  for (Control* const control : Window().cards.All()) control->SetVisible(visible);
  if (visible) List();
}

std::string CardsPage::CellText(std::size_t row, std::size_t column) const {
  const CardLine& line = lines_.at(row);
  const std::string pattern = platform_.locale.ShortDatePattern();
  switch (column) {
    case 0:
      return line.due ? "now" : DateText(line.card.due, pattern);
    case 1:
      return KindText(line.card.kind);
    case 2:
      return SecurityText(line);
    case 3:
      if (line.hidden) return {};
      return line.card.interval == kDailyInterval
                 ? DateText(line.date, pattern)
                 : DateText(line.date, pattern) + " " + PatternText(line.time, kTimePattern);
    case 4:
      return std::to_string(line.card.answers);
    default:
      return LastText(line);
  }
}

void CardsPage::List() {
  lines_ =
      ledger_.CanRead() ? ListCards(ledger_, platform_.clock.Today()) : std::vector<CardLine>();
  Table& list = Window().cards.lstCards;
  list.SetContent({lines_.size(),
                   [this](std::size_t row, std::size_t column) { return CellText(row, column); },
                   [this](std::size_t row) {
                     return lines_.at(row).hidden ? "Shown once it is answered" : std::string();
                   }});
  if (!lines_.empty()) list.Select({0});
  ShowChosen();
  ShowDueCards(desktop_, platform_, ledger_);
}

const CardLine* CardsPage::Chosen() {
  const std::vector<std::size_t>& rows = Window().cards.lstCards.Selected();
  return rows.size() == 1 && rows.front() < lines_.size() ? &lines_[rows.front()] : nullptr;
}

void CardsPage::ShowChosen() {
  FrmPractice& form = Window();
  const CardLine* const chosen = Chosen();
  const bool writable = ledger_.CanWrite();
  form.cards.cmdPractise.SetEnabled(chosen != nullptr && writable);
  form.cards.cmdDeleteCard.SetEnabled(chosen != nullptr && writable);
  form.cards.cmdLosses.SetEnabled(writable);
  form.lblStatus.SetText(!writable           ? ledger_.WhyNot()
                         : lines_.empty()    ? "No card yet: M in a run makes one of the bar."
                         : chosen == nullptr ? "Choose a card."
                         : chosen->due       ? "Enter plays the chosen card."
                                             : "This card is not due yet. It can be practised.");
}

void CardsPage::Practise() {
  const CardLine* const chosen = Chosen();
  if (chosen == nullptr || !Window().cards.cmdPractise.Enabled()) return;
  practise_(chosen->card.id);
}

void CardsPage::MakeOfLosses() {
  Window().lblStatus.SetText("Reading the trades ...");
  const CardMaker::Losses losses = maker_.MakeOfLosses(kLossesAtOnce);
  List();
  std::string text = losses.made == 0 ? "No other loss to make a card of."
                                      : CardsText(losses.made) + " made of your largest losses.";
  if (losses.refused > 0) {
    text += " Of " + std::to_string(losses.refused) + " there is no chart any more.";
  }
  Window().lblStatus.SetText(text);
}

void CardsPage::Delete() {
  const CardLine* const chosen = Chosen();
  if (chosen == nullptr || !Window().cards.cmdDeleteCard.Enabled()) return;
  const int card = chosen->card.id;
  const std::size_t answer = platform_.boxes.Ask(
      "Delete this card and its answers? It can't be brought back.", {"Delete", "Cancel"});
  if (answer != 0) return;
  LedgerDeleteCard(ledger_, card);
  List();
}

}  // namespace velumar
