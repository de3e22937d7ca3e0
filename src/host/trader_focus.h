#pragma once

#include "base/counted.h"
#include "platform/chart_windows.h"

namespace velumar {

// Where the trader works: at the run, in Velumar or the chart program, or in another program. Keys
// may deal and step at the run alone.
//
// The focus shows it, but it also moves without the trader: when a box opens, when the chart
// program starts, when this program types into it, or when the window of another program closes and
// the focus falls to the next one. Only a click, or a choice of the window manager's among windows
// that are all still there, brings the trader back to the run.
class TraderFocus {
 public:
  explicit TraderFocus(ChartWindows& windows) : windows_(windows) {}

  // Follows the focus. Called often, so that no visit to another program is missed.
  void Look() { Follow(Cause::kTrader); }
  // The same right after the program itself has moved the focus.
  void Moved() { Follow(Cause::kProgram); }
  // The trader has clicked at the run or started one.
  void ComeToRun() { elsewhere_ = 0; }
  // While the result lives, the chart program's windows may come to the front by themselves.
  [[nodiscard]] Counted ExpectChart() { return Counted(expecting_chart_); }

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

// Has the focus go back to where it was when its scope ends: to the trader's window of another
// program, to the chart, or to the window of ours that had it. A trader who turns to another
// program meanwhile stays there.
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
