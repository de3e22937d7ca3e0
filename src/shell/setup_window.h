#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "forms/desktop.h"
#include "host/chart_registry.h"
#include "ledger/ledger.h"
#include "platform/platform.h"
#include "session/run_control.h"
#include "session/sim_session.h"
#include "shell/account_boxes.h"
#include "shell/start_boxes.h"
#include "shell/symbol_catalogue.h"
#include "shell/trade_panel.h"

namespace velumar {

// What the controls of the setup window do. Opening it starts the program; closing it saves the
// settings.
class SetupWindow {
 public:
  SetupWindow(SimSession& session, RunView& view, Desktop& desktop, Platform& platform,
              SymbolCatalogue& catalogue, ImportWindow& import, RunControl& run, TradePanel& panel,
              AccountBoxes& account, ChartRegistry& registry, LedgerConnection& ledger,
              IndexCache& cache);

  // Enters what a session of the ledger was played with, and resumes it. Ignored while a run is
  // prepared; during an import, or while securities are listed, a box says to wait.
  void ResumeSession(int number);
  // The same for a session that plays a trade of the ledger again. The run that is open is left for
  // it, unless the trader keeps it going.
  void PlayAgain(const LedgerOrderKey& entry);
  // Draws a chart of that many bars from the entered directory and interval, and plays it blind
  // with the entered account. Windows of a run that is over stay. Returns once its feed has ended;
  // false, after a box, if it could not begin.
  bool PlayDrawn(int bars);

 private:
  void Load();
  void ShapeAndName();
  void PlaceWindows();
  void FillDelay();
  void OpenDataDirectory();
  void OpenLedger();

  void DirectoryChanged();
  // Lists the securities, and reads the price files of a directory that has only these.
  void ListSecurities();
  // Opens the import with dropped files, but only while no run feeds or is being prepared: an
  // import chooses a security, and a run keeps its own.
  void TakeFiles(const std::vector<std::string>& files);
  // Ignored during the slides and while the window or its list is loading.
  void StartRun();
  bool CanStart() const;
  // The same for a session; a box says what it waits for.
  bool ReadyForSession() const;
  void Enter(const LedgerSession& session);
  // False if the store can't be claimed.
  bool Resume(const NextRun& choice);
  // Puts the quantity of its last order into the panel.
  void ShowQuantityOf(int session);
  // Begins the run that was claimed; false if it could not be prepared.
  bool BeginRun();
  bool SlideToRun();
  void Unload();
  std::string DelayToSave() const;
  void Close();

  std::string Setting(std::string_view key, std::string_view otherwise) const;
  void Save(std::string_view key, std::string_view text);
  Form1& Window() { return desktop_.form1(); }

  SimSession& session_;
  RunView& view_;
  Desktop& desktop_;
  Platform& platform_;
  SymbolCatalogue& catalogue_;
  ImportWindow& import_;
  RunControl& run_;
  TradePanel& panel_;
  AccountBoxes& account_;
  ChartRegistry& registry_;
  LedgerConnection& ledger_;
  StartBoxes start_;
  bool loading_ = false;  // while the window opens, no run can start
};

}  // namespace velumar
