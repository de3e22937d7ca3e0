#pragma once

#include "base/scoped_counter.h"
#include "platform/chart_windows.h"

namespace velumar {

// Where the trader works: at the run, which is Velumar and the chart program, or in another
// program. Keys place orders and step only at the run.
//
// The focus alone doesn't show it, since it also moves without the trader: when a box opens, when
// the chart program starts, when this program types into it, or when another program's window
// closes. So the trader is back at the run only after a click, or after a change of focus while the
// other window is still open.
class TraderFocus {
 public:
  explicit TraderFocus(ChartWindows& windows) : windows_(windows) {}

  // Reads the focus. Called often, so that no visit to another program is missed.
  void Look() { Follow(Cause::kTrader); }
  // The same after this program has moved the focus.
  void Moved() { Follow(Cause::kProgram); }
  // The trader has clicked one of our windows or started a run.
  void ComeToRun() { elsewhere_ = 0; }
  // While the result lives, the chart program may take the focus by itself.
  [[nodiscard]] ScopedCounter ExpectChart() { return ScopedCounter(expecting_chart_); }

  bool AtRun() const { return elsewhere_ == 0; }
  // The window of another program that the trader works in; 0 at the run.
  WindowId Elsewhere() const { return elsewhere_; }

 private:
  enum class Cause { kTrader, kProgram };
  void Follow(Cause cause);
  bool TraderChose(WindowOwner before, WindowOwner now);

  ChartWindows& windows_;
  WindowId seen_ = 0;
  WindowOwner owner_ = WindowOwner::kOwn;  // of the window seen last
  WindowId elsewhere_ = 0;
  int expecting_chart_ = 0;
};

// Returns the focus at the end of its scope: to the other program's window that the trader works
// in, to the chart, or to the window of ours that had it. If the trader turns to another program in
// between, the focus stays there.
class FocusReturn {
 public:
  FocusReturn(ChartWindows& windows, TraderFocus& trader);
  ~FocusReturn();
  FocusReturn(const FocusReturn&) = delete;
  FocusReturn& operator=(const FocusReturn&) = delete;

 private:
  void GiveBack();

  ChartWindows& windows_;
  TraderFocus& trader_;
  WindowId before_ = 0;
};

}  // namespace velumar
