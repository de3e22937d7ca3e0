#include "host/key_driver.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>
#include <vector>

#include "base/ignoring.h"
#include "base/paths.h"
#include "base/scoped_counter.h"
#include "base/text.h"
#include "platform/chart_program.h"
#include "platform/event_loop.h"
#include "platform/key_notation.h"
#include "trading/status_texts.h"

namespace velumar {

namespace {

constexpr std::string_view kCloseCharts = "%Fe";
constexpr std::string_view kOpenDialog = "%FO";
constexpr std::string_view kRefresh = "%VR";
constexpr std::string_view kNextChart = "^{TAB}";

constexpr std::int16_t kHostStartMs = 10000;
constexpr std::int16_t kBeforeRefreshMs = 500;
constexpr std::int16_t kBeforeNextChartMs = 10;
constexpr std::chrono::milliseconds kDialogLook{20};
constexpr std::chrono::milliseconds kDialogPatience{15000};

}  // namespace

// A chart opens in front of all windows, since its dialog needs the focus. If the trader turns to
// another program in the meantime, the focus returns there.
void KeyDriver::CloseCharts() {
  const FocusReturn returning(platform_.chart_windows, trader_);
  trader_.ComeToRun();
  IgnoringErrors([&] { BlinkLoadingNotice(); });
  const bool running = BringToFront();
  view_.SetStatusLine(kLoadingNotice);
  if (!running) IgnoringErrors([&] { StartHost(); });
  Maximize();
  const ScopedCounter opening(opening_);
  const ScopedCounter chart_comes = trader_.ExpectChart();
  view_.SetStatusLine("Wait for  close all chart  ....");
  FocusHost();
  Send(kCloseCharts);
}

void KeyDriver::OpenChart() {
  const FocusReturn returning(platform_.chart_windows, trader_);
  {
    const ScopedCounter opening(opening_);
    const ScopedCounter chart_comes = trader_.ExpectChart();
    FocusHost();
    view_.SetStatusLine("Open data for [" + session_.Run.symbol + "] ....");
    Send(kOpenDialog);
    if (WaitForDialog()) {
      Wait(0);
      OpenChartInDialog();
    }
  }
  BringToFront();
  view_.SetStatusLine("Ready to rock with [" + session_.Run.symbol + "] ....");
}

void KeyDriver::BlinkLoadingNotice() {
  constexpr int kRounds = 2;
  constexpr std::int16_t kBlinkMs = 1000;
  for (int round = 0; round < kRounds; ++round) {
    for (const std::string_view notice : {kLoadingNotice, std::string_view()}) {
      view_.SetStatusLine(notice);
      Wait(kBlinkMs);
    }
  }
}

void KeyDriver::StartHost() {
  const std::string command_line = registry_.StartCommand();
  if (command_line.empty()) return;
  const ScopedCounter chart_comes = trader_.ExpectChart();
  view_.SetStatusLine("Loading Meta Stock Program ....");
  view_.SetStatusLine("Loading ... " + command_line);
  IgnoringErrors([&] { platform_.programs.Start(command_line); });
  BringToFront();
  view_.SetStatusLine("Wait  for  [Meta Stock] ready ....");
  Wait(kHostStartMs);
}

// No clicks run here, so the wait is limited.
bool KeyDriver::WaitForDialog() {
  for (std::chrono::milliseconds waited{0}; waited < kDialogPatience; waited += kDialogLook) {
    bool found = false;
    IgnoringErrors([&] { found = platform_.chart_windows.FileDialogExists(); });
    if (found) {
      IgnoringErrors([&] { trader_.Moved(); });
      return true;
    }
    platform_.events.Sleep(kDialogLook);
  }
  platform_.boxes.Show(
      CannotOpenChart("The chart program showed no \"Open\" dialog within 15 seconds.", session_),
      BoxIcon::kExclamation);
  return false;
}

// Typed blind: the folder, then the symbol.
void KeyDriver::OpenChartInDialog() {
  Send(EscapedKeys(session_.SimDir));
  SendEach({"{SPACE}", "{SPACE}", "{SPACE}", "{ENTER}"});
  Send(EscapedKeys(session_.Run.symbol));
  SendEach({"{SPACE}", "{SPACE}", "{SPACE}", "{END}", "{TAB}", "S", "{ENTER}"});
}

void KeyDriver::Maximize() {
  view_.SetStatusLine("GetWindow... ");
  IgnoringErrors([&] {
    for (const WindowId window : platform_.chart_windows.TopLevelWindows()) {
      if (!IsTaskWindow(window)) continue;
      const std::string title = platform_.chart_windows.WindowTitle(window);
      if (title.find(kChartTitle) != std::string::npos) platform_.chart_windows.Maximize(window);
    }
  });
}

bool KeyDriver::IsTaskWindow(WindowId window) {
  ChartWindows& windows = platform_.chart_windows;
  return !windows.WindowTitle(window).empty() && windows.IsWindowVisible(window) &&
         !windows.HasOwner(window);
}

// Shows the chart if the trader works at the run. The focus stays where it was.
bool KeyDriver::BringToFront() {
  if (TraderIsElsewhere()) return HostIsThere();
  const FocusReturn returning(platform_.chart_windows, trader_);
  return FocusHost();
}

bool KeyDriver::FocusHost() {
  host_running_ = false;
  IgnoringErrors([&] {
    host_running_ = platform_.chart_windows.BringToFront(session_.HostTitle);
    trader_.Moved();
  });
  return host_running_;
}

bool KeyDriver::HostIsThere() {
  host_running_ = false;
  IgnoringErrors([&] {
    ChartWindows& windows = platform_.chart_windows;
    const std::vector<WindowId> all = windows.TopLevelWindows();
    host_running_ = std::any_of(all.begin(), all.end(), [&](WindowId window) {
      return windows.WindowTitle(window).starts_with(session_.HostTitle);
    });
  });
  return host_running_;
}

bool KeyDriver::TraderIsElsewhere() {
  bool elsewhere = false;
  IgnoringErrors([&] {
    trader_.Look();
    ChartWindows& windows = platform_.chart_windows;
    const WindowId focused = windows.FocusedWindow();
    elsewhere = focused == 0 || windows.OwnerOf(focused) == WindowOwner::kOther;
  });
  return elsewhere;
}

ChartTrouble KeyDriver::Refresh() {
  worst_outcome_ = KeyOutcome::kAccepted;
  IgnoringErrors([&] { RefreshEachChart(); });
  return TroubleWithHost();
}

long KeyDriver::RefreshMilliseconds() const {
  return static_cast<long>(std::max(inputs_.ChartCount(), 1)) *
         (kBeforeRefreshMs + kBeforeNextChartMs);
}

void KeyDriver::RefreshEachChart() {
  const bool stopped_before = session_.StopRequested != 0;
  Wait(kBeforeRefreshMs);
  const int charts = inputs_.ChartCount();
  if (charts <= 1) return Refresh({kRefresh});
  for (int chart = 0; chart < charts; ++chart) {
    if (chart > 0 && !stopped_before && session_.StopRequested != 0) {
      Wait(kBeforeNextChartMs);
      Refresh({kNextChart});
      continue;
    }
    if (chart > 0) Wait(kBeforeRefreshMs);
    Refresh({kRefresh, kNextChart});
  }
}

// Called after the wait, so that the focus leaves the trader's window only while keys are sent.
void KeyDriver::Refresh(std::initializer_list<std::string_view> keys) {
  const bool in_background = TraderIsElsewhere();
  std::optional<FocusReturn> returning;
  if (!in_background) returning.emplace(platform_.chart_windows, trader_);
  if (in_background ? !HostIsThere() : !FocusHost()) return;
  bool first = true;
  for (const std::string_view key : keys) {
    if (!std::exchange(first, false)) Wait(kBeforeNextChartMs);
    IgnoringErrors([&] {
      KeySender& sender = platform_.keys;
      worst_outcome_ =
          std::max(worst_outcome_, in_background ? sender.SendInBackground(key) : sender.Send(key));
    });
  }
}

void KeyDriver::Send(std::string_view keys) {
  IgnoringErrors([&] { worst_outcome_ = std::max(worst_outcome_, platform_.keys.Send(keys)); });
}

void KeyDriver::SendEach(std::initializer_list<std::string_view> keys) {
  for (const std::string_view key : keys) Send(key);
}

ChartTrouble KeyDriver::TroubleWithHost() const {
  if (!host_running_) {
    return NoChartProgram();
  }
  if (worst_outcome_ == KeyOutcome::kNotSent) {
    return {
        "Chart not refreshed: another window is in front! ",
        "Another window is in front of the chart, or the chart is on another workspace. Bring the "
        "chart to the front. Keys are never typed into other programs."};
  }
  if (worst_outcome_ == KeyOutcome::kNotAnswered) {
    return ChartProgramBusy();
  }
  return {};
}

void KeyDriver::Wait(std::int16_t milliseconds) {
  WaitMilliseconds(platform_.events, milliseconds);
}

}  // namespace velumar
