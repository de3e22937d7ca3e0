#include "shell/journal_tab.h"

#include <array>
#include <utility>

#include "results/figure_texts.h"
#include "results/journal_list.h"
#include "session/blind_mask.h"
#include "shell/event_guard.h"
#include "shell/window_shaping.h"

namespace velumar {

namespace {

constexpr std::string_view kFiltering = "Listing the trades";
constexpr std::string_view kShowingPicture = "Showing the picture";

std::string ResultText(const JournalEntry& entry) {
  if (!entry.trade.money) return {};
  std::string text = "Result " + MoneyText(entry.trade.money);
  if (entry.trade.r) text += ", " + MoneyText(entry.trade.r) + " R";
  return text;
}

std::vector<std::string> ListedTexts(const JournalEntry& entry, int session) {
  const JournalRow row = RowOf(entry, session);
  std::vector<std::string> texts;
  for (const std::size_t column : ListedColumns()) texts.push_back(row.at(column).text);
  return texts;
}

std::vector<std::string> DescribedLines(const JournalEntry& entry) {
  std::vector<std::string> lines;
  const auto add = [&lines](const std::string& line) {
    if (!line.empty()) lines.push_back(line);
  };
  add(TradeText(entry));
  add(ResultText(entry));
  if (entry.look_ahead) add("Later bars were known when it was traded.");
  add(PlanText(entry));
  if (entry.plan && !entry.plan->reasons.empty()) add("Reasons: " + entry.plan->reasons);
  return lines;
}

}  // namespace

JournalTab::JournalTab(Desktop& desktop, Platform& platform, LedgerConnection& ledger,
                       CardMaker& cards,
                       std::function<void(const LedgerOrderKey& entry)> play_again)
    : desktop_(desktop),
      platform_(platform),
      ledger_(ledger),
      cards_(cards),
      play_again_(std::move(play_again)) {
  const EventGuard guarded(platform_.boxes);
  JournalControls& controls = Controls();
  controls.txtFind.on_change = controls.cbxSetup.on_click = controls.cbxSide.on_click =
      controls.cbxOutcome.on_click = guarded(kFiltering, [this] { List(); });
  controls.lstTrades.on_select = guarded("Showing the trade", [this] { ShowChosen(); });
  controls.lstTrades.on_copy =
      guarded("Copying", [this] { platform_.clipboard.SetText(Controls().lstTrades.CopyText()); });
  controls.tabPicture.on_click = guarded(kShowingPicture, [this] { ShowPicture(Chosen()); });
  controls.lstTrades.on_double_click = controls.imgTrade.on_double_click =
      guarded(kShowingPicture, [this] { OpenPicture(); });
  controls.lstTrades.on_key_up = guarded(kShowingPicture, [this](int key) {
    if (key == kEnterKey) OpenPicture();
  });
  controls.tabNote.on_click = guarded("Showing the note", [this] {
    KeepNote();
    ShowNote(Chosen());
  });
  controls.txtNote.on_leave = guarded("Keeping the note", [this] { KeepNote(); });
  controls.lnkAgain.on_click = guarded("Playing the trade again", [this] { PlayAgain(); });
  controls.lnkCard.on_click = guarded("Making a card", [this] { MakeCard(); });
  FrmPicture& picture = desktop_.Untouched().frmPicture;
  picture.on_load = guarded(kShowingPicture, [this] {
    desktop_.frmPicture().SetTopmost(true);
    CentreOnScreen(desktop_.frmPicture(), platform_.screen);
  });
  picture.on_close = picture.on_escape = picture.imgChart.on_double_click =
      guarded("Closing the picture", [this] { desktop_.Unload(desktop_.frmPicture()); });
}

void JournalTab::SetUp() {
  std::vector<Table::Column> columns;
  for (const std::size_t column : ListedColumns()) {
    const JournalColumn& described = kJournalColumns.at(column);
    columns.push_back({std::string(described.title), described.numeric});
  }
  Controls().lstTrades.SetColumns(std::move(columns));
  journal_ = {};
  texts_.clear();
  listed_.clear();
  note_.reset();
}

void JournalTab::SetVisible(bool visible) {
  for (Control* const control : Controls().All()) control->SetVisible(visible);
  if (visible) ShowChosen();
}

void JournalTab::Show(Journal journal) {
  KeepNote();
  note_.reset();
  journal_ = std::move(journal);
  texts_.clear();
  for (const JournalEntry& entry : journal_.trades) {
    texts_.push_back(ListedTexts(entry, journal_.session));
  }
  JournalControls& controls = Controls();
  ListSetups();
  controls.cbxSide.SetIndex(0);
  controls.cbxOutcome.SetIndex(0);
  controls.txtFind.SetText("");
  List();
}

void JournalTab::ListSetups() {
  std::vector<ComboBox::Row> rows{{"All setups"}};
  for (const std::string& setup : SetupsOf(journal_.trades)) rows.push_back({setup});
  ComboBox& list = Controls().cbxSetup;
  list.SetEnabled(rows.size() > 1);
  list.SetRows(std::move(rows));
  list.SetIndex(0);
}

JournalFilter JournalTab::Filter() {
  static constexpr std::array kOutcomes{Outcome::kWon, Outcome::kLost, Outcome::kOpen};
  const JournalControls& controls = Controls();
  JournalFilter filter{.text = controls.txtFind.Text()};
  if (controls.cbxSetup.Index() > 0) filter.setup = controls.cbxSetup.Text();
  if (controls.cbxSide.Index() > 0) filter.is_long = controls.cbxSide.Index() == 1;
  const int outcome = controls.cbxOutcome.Index();
  if (outcome > 0) filter.outcome = kOutcomes.at(static_cast<std::size_t>(outcome) - 1);
  return filter;
}

void JournalTab::List() {
  KeepNote();
  const JournalFilter filter = Filter();
  listed_.clear();
  for (std::size_t i = 0; i < journal_.trades.size(); ++i) {
    if (Passes(journal_.trades[i], filter)) listed_.push_back(i);
  }
  const auto entry = [this](std::size_t row) -> const JournalEntry& {
    return journal_.trades.at(listed_.at(row));
  };
  JournalControls& controls = Controls();
  controls.lstTrades.SetContent(
      {listed_.size(),
       [this](std::size_t row, std::size_t column) {
         return texts_.at(listed_.at(row)).at(column);
       },
       [entry](std::size_t row) { return PlanText(entry(row)); },
       [entry](std::size_t row) {
         const Outcome outcome = entry(row).Result();
         return outcome == Outcome::kWon ? kDarkGreen : outcome == Outcome::kLost ? kRed : Colour{};
       }});
  controls.lblCount.SetText(std::to_string(listed_.size()) + " of " +
                            std::to_string(journal_.trades.size()) + " trades");
  if (!listed_.empty()) controls.lstTrades.Select({0});
  ShowChosen();
}

const JournalEntry* JournalTab::Chosen() {
  const std::vector<std::size_t>& rows = Controls().lstTrades.Selected();
  if (rows.size() != 1 || rows.front() >= listed_.size()) return nullptr;
  return &journal_.trades.at(listed_.at(rows.front()));
}

void JournalTab::ShowChosen() {
  KeepNote();
  JournalControls& controls = Controls();
  const JournalEntry* const entry = Chosen();
  controls.lstTrade.SetLines(entry == nullptr ? std::vector<std::string>()
                                              : DescribedLines(*entry));
  const bool entered = entry != nullptr && entry->trade.lot.entry && ledger_.CanWrite() &&
                       controls.lstTrades.Visible();
  controls.lnkCard.SetVisible(entered);
  controls.lnkAgain.SetVisible(entered && entry->symbol != kBlindSymbol);
  ShowPicture(entry);
  ShowNote(entry);
}

void JournalTab::ShowPicture(const JournalEntry* entry) {
  JournalControls& controls = Controls();
  const bool exit = controls.tabPicture.Index() == JournalControls::kExitPicture;
  std::string file;
  if (entry != nullptr) file = exit ? entry->exit_picture : entry->entry_picture;
  controls.imgTrade.SetText(file);
}

void JournalTab::ShowNote(const JournalEntry* entry) {
  JournalControls& controls = Controls();
  const bool of_session = controls.tabNote.Index() == JournalControls::kSessionNote;
  const std::vector<LedgerNote>* notes = nullptr;
  note_.reset();
  if (of_session && journal_.session != 0) {
    notes = &journal_.notes;
    note_ = NoteOwner{};
  } else if (!of_session && entry != nullptr && entry->NoteKey().place != 0) {
    notes = &entry->notes;
    note_ = NoteOwner{entry->NoteKey(), {}};
  }
  const std::string text = notes == nullptr || notes->empty() ? "" : notes->back().text;
  if (note_) note_->shown = text;
  controls.txtNote.SetEnabled(note_.has_value() && ledger_.CanWrite());
  controls.txtNote.SetText(text);
  controls.lblNoteDate.SetText(notes == nullptr ? "" : NoteDate(ledger_, *notes));
}

void JournalTab::KeepNote() {
  JournalControls& controls = Controls();
  if (!note_ || controls.txtNote.Text() == note_->shown) return;
  const LedgerNote note{journal_.session, note_->order, controls.txtNote.Text(),
                        platform_.clock.UtcMoment()};
  try {
    LedgerWriteNote(ledger_, note);
  } catch (const LedgerError& error) {
    return SaveOnClipboard(note.text, error.what());
  }
  note_->shown = note.text;
  const auto add = [&](std::vector<LedgerNote>& notes) {
    notes.push_back(note);
    controls.lblNoteDate.SetText(NoteDate(ledger_, notes));
  };
  if (note.order.place == 0) return add(journal_.notes);
  for (std::size_t i = 0; i < journal_.trades.size(); ++i) {
    JournalEntry& entry = journal_.trades[i];
    if (entry.NoteKey() != note.order) continue;
    add(entry.notes);
    texts_[i] = ListedTexts(entry, journal_.session);
  }
  controls.lstTrades.Refresh();
}

// The box shows what is written again, so leaving it doesn't fail another time.
void JournalTab::SaveOnClipboard(const std::string& note, const std::string& reason) {
  platform_.clipboard.SetText(note);
  Controls().txtNote.SetText(note_->shown);
  platform_.boxes.Show(
      "The note could not be written. Its text was copied to the clipboard.\n" + reason,
      BoxIcon::kExclamation);
}

void JournalTab::OpenPicture() {
  const std::string file = Controls().imgTrade.Text();
  const JournalEntry* const entry = Chosen();
  if (file.empty() || entry == nullptr) return;
  FrmPicture& window = desktop_.frmPicture();
  window.SetCaption(TradeText(*entry));
  window.imgChart.SetText(file);
  window.Show();
}

void JournalTab::PlayAgain() {
  const JournalEntry* const entry = Chosen();
  if (entry == nullptr) return;
  const LedgerOrderKey key = entry->NoteKey();
  KeepNote();
  desktop_.Unload(desktop_.frmResult());
  play_again_(key);
}

void JournalTab::MakeCard() {
  const JournalEntry* const entry = Chosen();
  if (entry == nullptr) return;
  const bool made = cards_.MakeOfTrade(entry->NoteKey());
  platform_.boxes.Show(made ? "The bar of this entry is a card now. It comes back tomorrow."
                            : "The bar of this entry is a card already.",
                       BoxIcon::kInformation);
}

}  // namespace velumar
