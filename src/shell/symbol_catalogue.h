#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "forms/desktop.h"
#include "marketdata/index_cache.h"
#include "platform/platform.h"
#include "session/sim_session.h"
#include "shell/import_window.h"

namespace velumar {

// The securities of the data directory in the setup window's list, each with its interval.
class SymbolCatalogue {
 public:
  SymbolCatalogue(SimSession& session, Desktop& desktop, Platform& platform, IndexCache& cache,
                  ImportWindow& import)
      : session_(session), desktop_(desktop), platform_(platform), cache_(cache), import_(import) {}

  // Fills the list and PeriodBySymbol and chooses the first line. If the directory has no data,
  // opens the import with its price files, or shows a message and the folder dialog until one with
  // data is chosen; after two cancels in a row offers to quit or to use the samples. Any other
  // failure ends the listing and keeps what is listed so far. Clicks run while it lists: if one of
  // them lists again or closes the window, the older listing ends and changes nothing more.
  void BuildSymbolList();
  // True while a list is being built. A click then can't start a run.
  bool Building() const { return building_ > 0; }
  // Lists the securities again and chooses a series, by its minutes or -1 for daily bars.
  void ListAndChoose(std::string_view symbol, int interval);
  // False if the trader cancels.
  bool PickDataDirectory();
  // Call it after a line was chosen: takes its symbol and interval.
  void SymbolChosen();
  // Call it after a key was typed in the list: takes its text as the symbol, and the interval of
  // the last line with that symbol.
  void SymbolTyped();
  // Lists all intervals of the directory that can be replayed, for a run whose security is drawn.
  void OfferIntervals();

 private:
  void ListSecurities(int build);
  bool StillWanted(int build) const;
  void OfferWayOut();
  // If the data directory holds price files, opens the import with them. The files are read later,
  // so that a start of the program doesn't wait for them.
  bool OfferImport();
  void SetDataDirectory(std::string_view directory);
  bool ListsSecurities() const { return session_.PeriodBySymbol.size() > 1; }
  void SetPeriod(std::string_view interval);

  SimSession& session_;
  Desktop& desktop_;
  Platform& platform_;
  IndexCache& cache_;
  ImportWindow& import_;
  int builds_ = 0;    // the number of the newest listing
  int building_ = 0;  // listings on the stack
};

}  // namespace velumar
