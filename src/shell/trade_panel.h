#pragma once

#include <map>
#include <utility>

#include "forms/desktop.h"
#include "platform/platform.h"
#include "session/chart_side.h"
#include "session/sim_session.h"
#include "shell/account_boxes.h"
#include "shell/run_windows.h"
#include "trading/orders.h"

namespace velumar {

// What the controls of the trade panel do, and the three big displays that it opens. Opening the
// panel starts the account.
class TradePanel {
 public:
  TradePanel(SimSession& session, RunWindows& run, Desktop& desktop, Platform& platform,
             AccountBoxes& account, OrderDesk& orders, ChartSide& chart);

  // Shows the panel for a run. The account starts with what is entered now, even if the panel was
  // opened earlier.
  void ShowForRun();
  // Saves where the big displays were dragged that are still open.
  void SaveBigPlaces();

 private:
  void BindPanel();
  void BindBigDisplays();
  void RestorePlace(BigWindow& window);
  void SavePlace(const BigWindow& window);
  void Load();
  void BeginRun();
  void Place();
  void DelayChanged(bool whole);
  void BigNumbersToggled();
  void QuantityLeft();
  void CloseAndReturn();
  Form3& Window() { return desktop_.form3(); }

  SimSession& session_;
  RunWindows& run_;
  Desktop& desktop_;
  Platform& platform_;
  AccountBoxes& account_;
  OrderDesk& orders_;
  ChartSide& chart_;
  std::map<const BigWindow*, std::pair<float, float>> first_places_;  // top, left
  bool closing_ = false;  // while it slides out; clicks on "Close & Return" are ignored
};

}  // namespace velumar
