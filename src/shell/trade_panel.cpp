#include "shell/trade_panel.h"

#include <algorithm>

#include "base/ignoring.h"
#include "base/number_text.h"
#include "session/delay.h"
#include "shell/event_guard.h"
#include "shell/window_shaping.h"
#include "trading/status_texts.h"

namespace velumar {

namespace {

constexpr std::string_view kShowingBigNumbers = "Showing the big numbers";
constexpr std::string_view kPanelOpacityKey = "PorfolioTransparent";
constexpr float kUnderNavigator = 100;  // twips

}  // namespace

TradePanel::TradePanel(SimSession& session, RunWindows& run, Desktop& desktop, Platform& platform,
                       AccountBoxes& account, OrderDesk& orders, ChartSide& chart)
    : session_(session),
      run_(run),
      desktop_(desktop),
      platform_(platform),
      account_(account),
      orders_(orders),
      chart_(chart) {
  BindPanel();
  BindBigDisplays();
}

void TradePanel::BindPanel() {
  Form3& form = desktop_.Untouched().form3;
  const EventGuard guarded(platform_.boxes);
  form.on_load = guarded("Opening the trade panel", [this] { Load(); });
  form.on_unload = guarded("Closing the trade panel", [this] {
    platform_.settings.Save(kPanelOpacityKey, std::to_string(Window().Opacity()));
  });
  form.on_close = form.Image5.on_click =
      guarded("Closing the trade panel", [this] { CloseAndReturn(); });
  form.on_press = form.Image1.on_press =
      guarded("Moving the trade panel", [this] { Window().StartDrag(); });
  form.HScrollx.on_change =
      guarded("Changing the opacity", [this] { Window().SetOpacity(Window().HScrollx.Value()); });
  form.Combo2.on_double_click = guarded("Changing the delay", [this] { DelayChanged(true); });
  form.Combo2.on_key_up =
      guarded("Changing the delay", [this](int key) { DelayChanged(key == kEnterKey); });
  form.Combo2.on_leave = guarded("Changing the delay", [this] { DelayChanged(true); });
  form.chkShowBigform.on_click = guarded(kShowingBigNumbers, [this] { BigNumbersToggled(); });
  form.imgLong.on_click = guarded("The order Long", [this] { orders_.Long(); });
  form.ImgShort.on_click = guarded("The order Short", [this] { orders_.Short(); });
  form.imgOffsetLong.on_click = guarded("The order Offset Long", [this] { orders_.OffsetLong(); });
  form.ImgOffsetShort.on_click =
      guarded("The order Offset Short", [this] { orders_.OffsetShort(); });
  form.txtContractVol.on_change =
      guarded("Changing the quantity", [this] { chart_.ShowPositions(); });
  form.txtContractVol.on_leave = guarded("Reading the quantity", [this] { QuantityLeft(); });
}

// Two of the displays leave a quarter of their width to the right edge of the screen, if it is wide
// enough. Where the trader drags a display, it opens the next time.
void TradePanel::BindBigDisplays() {
  constexpr float kTop = 250;
  constexpr float kDateTimeLeft = 150;
  constexpr float kGap = 50;
  Desktop::Windows& windows = desktop_.Untouched();
  const EventGuard guarded(platform_.boxes);
  const auto bind = [&](BigWindow& window, auto place) {
    window.on_load = guarded(kShowingBigNumbers, [this, &window, place] {
      constexpr int kOpacity = 200;
      ShapeSmallWindow(window);
      window.SetOpacity(kOpacity);
      place(window);
      window.SetLeft(std::max(window.Left(), 0.0F));
      RestorePlace(window);
    });
    window.on_unload = guarded(kShowingBigNumbers, [this, &window] { SavePlace(window); });
    window.on_press = window.lblScore.on_press = [&window] { window.StartDrag(); };
    window.on_close = [this, &window] { desktop_.Unload(window); };
  };
  const auto place_right = [this](BigWindow& window, float top) {
    constexpr float kWidths = 1.25F;
    window.SetTop(top);
    window.SetLeft(static_cast<float>(ScreenWidth(platform_.screen)) - kWidths * window.Width());
  };
  bind(windows.frmBigDateTime, [](BigWindow& window) {
    window.SetTop(kTop);
    window.SetLeft(kDateTimeLeft);
  });
  bind(windows.frmBigScore, [this, place_right](BigWindow& window) {
    window.lblScore.SetText(desktop_.form1().txtInitPorfolio.Text());
    window.lblScore.SetForeColour(session_.Portfolio < 0 ? kRed : kGreen);
    place_right(window, kTop);
  });
  bind(windows.frmBigPrice, [this, place_right](BigWindow& window) {
    place_right(window, desktop_.frmBigScore().Height() + kTop + kGap);
  });
}

void TradePanel::RestorePlace(BigWindow& window) {
  const SettingsStore& settings = platform_.settings;
  // A text that is not a number is no place. "0" is one: the upper edge of the screen.
  std::string top = settings.Read(window.Name() + "Top").value_or("");
  std::string left = settings.Read(window.Name() + "Left").value_or("");
  first_places_[&window] = {window.Top(), window.Left()};
  if (!IsShownAt(top, left, window, platform_.screen)) return;
  window.SetTop(PlaceFromText(top));
  window.SetLeft(PlaceFromText(left));
}

void TradePanel::SavePlace(const BigWindow& window) {
  if (first_places_[&window] == std::pair(window.Top(), window.Left())) return;
  platform_.settings.Save(window.Name() + "Top", PlaceText(window.Top()));
  platform_.settings.Save(window.Name() + "Left", PlaceText(window.Left()));
}

void TradePanel::SaveBigPlaces() {
  Desktop::Windows& windows = desktop_.Untouched();
  for (const BigWindow* window :
       {&windows.frmBigDateTime, &windows.frmBigScore, &windows.frmBigPrice}) {
    if (window->Loaded()) SavePlace(*window);
  }
}

void TradePanel::Load() {
  Form3& form = Window();
  closing_ = false;
  form.imgGraph.SetToolTip("Results. Ledger: " + platform_.ledger_file);
  ShapeSmallWindow(form);
  LoadOpacity(form, form.HScrollx, platform_.settings, kPanelOpacityKey);
  form.Image1.SetSize(form.Width(), form.Height());
  BeginRun();
}

void TradePanel::BeginRun() {
  // Each run starts with its market's default quantity.
  if (const auto quantity = DefaultQuantity(session_.DataDir)) {
    Window().txtContractVol.SetText(*quantity);
  }
  StartAccount(session_, run_);
  account_.MarkAll();
  IgnoringErrors([this] { Place(); });
  ShowStatus(session_, run_, platform_.locale);
}

void TradePanel::ShowForRun() {
  const bool was_loaded = desktop_.Untouched().form3.Loaded();
  Form3& form = Window();  // loading starts the account
  if (was_loaded) BeginRun();
  form.Show();
}

// Below the navigator's saved place, not where it was dragged since.
void TradePanel::Place() {
  Form3& form = Window();
  const float navigator_height = desktop_.form2().Height();  // loading may set its place
  form.SetTop(navigator_height + static_cast<float>(PlaceFromText(session_.NavTop)) +
              kUnderNavigator);
  form.SetLeft(PlaceFromText(session_.NavLeft));
}

// The text is corrected once it is whole: "0.5" begins with texts that are no delays.
void TradePanel::DelayChanged(bool whole) {
  ComboBox& delay = Window().Combo2;
  const std::string usable = UsableDelay(delay.Text());
  if (whole && !delay.Text().empty()) delay.SetText(usable);
  session_.RefreshDelay = DelayMilliseconds(usable);
}

void TradePanel::BigNumbersToggled() {
  const bool shown = Window().chkShowBigform.Checked();
  Desktop::Windows& windows = desktop_.Untouched();
  for (Form* window : {&windows.frmBigDateTime, &windows.frmBigScore, &windows.frmBigPrice}) {
    if (shown) {
      desktop_.Load(*window);
      window->Show();
    } else {
      desktop_.Unload(*window);
    }
  }
}

void TradePanel::QuantityLeft() {
  TextBox& quantity = Window().txtContractVol;
  quantity.SetText(PatternText(quantity.Text(), kWholePattern));
}

void TradePanel::CloseAndReturn() {
  Form3& form = Window();
  if (closing_) return;
  closing_ = true;
  // A panel that was unloaded during its slide may belong to another run by now.
  if (!SlideOut(form, platform_)) return;
  closing_ = false;
  desktop_.Unload(form);
  desktop_.Unload(desktop_.Untouched().frmBigScore);
}

}  // namespace velumar
