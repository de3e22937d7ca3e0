#pragma once

#include <string_view>

#include "forms/desktop.h"
#include "host/reg_info.h"
#include "ledger/ledger.h"
#include "platform/platform.h"
#include "session/run_control.h"
#include "session/sim_session.h"
#include "session/symbol_catalogue.h"
#include "shell/csv_drop.h"

namespace velumar {

// The logic of the setup window: its load brings the whole process up, its unload saves the
// settings.
class SetupWindow {
 public:
  SetupWindow(SimSession& session, Desktop& desktop, Platform& platform, SymbolCatalogue& catalogue,
              RunControl& run, RegInfo& registry, LedgerConnection& ledger, CsvDrop& drop);

 private:
  void BindEvents();
  void Load();
  void ShapeAndName();
  void ReadSettings();
  void PlaceWindows();
  void ReadSelectDate();
  void FillDelay();
  void OpenDataDirectory();
  void MakeStore();
  void OpenLedger();
  void GroupAccountTexts();

  void DirectoryChanged();
  void ApplyPresets();
  void ReadContractFigures();
  void PickDirectory();
  void StartRun();
  bool RequireFigures();
  bool SlideToRun();
  void OpenSupportPage();
  void Unload();
  void Close();

  std::string Setting(std::string_view key, std::string_view otherwise) const;
  void Save(std::string_view key, std::string_view text);
  Form1& Window() { return desktop_.form1(); }

  SimSession& session_;
  Desktop& desktop_;
  Platform& platform_;
  SymbolCatalogue& catalogue_;
  RunControl& run_;
  RegInfo& registry_;
  LedgerConnection& ledger_;
  CsvDrop& drop_;
  bool starting_ = false;  // between the click on "Start" and its run
};

}  // namespace velumar
