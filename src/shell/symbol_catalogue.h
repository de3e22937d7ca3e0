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

// The securities of the data directory in the setup window's list, each with its interval.
class SymbolCatalogue {
 public:
  SymbolCatalogue(SimSession& session, Desktop& desktop, Platform& platform, IndexCache& cache)
      : session_(session), desktop_(desktop), platform_(platform), cache_(cache) {}

  // Sets what is tried for a directory without data before the trader is asked for another one. It
  // returns true if there are data now.
  void OfferWhenEmpty(std::function<bool()> offer) { offer_ = std::move(offer); }

  // Fills the list and PeriodBySymbol and chooses the first line. If the directory has no data,
  // shows a message and the folder dialog until one with data is chosen; after two cancels in a row
  // offers to quit or to use the samples. Any other failure ends the listing and keeps what is
  // listed so far. Clicks run meanwhile: if one of them lists again or closes the window, the older
  // listing ends and changes nothing more.
  void BuildSymbolList();
  // True while a list is being built. A click then can't start a run.
  bool Building() const { return building_ > 0; }
  // False if the trader cancels.
  bool PickDataDirectory();
  // To be called after a line was chosen: takes its symbol and interval.
  void SymbolChosen();
  // To be called after a key was typed in the list: takes its text as the symbol, and the interval
  // of the last line with that symbol.
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
