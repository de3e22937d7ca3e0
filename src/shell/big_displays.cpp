#include "shell/big_displays.h"

#include "shell/event_guard.h"
#include "shell/window_shaping.h"

namespace velumar {

namespace {

constexpr std::string_view kShowing = "Showing the big numbers";
constexpr std::int16_t kAlpha = 200;
constexpr float kTop = 250;
constexpr float kDateTimeLeft = 150;
constexpr float kGap = 50;
constexpr float kWidthsFromTheRight = 1.25F;

}  // namespace

BigDisplays::BigDisplays(const SimSession& session, Desktop& desktop, Platform& platform)
    : session_(session), desktop_(desktop), platform_(platform) {
  Desktop::Windows& windows = desktop.Untouched();
  const EventGuard guarded(platform_.boxes);
  windows.frmBigDateTime.on_load = guarded(kShowing, [this] { LoadDateTime(); });
  windows.frmBigScore.on_load = guarded(kShowing, [this] { LoadScore(); });
  windows.frmBigPrice.on_load = guarded(kShowing, [this] { LoadPrice(); });
  for (BigWindow* window : {&windows.frmBigDateTime, &windows.frmBigScore, &windows.frmBigPrice}) {
    window->on_press = window->lblScore.on_press = [window] { DragWindow(*window); };
    window->on_close = [this, window] { desktop_.Unload(*window); };
  }
}

void BigDisplays::Shape(BigWindow& window) {
  window.SetTopmost(true);
  RoundWindow(window, kCornerWidth, kCornerHeight);
  SetWindowAlpha(window, kAlpha);
}

void BigDisplays::LoadDateTime() {
  BigWindow& window = desktop_.frmBigDateTime();
  Shape(window);
  window.SetTop(kTop);
  window.SetLeft(kDateTimeLeft);
}

void BigDisplays::LoadScore() {
  BigWindow& window = desktop_.frmBigScore();
  Shape(window);
  window.lblScore.SetText(desktop_.form1().txtInitPorfolio.Text());
  window.SetTop(kTop);
  window.SetLeft(RightHandLeft(window));
  window.lblScore.SetForeColour(session_.Portfolio < 0 ? kRed : kGreen);
}

void BigDisplays::LoadPrice() {
  BigWindow& window = desktop_.frmBigPrice();
  Shape(window);
  window.SetTop(desktop_.frmBigScore().Height() + kTop + kGap);
  window.SetLeft(RightHandLeft(window));
}

float BigDisplays::RightHandLeft(const BigWindow& window) const {
  return static_cast<float>(ScreenWidth(platform_.screen)) - kWidthsFromTheRight * window.Width();
}

}  // namespace velumar
