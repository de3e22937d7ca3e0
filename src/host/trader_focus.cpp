#include "host/trader_focus.h"

#include <utility>

#include "base/ignoring.h"

namespace velumar {

namespace {

constexpr std::string_view kOwnTitle = "Velumar";

}  // namespace

void TraderFocus::Follow(Cause cause) {
  const WindowId focused = windows_.FocusedWindow();
  // No window has the focus while it moves from one to the next.
  if (focused == 0 || focused == seen_) return;
  seen_ = focused;
  const WindowOwner before = std::exchange(owner_, windows_.OwnerOf(focused));
  if (owner_ == WindowOwner::kOther) {
    elsewhere_ = focused;
  } else if (elsewhere_ != 0 && cause == Cause::kTrader && TraderChose(before, owner_)) {
    elsewhere_ = 0;
  }
}

bool TraderFocus::TraderChose(WindowOwner before, WindowOwner now) {
  // A dialog opens or closes.
  if (before == now) return false;
  if (now == WindowOwner::kChartProgram && expecting_chart_ > 0) return false;
  return before != WindowOwner::kOther || windows_.IsWindowVisible(elsewhere_);
}

FocusReturn::FocusReturn(ChartWindows& windows, TraderFocus& trader)
    : windows_(windows), trader_(trader) {
  IgnoringErrors([&] {
    trader_.Look();
    before_ = windows_.FocusedWindow();
  });
}

FocusReturn::~FocusReturn() {
  IgnoringErrors([&] { GiveBack(); });
}

void FocusReturn::GiveBack() {
  trader_.Look();
  const WindowId now = windows_.FocusedWindow();
  // Only the trader can have moved it to a window other than the chart program's.
  if (now == before_ || (now != 0 && windows_.OwnerOf(now) != WindowOwner::kChartProgram)) return;
  const bool in_chart = before_ != 0 && windows_.OwnerOf(before_) == WindowOwner::kChartProgram;
  if (!trader_.AtRun() && windows_.GiveFocus(trader_.Elsewhere())) {
    trader_.Moved();
  } else if (!in_chart) {
    if (before_ == 0 || !windows_.GiveFocus(before_)) windows_.BringToFront(kOwnTitle);
    trader_.Moved();
  }
}

}  // namespace velumar
