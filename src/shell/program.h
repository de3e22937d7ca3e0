#pragma once

#include <memory>

#include "forms/desktop.h"
#include "ledger/ledger.h"
#include "marketdata/index_cache.h"
#include "platform/platform.h"
#include "session/sim_session.h"
#include "shell/run_keys.h"
#include "trading/orders.h"

namespace velumar {

// What all windows do, bound to their events by the constructor. All references must outlive the
// object.
class Program {
 public:
  Program(SimSession& session, Desktop& desktop, const Platform& platform, IndexCache& cache,
          LedgerConnection& ledger);
  ~Program();

  // Opens the setup window, which starts everything else.
  void Start();
  // Resumes a session of the ledger in place of a click on "Start".
  void ResumeSession(int number);
  // True while a feed is running that will feed another bar.
  bool Feeding() const;
  // Makes fully transparent windows visible again. Called when the program is started once more.
  void ShowAgain();
  // The windows have these colours now.
  void SetTheme(bool dark);
  // Closes the chart program if this program has started it. Call it at the end of the process.
  void QuitChartProgram();
  // Call it about once a second: ends a drill's chart whose time is up, and brings the chart up to
  // date if it missed a refresh of the run.
  void Tick();
  // The trader has closed the chart program of that process.
  void ChartClosedByTrader(std::uint32_t process);
  // The chart program shows another series of the store, by the number of its data file, or no
  // longer.
  void Compare(int file_number);
  void EndCompare(int file_number);
  // What the keyboard does in a run.
  RunKeys& Keys();
  // The result of the last order.
  OrderResult LastOrder() const;

 private:
  struct Parts;
  Desktop& desktop_;
  std::unique_ptr<Parts> parts_;
};

}  // namespace velumar
