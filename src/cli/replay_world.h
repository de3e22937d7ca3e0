#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "forms/desktop.h"
#include "ledger/ledger.h"
#include "platform/virtual_platform.h"
#include "results/result_figures.h"
#include "session/sim_session.h"
#include "shell/program.h"

namespace velumar {

class IndexCache;

struct ReplayArguments {
  std::string directory;
  std::string symbol;
  std::string interval;
  std::int32_t start = 0;              // yyyymmdd
  std::string store;                   // empty: in the data directory
  std::vector<std::string> texts;      // NAME=TEXT
  std::string date_pattern;            // empty: the user's
  std::string ledger;                  // empty: not saved
  std::optional<std::uint64_t> blind;  // the seed of a blind run
  bool real_prices = false;            // of a blind run
  int session = 0;  // of the ledger, resumed instead of a new one; fills series and start
};

// The control of a name such as "Form1.txtcomm"; null if there is none.
Control* FindControl(Desktop& desktop, const std::string& name);

// The complete program on a virtual clock, with series and start date chosen. The next step is a
// click on "Start".
class ReplayWorld {
 public:
  // Throws std::invalid_argument for an unknown control, std::runtime_error or MetaLibError for a
  // directory, series or store that can't be used.
  ReplayWorld(const ReplayArguments& arguments, IndexCache& cache);

  // Throws std::invalid_argument for an unknown control.
  Control& NamedControl(const std::string& name);
  Desktop::Windows& Windows() { return desktop.Untouched(); }

  VirtualPlatform outside;
  Platform platform;
  SimSession session;
  Desktop desktop;
  LedgerConnection ledger;
  ResultFigures figures;  // as last asked for
  Program program;
  IndexCache& index_cache;

 private:
  void ChooseSeries(const ReplayArguments& arguments);
  void ChooseBlind(const ReplayArguments& arguments);
};

// The answer to a command: every field of the session, the texts and colours that the trader sees,
// and the bars of the working store. Doesn't load windows; an unloaded one has empty texts. Numbers
// are exact.
nlohmann::ordered_json StateOf(ReplayWorld& world);

}  // namespace velumar
