#pragma once

#include <string>
#include <vector>

#include "csv/csv_import.h"
#include "forms/desktop.h"
#include "marketdata/index_cache.h"
#include "platform/platform.h"
#include "session/sim_session.h"
#include "shell/symbol_catalogue.h"

namespace velumar {

// Imports price files that are dropped on the setup window into the data directory, as velumar-cli
// does, after the trader has confirmed the directory. Then lists the securities again and chooses
// the first imported one. A box names each file that can't be imported and why; nothing of such a
// file is imported.
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
  // If the data directory holds price files but no market data, offers to import them there.
  // Returns true if some were imported.
  bool OfferDirectory();

 private:
  struct Imported {
    std::size_t files = 0;
    CsvImportReport first;
  };

  bool Agreed(std::size_t files);
  Imported ImportAll(const std::vector<std::string>& prices);
  void Choose(const CsvImportReport& series);

  SimSession& session_;
  Desktop& desktop_;
  Platform& platform_;
  SymbolCatalogue& catalogue_;
  IndexCache& cache_;
};

}  // namespace velumar
