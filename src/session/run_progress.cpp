#include "session/run_progress.h"

#include <algorithm>
#include <string>

namespace velumar {

namespace {

std::string TimeLeft(long ms) {
  constexpr long kMinute = 60;
  constexpr long kHour = 60 * kMinute;
  const long seconds = (ms + 999) / 1000;
  if (seconds < kMinute) return std::to_string(seconds) + " s";
  if (seconds < kHour) return std::to_string((seconds + kMinute / 2) / kMinute) + " min";
  const long minutes = (seconds + kMinute / 2) / kMinute;
  return std::to_string(minutes / 60) + " h " + std::to_string(minutes % 60) + " min";
}

}  // namespace

void ShowRunProgress(Desktop& desktop, const SimSession& session, int ms_per_bar) {
  Form2& navigator = desktop.Untouched().form2;
  const int all = session.LastBarIndex - session.FirstShownBar;
  if (!navigator.Loaded() || all <= 0) return;
  const int done = std::clamp(session.BarIndex - session.FirstShownBar, 0, all);
  navigator.Progress.SetFraction(static_cast<float>(done) / static_cast<float>(all));
  std::string tip = std::to_string(done) + " of " + std::to_string(all) + " bars";
  if (done < all) {
    tip += ", about " + TimeLeft(static_cast<long>(all - done) * ms_per_bar) + " left";
  }
  navigator.Progress.SetToolTip(tip);
}

}  // namespace velumar
