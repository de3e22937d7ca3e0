#pragma once

#include <string>
#include <vector>

#include "forms/desktop.h"
#include "marketdata/csv_import.h"
#include "marketdata/index_cache.h"
#include "platform/platform.h"
#include "session/sim_session.h"
#include "session/symbol_catalogue.h"

namespace velumar {

// Price files that a hand drops on the setup window: they are imported into the data directory, as
// velumar-cli does it, once the user has agreed to the directory by its name. Then the list is
// built again and stands on the first security that came in. What can't come in is told file by
// file, and never comes in by half.
class CsvDrop {
 public:
  CsvDrop(SimSession& session, Desktop& desktop, Platform& platform, SymbolCatalogue& catalogue,
          IndexCache& cache)
      : session_(session),
        desktop_(desktop),
        platform_(platform),
        catalogue_(catalogue),
        cache_(cache) {}

  void Import(const std::vector<std::string>& files);
  // For a data directory that holds no market data, but price files: offers to make market data of
  // them, in that directory. True when some came in.
  bool OfferDirectory();

 private:
  struct Arrival {
    std::size_t files = 0;  // that came in
    CsvImportReport first;  // of these
  };

  bool Agreed(std::size_t files);
  Arrival ImportAll(const std::vector<std::string>& prices);
  void Choose(const CsvImportReport& series);

  SimSession& session_;
  Desktop& desktop_;
  Platform& platform_;
  SymbolCatalogue& catalogue_;
  IndexCache& cache_;
};

}  // namespace velumar
