#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "forms/desktop.h"
#include "ledger/ledger.h"
#include "platform/platform.h"
#include "results/journal.h"
#include "session/card_making.h"

namespace velumar {

// What the controls of the journal do, a tab of the result window. A note is written as soon as the
// trader leaves it; its earlier versions stay in the ledger.
class JournalTab {
 public:
  // `play_again` starts a session that plays the trade of that entry.
  JournalTab(Desktop& desktop, Platform& platform, LedgerConnection& ledger, CardMaker& cards,
             std::function<void(const LedgerOrderKey& entry)> play_again);

  // Call it when the result window loads.
  void SetUp();
  void SetVisible(bool visible);
  // Lists the trades, with all filters off. A note that is being typed is written before.
  void Show(Journal journal);
  const Journal& Shown() const { return journal_; }
  // Writes the note in the box if it has changed. If that fails, a box says so, and the text is on
  // the clipboard.
  void KeepNote();

 private:
  // Whose note is in the box.
  struct NoteOwner {
    LedgerOrderKey order;  // without a place: the session
    std::string shown;     // as it was read
  };

  void ListSetups();
  JournalFilter Filter();
  void List();
  // Null if not exactly one is selected.
  const JournalEntry* Chosen();
  void ShowChosen();
  void ShowPicture(const JournalEntry* entry);
  void ShowNote(const JournalEntry* entry);
  void SaveOnClipboard(const std::string& note, const std::string& reason);
  void OpenPicture();
  void PlayAgain();
  void MakeCard();
  JournalControls& Controls() { return desktop_.Untouched().frmResult.journal; }

  Desktop& desktop_;
  Platform& platform_;
  LedgerConnection& ledger_;
  CardMaker& cards_;
  std::function<void(const LedgerOrderKey& entry)> play_again_;
  Journal journal_;
  std::vector<std::vector<std::string>> texts_;  // of the listed columns, for each trade
  std::vector<std::size_t> listed_;              // indices of the trades, as the filters leave them
  std::optional<NoteOwner> note_;
};

}  // namespace velumar
