#include "shell/navigator_window.h"

#include <utility>

#include "base/ignoring.h"
#include "base/number_text.h"
#include "shell/cards_page.h"
#include "shell/event_guard.h"
#include "shell/reveal_text.h"
#include "shell/window_shaping.h"

namespace velumar {

namespace {

constexpr std::string_view kOpacityKey = "ControlPannelTransparent";
constexpr std::int16_t kAfterFastStepMs = 5;
constexpr std::string_view kOneChart = "1";
constexpr int kMostCharts = 20;

std::string FastStepTip(std::string_view word, std::string_view key) {
  return std::string(word) + std::to_string(BarStepper::kFastStep) + " Bars (" + std::string(key) +
         ")";
}

}  // namespace

NavigatorWindow::NavigatorWindow(SimSession& session, RunView& view, Desktop& desktop,
                                 Platform& platform, RunControl& run, LedgerConnection& ledger,
                                 std::function<void()> leaving)
    : session_(session),
      view_(view),
      desktop_(desktop),
      platform_(platform),
      run_(run),
      ledger_(ledger),
      leaving_(std::move(leaving)) {
  Form2& form = desktop_.Untouched().form2;
  const EventGuard guarded(platform_.boxes);
  form.on_load = guarded("Opening the navigator", [this] { Load(); });
  form.on_unload = guarded("Closing the navigator", [this] {
    platform_.settings.Save(kOpacityKey, std::to_string(Window().Opacity()));
  });
  form.on_close = form.Image5.on_click =
      guarded("Going back to the setup", [this] { CloseAndReturn(); });
  form.on_press = form.Image8.on_press =
      guarded("Moving the navigator", [this] { Window().StartDrag(); });
  form.HScrollx.on_change =
      guarded("Changing the opacity", [this] { Window().SetOpacity(Window().HScrollx.Value()); });
  form.txtRefresh.on_change =
      guarded("Changing the number of charts", [this] { ChartCountTyped(); });
  const auto fast_step = [this](void (RunControl::*step)()) {
    return [this, step] {
      (run_.*step)();
      WaitMilliseconds(platform_.events, std::int16_t{kAfterFastStepMs});
    };
  };
  form.Image6.on_click = guarded("Stepping back", fast_step(&RunControl::GoFastRewind));
  form.Image7.on_click = guarded("Stepping forward", fast_step(&RunControl::GoFastForward));
  form.Image2.on_click = guarded("Stepping back", [this] { run_.GoPrevious(); });
  form.Image1.on_click = guarded("Stepping forward", [this] { run_.GoNext(); });
  form.Image3.on_click = guarded("Continuing the run", [this] { run_.Continue(); });
  form.Image4.on_click = guarded("Pausing the run", [this] { run_.EndRun(); });
}

void NavigatorWindow::Load() {
  Form2& form = Window();
  ShapeSmallWindow(form);
  form.Image8.SetSize(form.Width(), form.Height());
  LoadOpacity(form, form.HScrollx, platform_.settings, kOpacityKey);
  form.Image6.SetToolTip(FastStepTip("Previous ", "PageUp"));
  form.Image7.SetToolTip(FastStepTip("Next ", "PageDown"));
  chart_count_ = kOneChart;
  ChartCountTyped();
  session_.NavTop = platform_.settings.Read("NavTop").value_or("0");
  session_.NavLeft = platform_.settings.Read("NavLeft").value_or("0");
  IgnoringErrors([this] { Place(); });
}

void NavigatorWindow::Place() {
  Form2& form = Window();
  if (CanRestorePlace(session_.NavTop, session_.NavLeft, form, platform_.screen)) {
    form.SetTop(PlaceFromText(session_.NavTop));
    form.SetLeft(PlaceFromText(session_.NavLeft));
    return;
  }
  PlaceNavigatorFirst(form, platform_.screen);
  session_.NavTop = PlaceText(form.Top());
  session_.NavLeft = PlaceText(form.Left());
  platform_.settings.Save("NavTop", session_.NavTop);
  platform_.settings.Save("NavLeft", session_.NavLeft);
}

void NavigatorWindow::ChartCountTyped() {
  TextBox& box = Window().txtRefresh;
  if (ToDouble(box.Text()).value_or(1) <= kMostCharts) {
    chart_count_ = box.Text();
    return;
  }
  const std::string typed = box.Text();
  box.SetText(chart_count_);
  platform_.boxes.Show("At most " + std::to_string(kMostCharts) +
                           " charts can be refreshed at each bar, not " + typed + ".",
                       BoxIcon::kExclamation);
}

// A feed goes on without its windows, and so does an open position.
bool NavigatorWindow::KeepsPosition() {
  if (!run_.Feeding() || (session_.LAccum <= 0 && session_.SAccum <= 0)) return false;
  const std::size_t answer =
      platform_.boxes.Ask("A position is open. Keep the run going in the background, or end it?",
                          {"End the run", "Keep it going"});
  if (answer == 0) run_.EndRun();
  return answer != 0;
}

void NavigatorWindow::OfferReveal() {
  if (!run_.Blind()) return;
  const std::size_t answer =
      platform_.boxes.Ask("Does this blind session end here? Then you see what you have played.",
                          {"Reveal it", "Keep it hidden"});
  if (answer != 0) return;
  if (const auto revealed = run_.Reveal()) {
    platform_.boxes.ShowTitled("Blind session",
                               RevealText(*revealed, ledger_, platform_.locale.ShortDatePattern()),
                               BoxIcon::kInformation);
  }
}

void NavigatorWindow::CloseAndReturn() {
  Form2& form = Window();
  if (closing_) return;
  closing_ = true;
  leaving_();
  OfferReveal();
  const bool keeps_position = KeepsPosition();
  platform_.settings.Save("NavTop", PlaceText(form.RestTop()));
  platform_.settings.Save("NavLeft", PlaceText(form.Left()));
  IgnoringErrors([&] { SlideOut(form, platform_); });
  closing_ = false;
  desktop_.Unload(desktop_.Untouched().frmTicket);
  // Before the other windows go, so that the focus doesn't go to the chart: some desktops would
  // then draw the chart above the setup.
  Form1& setup = desktop_.form1();
  setup.Show();
  setup.ImgDonate.SetVisible(true);
  ShowDueCards(desktop_, platform_, ledger_);
  desktop_.Unload(form);
  // The next bar would open a closed panel again, and that drops the position.
  Form3& panel = desktop_.Untouched().form3;
  keeps_position ? panel.Hide() : desktop_.Unload(panel);
  view_.UnlockSetup();
  IgnoringErrors([&] { SlideIn(setup, session_.SetupTop, session_.SetupLeft, platform_); });
}

}  // namespace velumar
