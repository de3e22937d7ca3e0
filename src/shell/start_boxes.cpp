#include "shell/start_boxes.h"

#include <optional>

#include "base/dates.h"
#include "session/run_inputs.h"
#include "shell/event_guard.h"
#include "shell/start_days.h"

namespace velumar {

void StartBoxes::BindEvents() {
  Form1& form = desktop_.Untouched().form1;
  const EventGuard guarded(platform_.boxes);
  form.DTPicker1.covered_days = [this] { return Days(); };
  form.DTPicker1.on_choice = guarded("Choosing the start date", [this](DayChoice choice) {
    if (const auto day = StartDay(Days(), choice, random_)) Window().DTPicker1.SetValue(*day);
  });
  form.chkBlind.on_click = guarded("Choosing a blind run", [this] { BlindToggled(); });
}

void StartBoxes::ReadDate() {
  constexpr int kDaysBack = 365;
  const std::string kept = platform_.settings.Read("SelectDate").value_or("");
  if (kept.empty()) {
    Window().DTPicker1.SetValue(DaysLater(platform_.clock.Today(), -kDaysBack));
  } else if (const auto date = DateFromText(kept, platform_.locale.ShortDatePattern())) {
    Window().DTPicker1.SetValue(*date);
    keeps_date_ = true;
  }
}

void StartBoxes::SaveDate() {
  platform_.settings.Save(
      "SelectDate", DateText(Window().DTPicker1.Value(), platform_.locale.ShortDatePattern()));
}

// A date outside the series would start the run at bar 250 or at the last bar.
void StartBoxes::KeepDateInSeries() {
  if (keeps_date_) return;
  const std::vector<std::int32_t> days = Days();
  DatePicker& date = Window().DTPicker1;
  if (days.empty() || (days.front() <= date.Value() && date.Value() <= days.back())) return;
  date.SetValue(days[days.size() * 2 / 3]);
}

std::vector<std::int32_t> StartBoxes::Days() {
  return BarDays(session_, Window().cbxPeriod.Text(), cache_);
}

void StartBoxes::SecuritiesListed() {
  if (Window().chkBlind.Checked()) OfferAnySecurity();
}

// The start of a blind run is drawn, so no date can be chosen, and its security too unless one is
// chosen.
void StartBoxes::BlindToggled() {
  Form1& form = Window();
  const bool blind = form.chkBlind.Checked();
  form.DTPicker1.SetEnabled(!blind);
  if (blind) {
    seen_symbol_ = form.Combo1.Text();
    seen_interval_ = form.cbxPeriod.Text();
    OfferAnySecurity();
  } else if (form.Combo1.Text() == kAnySecurity) {
    form.Combo1.SetText(seen_symbol_);
    catalogue_.SymbolTyped();
    form.cbxPeriod.SetText(seen_interval_);
  }
}

void StartBoxes::OfferAnySecurity() {
  Window().Combo1.SetText(kAnySecurity);
  catalogue_.OfferIntervals();
}

}  // namespace velumar
