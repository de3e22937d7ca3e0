#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "forms/desktop.h"
#include "marketdata/index_cache.h"
#include "platform/platform.h"
#include "session/sim_session.h"
#include "shell/symbol_catalogue.h"

namespace velumar {

// Where the next run starts, in the setup window: at the start date, or anywhere if "Blind" is
// ticked.
class StartBoxes {
 public:
  StartBoxes(const SimSession& session, Desktop& desktop, Platform& platform,
             SymbolCatalogue& catalogue, IndexCache& cache)
      : session_(session),
        desktop_(desktop),
        platform_(platform),
        catalogue_(catalogue),
        cache_(cache) {}

  void BindEvents();

  // Enters the saved date, which then stays whatever is listed and chosen until LetDateFollow: its
  // series is chosen later. Without one, enters a day a year ago.
  void ReadDate();
  void LetDateFollow() { keeps_date_ = false; }
  void SaveDate();
  // Call it after a series was chosen: moves a date outside it to the day from which a third of it
  // is left.
  void KeepDateInSeries();
  // Call it after the securities were listed again: a blind run may be of any of them.
  void SecuritiesListed();

 private:
  std::vector<std::int32_t> Days();
  void BlindToggled();
  void OfferAnySecurity();
  Form1& Window() { return desktop_.form1(); }

  const SimSession& session_;
  Desktop& desktop_;
  Platform& platform_;
  SymbolCatalogue& catalogue_;
  IndexCache& cache_;
  std::mt19937_64 random_{std::random_device()()};
  std::string seen_symbol_;    // chosen before "Blind" was ticked
  std::string seen_interval_;  // the same
  bool keeps_date_ = false;
};

}  // namespace velumar
