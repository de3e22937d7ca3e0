#include "host/host_control.h"

#include <algorithm>

#include "trading/position_book.h"
#include "trading/status_texts.h"

namespace velumar {

namespace {

std::string TimeText(long ms) {
  constexpr long kMinute = 60;
  constexpr long kHour = 60 * kMinute;
  const long seconds = (ms + 999) / 1000;
  if (seconds < kMinute) return std::to_string(seconds) + " s";
  if (seconds < kHour) return std::to_string((seconds + kMinute / 2) / kMinute) + " min";
  const long minutes = (seconds + kMinute / 2) / kMinute;
  return std::to_string(minutes / 60) + " h " + std::to_string(minutes % 60) + " min";
}

}  // namespace

ChartDriver& HostControl::Driver() {
  if (link_.Reaches()) return link_;
  return keys_;
}

void HostControl::CloseCharts() {
  if (link_.Reaches() || link_.CanStart()) return link_.CloseCharts();
  keys_.CloseCharts();
}

void HostControl::RefreshCharts() {
  ChartDriver& driver = Driver();
  view_.LockChartCount();
  const ChartTrouble trouble = driver.Refresh();
  view_.UnlockChartCount();
  ShowBar(trouble);
  RevaluePositions(session_);
  ShowStatus(session_, view_, platform_.locale);
  ShowProgress(driver.RefreshMilliseconds());
}

void HostControl::ShowBar(const ChartTrouble& trouble) {
  session_.ChartWarning = trouble.warning;
  view_.SetStatusAdvice(trouble.advice);
  if (session_.HasBar(session_.BarIndex)) {
    view_.SetStatusLine(BarLine(session_, platform_.locale));
  } else if (!trouble.warning.empty()) {
    view_.SetStatusLine(trouble.warning);
  }
}

void HostControl::ShowPositions() { link_.ShowPositions(); }

void HostControl::CatchUp() {
  if (session_.Preparing || !link_.Behind()) return;
  if (link_.Reaches()) ShowBar(link_.Refresh());
}

void HostControl::ShowProgress(long refresh_ms) {
  const int all = session_.LastBarIndex - session_.FirstShownBar;
  if (all <= 0) return;
  const int done = std::clamp(session_.BarIndex - session_.FirstShownBar, 0, all);
  std::string text = std::to_string(done) + " of " + std::to_string(all) + " bars";
  if (done < all) {
    text += ", about " + TimeText((all - done) * (session_.RefreshDelay + refresh_ms)) + " left";
  }
  view_.ShowProgress(static_cast<float>(done) / static_cast<float>(all), text);
}

}  // namespace velumar
