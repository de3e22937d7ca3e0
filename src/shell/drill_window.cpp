#include "shell/drill_window.h"

#include <array>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "base/dates.h"
#include "base/number_text.h"
#include "marketdata/interval.h"
#include "results/figure_texts.h"
#include "shell/event_guard.h"
#include "shell/window_shaping.h"
#include "trading/drill_list.h"

namespace velumar {

namespace {

constexpr double kMostMinutes = 600;
constexpr double kSecondsPerMinute = 60;

// What a box takes, and the setting that keeps it.
struct NumberBox {
  TextBox FrmDrill::*box;
  std::string_view key;
  std::string_view what;
  double least;
  double most;
  bool whole;
};
constexpr std::array kBoxes{
    NumberBox{&FrmDrill::txtCharts, "DrillCharts", "The number of charts", 1, 50, true},
    NumberBox{&FrmDrill::txtBars, "DrillBars", "The number of bars", 10, 500, true},
    NumberBox{&FrmDrill::txtMinutes, "DrillMinutes", "The number of minutes", 0, kMostMinutes,
              false}};

double NumberIn(FrmDrill& form, const NumberBox& entry) {
  const std::string& text = (form.*entry.box).Text();
  const double number = ToDouble(text).value_or(-1);
  const bool fits = number >= entry.least && number <= entry.most;
  if (fits && (!entry.whole || number == std::floor(number))) return number;
  throw std::runtime_error(std::string(entry.what) + " is " + QuantityText(entry.least) + " to " +
                           QuantityText(entry.most) + ", not \"" + text + "\".");
}

}  // namespace

DrillWindow::DrillWindow(const SimSession& session, Desktop& desktop, Platform& platform,
                         LedgerConnection& ledger, IndexCache& cache, DrillChartWindow& charts)
    : session_(session),
      desktop_(desktop),
      platform_(platform),
      ledger_(ledger),
      cache_(cache),
      charts_(charts) {
  Desktop::Windows& windows = desktop_.Untouched();
  const EventGuard guarded(platform_.boxes);
  windows.frmPractice.cmdDrill.on_click = guarded("Opening the drills", [this] {
    desktop_.Unload(desktop_.frmPractice());
    Window().Show();
  });
  FrmDrill& form = windows.frmDrill;
  form.on_load = guarded("Opening the drills", [this] { Load(); });
  form.on_close = form.on_escape = form.Image5.on_click =
      guarded("Closing the drills", [this] { desktop_.Unload(Window()); });
  form.on_press = form.Image1.on_press = form.Frame1.on_press =
      guarded("Moving the drills", [this] { Window().StartDrag(); });
  form.on_enter = form.cmdStart.on_click = guarded("Starting the drill", [this] { Start(); });
}

void DrillWindow::Load() {
  FrmDrill& form = Window();
  form.Image1.SetSize(form.Width(), form.Height());
  for (const NumberBox& entry : kBoxes) {
    if (const auto kept = platform_.settings.Read(entry.key)) (form.*entry.box).SetText(*kept);
  }
  const std::string interval = desktop_.form1().cbxPeriod.Text();
  form.lblSource.SetText("From " + session_.DataDir +
                         (interval == kDailyInterval ? ", daily" : ", " + interval + " min"));
  form.lblSource.SetToolTip("As chosen in the setup window: " + session_.DataDir);
  constexpr std::array<float, kDrillColumns.size()> kWidths{1650, 600,  750,  750, 900,
                                                            900,  1350, 1170, 900};
  std::vector<Table::Column> columns{{"Begun", false, 1800}};
  for (std::size_t i = 0; i < kWidths.size(); ++i) {
    columns.push_back({std::string(kDrillColumns[i].title), kDrillColumns[i].numeric, kWidths[i]});
  }
  form.lstDrills.SetColumns(std::move(columns));
  ShapeSmallWindow(form);
  CentreOnScreen(form, platform_.screen);
  List();
}

void DrillWindow::List() {
  FrmDrill& form = Window();
  results_ = ledger_.CanRead() ? ListDrills(ledger_, cache_) : std::vector<DrillResult>();
  const std::string pattern = platform_.locale.ShortDatePattern();
  form.lstDrills.SetContent({results_.size(),
                             [this, pattern](std::size_t row, std::size_t column) {
                               const DrillResult& result = results_.at(row);
                               if (column > 0) return DrillCell(result, column - 1);
                               return IsoMinuteText(platform_.clock.LocalMoment(result.drill.began),
                                                    pattern);
                             },
                             [this](std::size_t row) { return results_.at(row).drill.directory; }});
  form.cmdStart.SetEnabled(ledger_.CanWrite());
  form.lblStatus.SetText(
      ledger_.CanWrite()
          ? "Ranked by usual moves, among finished drills of as many charts, bars and minutes."
          : ledger_.WhyNot());
}

LedgerDrill DrillWindow::Entered() {
  std::array<double, kBoxes.size()> numbers{};
  for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = NumberIn(Window(), kBoxes[i]);
  return {.began = platform_.clock.UtcMoment(),
          .charts = static_cast<int>(numbers[0]),
          .bars = static_cast<int>(numbers[1]),
          .seconds = static_cast<int>(std::lround(numbers[2] * kSecondsPerMinute)),
          .directory = session_.DataDir,
          .interval = desktop_.form1().cbxPeriod.Text()};
}

void DrillWindow::Start() {
  if (!Window().cmdStart.Enabled()) return;
  LedgerDrill plan;
  try {
    plan = Entered();
  } catch (const std::runtime_error& error) {
    Window().lblStatus.SetText(error.what());
    Window().lblStatus.SetForeColour(kRed);
    return;
  }
  for (const NumberBox& entry : kBoxes) {
    platform_.settings.Save(entry.key, (Window().*entry.box).Text());
  }
  desktop_.Unload(Window());
  charts_.Begin(plan);
}

}  // namespace velumar
