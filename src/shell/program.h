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

// The logic behind all windows, bound to their events at construction. All references must outlive
// the object.
class Program {
 public:
  Program(SimSession& session, Desktop& desktop, const Platform& platform, IndexCache& cache,
          LedgerConnection& ledger);
  ~Program();

  // Loads the setup window, which brings the whole process up, and shows it.
  void Start();
  // True while a feed loop is on that will feed another bar or look at the stop flag.
  bool Feeding() const;
  // The program was started once more: windows that were made invisible can be seen again.
  void ShowAgain();
  // What the keyboard does in a run.
  RunKeys& Keys();
  // How the last click on an order ended.
  OrderResult LastOrder() const;

 private:
  struct Parts;
  Desktop& desktop_;
  std::unique_ptr<Parts> parts_;
};

}  // namespace velumar
