#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "forms/desktop.h"
#include "marketdata/index_cache.h"
#include "platform/platform.h"
#include "session/sim_session.h"

namespace velumar {

// The securities of DataDir in the setup window's list, and the interval that each is stored at.
class SymbolCatalogue {
 public:
  SymbolCatalogue(SimSession& session, Desktop& desktop, Platform& platform, IndexCache& cache)
      : session_(session), desktop_(desktop), platform_(platform), cache_(cache) {}

  // What may bring data into a directory that has none, before another one is asked for; true when
  // it did.
  void OfferWhenEmpty(std::function<bool()> offer) { offer_ = std::move(offer); }

  // Fills Combo1 and PeriodBySymbol and chooses the first line. A directory without data is
  // answered by a message and the folder dialog, until one with data is chosen; who cancels twice
  // in a row is offered to quit or to take the samples. Any other failure ends it, and what was
  // listed until then stays. Window events run meanwhile: where one of them lists again or closes
  // the window, the older listing ends and touches nothing more.
  void BuildSymbolList();
  // True while a list is being built, inside whose waits a click can't start a run.
  bool Building() const { return building_ > 0; }
  // False when the user cancelled.
  bool PickDataDirectory();
  // A line of Combo1 was chosen: it is the symbol, and its interval the period.
  void SymbolChosen();
  // A key was released in Combo1: its text is the symbol. Of equal lines the last one's interval
  // counts.
  void SymbolTyped();

 private:
  void ListSecurities(int build);
  bool StillWanted(int build) const;
  void OfferWayOut();
  void SetDataDirectory(std::string_view directory);
  bool ListsSecurities() const { return session_.PeriodBySymbol.size() > 1; }
  void SetPeriod(std::string_view interval);

  SimSession& session_;
  Desktop& desktop_;
  Platform& platform_;
  IndexCache& cache_;
  std::function<bool()> offer_;
  int builds_ = 0;    // the number of the newest listing
  int building_ = 0;  // listings on the stack
};

}  // namespace velumar
