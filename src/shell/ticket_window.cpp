#include "shell/ticket_window.h"

#include <algorithm>
#include <utility>

#include "base/number_text.h"
#include "platform/event_loop.h"
#include "session/plan_levels.h"
#include "shell/event_guard.h"
#include "shell/window_shaping.h"

namespace velumar {

namespace {

constexpr std::string_view kPercentKey = "RiskPercent";
constexpr std::string_view kTopKey = "TicketTop";
constexpr std::string_view kLeftKey = "TicketLeft";
constexpr float kGap = 150;  // twips

std::optional<LedgerOrderKey> NewestOf(const std::vector<TicketOrder>& orders) {
  return orders.size() < 2 ? std::nullopt : std::optional(orders[1].order->key);
}

}  // namespace

TicketWindow::TicketWindow(Desktop& desktop, Platform& platform, TradeTicket& ticket)
    : desktop_(desktop), platform_(platform), ticket_(ticket) {
  Desktop::Windows& windows = desktop_.Untouched();
  const EventGuard guarded(platform_.boxes);
  windows.form3.imgPlan.on_click = guarded("Opening the plan", [this] { Open(); });
  FrmTicket& form = windows.frmTicket;
  form.on_load = guarded("Opening the plan", [this] { Load(); });
  form.on_unload = guarded("Closing the plan", [this] { SavePlace(); });
  form.on_close = form.on_escape = form.Image5.on_click =
      guarded("Closing the plan", [this] { desktop_.Unload(Window()); });
  form.on_press = form.Image1.on_press = form.Frame1.on_press =
      guarded("Moving the plan", [this] { Window().StartDrag(); });
  form.cboFor.on_click = guarded("Choosing the order", [this] { ShowPlan(); });
  for (Control* const box :
       std::initializer_list<Control*>{&form.txtStop, &form.txtTarget, &form.txtPercent,
                                       &form.txtReasons, &form.cboSetup, &form.cboConfidence}) {
    box->on_change = guarded("Reading the plan", [this] { Typed(); });
  }
  form.chkPause.on_click = guarded("Changing the switch", [this] {
    platform_.settings.Save(kPlanPauseSetting, Window().chkPause.Checked() ? "1" : kNoPlanPause);
  });
  form.on_enter = form.cmdKeep.on_click = guarded("Keeping the plan", [this] { Keep(); });
}

void TicketWindow::Open() {
  if (!desktop_.Untouched().frmTicket.Visible()) {
    ListOrders();
    Place();
  }
  Window().Show();
  TakeFocus();
}

// A window manager doesn't let a program take the focus from another one by itself, and what the
// trader types next must not reach the chart. The window is on the screen a moment after Show.
void TicketWindow::TakeFocus() {
  constexpr int kMostLooks = 20;
  constexpr std::int16_t kLookMilliseconds = 20;
  ChartWindows& windows = platform_.chart_windows;
  if (windows.OwnerOf(windows.FocusedWindow()) != WindowOwner::kChartProgram) return;
  const std::string title = Window().Caption();
  for (int i = 0; i < kMostLooks && desktop_.Untouched().frmTicket.Visible(); ++i) {
    if (windows.BringToFront(title)) return;
    WaitMilliseconds(platform_.events, std::int16_t{kLookMilliseconds});
  }
}

void TicketWindow::Load() {
  FrmTicket& form = Window();
  form.Image1.SetSize(form.Width(), form.Height());
  ShapeSmallWindow(form);
  const auto percent = platform_.settings.Read(kPercentKey);
  if (percent && ToDouble(*percent)) form.txtPercent.SetText(*percent);
  form.chkPause.SetChecked(platform_.settings.Read(kPlanPauseSetting) != kNoPlanPause);
  std::vector<ComboBox::Row> setups;
  for (std::string& setup : ticket_.Setups()) setups.push_back({std::move(setup)});
  form.cboSetup.SetRows(std::move(setups));
}

// Next to the trade panel, so that it covers no bars, until the trader drags it elsewhere.
void TicketWindow::Place() {
  FrmTicket& form = Window();
  std::string top = platform_.settings.Read(kTopKey).value_or("0");
  std::string left = platform_.settings.Read(kLeftKey).value_or("0");
  if (CanRestorePlace(top, left, form, platform_.screen)) {
    form.SetTop(PlaceFromText(top));
    form.SetLeft(PlaceFromText(left));
    return;
  }
  const Form3& panel = desktop_.Untouched().form3;
  const float right = panel.Left() + panel.Width() + kGap;
  const bool fits = right + form.Width() <= static_cast<float>(ScreenWidth(platform_.screen));
  form.SetLeft(std::max(fits ? right : panel.Left() - form.Width() - kGap, 0.0F));
  form.SetTop(std::max(panel.Top() + panel.Height() - form.Height(), 0.0F));
}

void TicketWindow::SavePlace() {
  platform_.settings.Save(kTopKey, PlaceText(Window().Top()));
  platform_.settings.Save(kLeftKey, PlaceText(Window().Left()));
}

void TicketWindow::ListOrders() {
  orders_ = ticket_.Orders();
  std::vector<ComboBox::Row> rows;
  for (const TicketOrder& order : orders_) rows.push_back({order.title});
  FrmTicket& form = Window();
  form.cboFor.SetRows(std::move(rows));
  form.cboFor.SetIndex(static_cast<int>(TradeTicket::Meant(orders_)));
}

const TicketOrder& TicketWindow::Chosen() {
  return orders_.at(static_cast<std::size_t>(std::max(Window().cboFor.Index(), 0)));
}

void TicketWindow::ShowPlan() { Enter(ticket_.Texts(Chosen())); }

void TicketWindow::Enter(const TicketTexts& texts) {
  FrmTicket& form = Window();
  form.txtStop.SetText(texts.stop);
  form.txtTarget.SetText(texts.target);
  form.cboSetup.SetText(texts.setup);
  form.cboConfidence.SetText(texts.confidence);
  form.txtReasons.SetText(texts.reasons);
  Typed();
}

TicketTexts TicketWindow::Texts() {
  FrmTicket& form = Window();
  return {.stop = form.txtStop.Text(),
          .target = form.txtTarget.Text(),
          .setup = form.cboSetup.Text(),
          .confidence = form.cboConfidence.Text(),
          .reasons = form.txtReasons.Text(),
          .percent = form.txtPercent.Text()};
}

void TicketWindow::Typed() {
  FrmTicket& form = Window();
  const TicketAnswer answer = ticket_.Answer(Chosen(), Texts());
  form.lblRisk.SetText(answer.risk);
  form.lblStatus.SetText(answer.problem);
  form.lblQuantity.SetText(answer.quantity.empty()
                               ? "% of the portfolio"
                               : "% of the portfolio, the quantity is " + answer.quantity);
}

bool TicketWindow::OrderCameBetween() {
  const auto before = NewestOf(orders_);
  if (NewestOf(ticket_.Orders()) == before) return false;
  const TicketTexts typed = Texts();
  ListOrders();
  Enter(typed);
  return true;
}

void TicketWindow::Keep() {
  if (OrderCameBetween()) {
    Window().lblStatus.SetText("An order came in between. Is the plan for it?");
    return;
  }
  const TicketAnswer answer = ticket_.Answer(Chosen(), Texts());
  if (!answer.problem.empty()) return Typed();
  ticket_.Keep(Chosen(), answer.plan);
  const std::string percent = Window().txtPercent.Text();
  if (ToDouble(percent).value_or(0) > 0) platform_.settings.Save(kPercentKey, percent);
  desktop_.Unload(Window());
}

}  // namespace velumar
