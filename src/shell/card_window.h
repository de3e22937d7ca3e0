#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "forms/desktop.h"
#include "ledger/cards.h"
#include "platform/platform.h"
#include "session/card_play.h"

namespace velumar {

// What the controls of a card do. While it is open, the setup is hidden: no run begins. It is
// answered once the trader has judged the decision; closed before, it stays due.
class CardWindow {
 public:
  // `closed` is called when the trader closes it.
  CardWindow(Desktop& desktop, Platform& platform, LedgerConnection& ledger, CardPlay& play,
             std::function<void()> closed);

  // Plays a card of the ledger. Nothing happens if it was deleted.
  void Open(int card);

 private:
  void Load();
  void Play(const LedgerCard& card);
  void Ask();
  void Decide(LedgerCardAnswer::Decision side);
  void ShowOutcome();
  void Judge(LedgerCardAnswer::Verdict verdict);
  void PlayNext();
  void Close();
  // The card to be played after this one; nothing if none is due.
  std::optional<LedgerCard> Next();
  enum class Step : std::uint8_t { kWait, kAsk, kJudge, kNext };
  // Shows what can be used now.
  void ShowStep(Step step);
  std::string OutcomeText(const std::string& who, const CardOutcome& outcome) const;
  std::string IdentityText();
  FrmCard& Window() { return desktop_.frmCard(); }

  Desktop& desktop_;
  Platform& platform_;
  LedgerConnection& ledger_;
  CardPlay& play_;
  std::function<void()> closed_;
};

}  // namespace velumar
