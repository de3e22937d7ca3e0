#pragma once

#include <string>

#include "base/paths.h"
#include "host/chart_registry.h"
#include "host/trader_focus.h"
#include "platform/platform.h"
#include "session/run_inputs.h"
#include "session/run_view.h"
#include "session/sim_session.h"

namespace velumar {

// What is wrong with the chart program: what precedes the bar in the status line, and the advice in
// its tooltip. Both are empty if nothing is.
struct ChartTrouble {
  std::string warning;
  std::string advice;
};

inline ChartTrouble NoChartProgram() {
  return {"No chart program, start it! ",
          "Start the chart program and open the chart, or go back and press Start. The next "
          "refresh finds it."};
}

inline ChartTrouble ChartProgramBusy() {
  return {"Chart program busy, wait for it! ",
          "The chart program is busy or hangs. The run continues, and the next refresh tries "
          "again."};
}

// The text of a box about a chart that the trader has to open: why, then what to do.
inline std::string CannotOpenChart(const std::string& why, const SimSession& session) {
  return why + " The run continues; open the chart of " + session.Run.symbol +
         " yourself from the folder " + PathText(NativePath(session.SimDir).make_preferred()) + ".";
}

// A way to make the chart program show the working store. Nothing here throws.
class ChartDriver {
 public:
  ChartDriver(SimSession& session, const RunInputs& inputs, RunView& view, Platform& platform,
              ChartRegistry& registry, TraderFocus& trader)
      : session_(session),
        inputs_(inputs),
        view_(view),
        platform_(platform),
        registry_(registry),
        trader_(trader) {}
  virtual ~ChartDriver() = default;
  // Starts the chart program if necessary and closes its charts.
  virtual void CloseCharts() = 0;
  // Opens the chart of the run's symbol from the store.
  virtual void OpenChart() = 0;
  virtual void Maximize() = 0;
  // Shows the chart if the trader works at the run. Returns false if the chart program isn't
  // running.
  virtual bool BringToFront() = 0;
  // Makes the charts read the store again.
  virtual ChartTrouble Refresh() = 0;
  // How long a refresh of all charts takes, without the pause after it.
  virtual long RefreshMilliseconds() const = 0;

 protected:
  SimSession& session_;
  const RunInputs& inputs_;
  RunView& view_;
  Platform& platform_;
  ChartRegistry& registry_;
  TraderFocus& trader_;
};

}  // namespace velumar
