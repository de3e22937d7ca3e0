#include "shell/drill_chart_window.h"

#include <algorithm>
#include <utility>

#include "base/ignoring.h"
#include "shell/event_guard.h"
#include "shell/reveal_text.h"
#include "shell/window_shaping.h"
#include "trading/drill_list.h"

namespace velumar {

namespace {

constexpr std::string_view kDrillTopKey = "DrillTop";
constexpr std::string_view kDrillLeftKey = "DrillLeft";
constexpr float kGapToNavigator = 100;  // twips

using Stage = Drill::Stage;

}  // namespace

DrillChartWindow::DrillChartWindow(Desktop& desktop, Platform& platform, LedgerConnection& ledger,
                                   IndexCache& cache, RunControl& run, Drill& drill,
                                   std::function<bool(int bars)> play)
    : desktop_(desktop),
      platform_(platform),
      ledger_(ledger),
      cache_(cache),
      drill_(drill),
      play_(std::move(play)) {
  FrmDrillChart& form = desktop_.Untouched().frmDrillChart;
  const EventGuard guarded(platform_.boxes);
  run.OnMove(guarded("The drill", [this] { Check(); }));
  form.on_load = guarded("Opening the drill", [this] { Load(); });
  form.on_unload = guarded("Closing the drill", [this] { SavePlace(); });
  form.on_press = form.Image1.on_press = form.Frame1.on_press =
      guarded("Moving the drill", [this] { Window().StartDrag(); });
  form.cmdNext.on_click = guarded("Starting the next chart", [this] {
    drill_.BeginNext();
    PlayChart();
  });
  form.on_close = form.cmdStop.on_click = guarded("Ending the drill", [this] { StopOrClose(); });
}

void DrillChartWindow::Load() {
  FrmDrillChart& form = Window();
  ShapeSmallWindow(form);
  form.Image1.SetSize(form.Width(), form.Height());
  Place();
}

// Above the navigator, or below the trade panel, until the trader drags it elsewhere.
void DrillChartWindow::Place() {
  FrmDrillChart& form = Window();
  std::string top = platform_.settings.Read(kDrillTopKey).value_or("0");
  std::string left = platform_.settings.Read(kDrillLeftKey).value_or("0");
  if (CanRestorePlace(top, left, form, platform_.screen)) {
    form.SetTop(PlaceFromText(top));
    form.SetLeft(PlaceFromText(left));
    return;
  }
  const Form2& navigator = desktop_.Untouched().form2;
  const Form3& panel = desktop_.Untouched().form3;
  const float above = navigator.Top() - form.Height() - kGapToNavigator;
  form.SetTop(above >= 0 ? above : panel.Top() + panel.Height() + kGapToNavigator);
  form.SetLeft(std::max(navigator.Left(), 0.0F));
}

void DrillChartWindow::SavePlace() {
  platform_.settings.Save(kDrillTopKey, PlaceText(Window().Top()));
  platform_.settings.Save(kDrillLeftKey, PlaceText(Window().Left()));
}

void DrillChartWindow::Begin(const LedgerDrill& plan) {
  drill_.Begin(plan);
  PlayChart();
}

void DrillChartWindow::PlayChart() {
  ShowStage();
  if (play_(drill_.Plan().bars)) return;
  drill_.ChartFailed();
  ShowStage();
}

void DrillChartWindow::Check() {
  const Stage before = drill_.CurrentStage();
  drill_.Check();
  if (drill_.CurrentStage() != before) {
    ShowStage();
  } else if (before == Stage::kPlaying) {
    Window().lblStatus.SetText(drill_.StatusText());
  }
}

void DrillChartWindow::Leave() {
  const Stage before = drill_.CurrentStage();
  drill_.Stop();
  if (drill_.CurrentStage() != before) ShowStage();
}

void DrillChartWindow::StopOrClose() {
  const Stage stage = drill_.CurrentStage();
  if (stage == Stage::kStarting || stage == Stage::kEnding) return;
  if (stage != Stage::kOver) {
    // A key is easily pressed by mistake, and no chart can be played twice.
    if (platform_.boxes.Ask("End the drill here? What was played counts.",
                            {"End the drill", "Go on"}) == 0) {
      Leave();
    }
    return;
  }
  desktop_.Unload(Window());
  if (drill_.Left()) return;  // its windows are those of another run
  const Form2& navigator = desktop_.Untouched().form2;
  if (navigator.Visible()) navigator.on_close();
  desktop_.frmDrill().Show();
}

void DrillChartWindow::ShowStage() {
  const Stage stage = drill_.CurrentStage();
  const bool begun = !drill_.Plan().sessions.empty();
  if (stage == Stage::kNone || !begun) {
    return desktop_.Unload(desktop_.Untouched().frmDrillChart);
  }
  FrmDrillChart& form = Window();
  form.lblStatus.SetText(drill_.StatusText());
  ShowResult();
  form.cmdNext.SetEnabled(stage == Stage::kBetween);
  form.cmdStop.SetEnabled(stage != Stage::kStarting && stage != Stage::kEnding);
  form.cmdStop.SetText(stage == Stage::kOver ? "&Close" : "&Stop");
  form.Show();
}

// What the last chart was and brought, and after it the whole drill.
void DrillChartWindow::ShowResult() {
  FrmDrillChart& form = Window();
  for (Label* line : {&form.lblResult, &form.lblFigures, &form.lblAll}) line->SetText("");
  const Stage stage = drill_.CurrentStage();
  if (stage != Stage::kBetween && stage != Stage::kOver) return;
  IgnoringErrors([&] {
    const LedgerDrill& drill = drill_.Plan();
    const Played played = ReadPlayed(ledger_, cache_);
    if (drill_.LastChart()) {
      const std::string revealed =
          RevealText(*drill_.LastChart(), ledger_, platform_.locale.ShortDatePattern());
      form.lblResult.SetText(revealed.substr(0, revealed.find('\n')));
      form.lblFigures.SetText(DrillFiguresText(FiguresOfSessions(played, {drill.sessions.back()})));
    }
    if (stage != Stage::kOver) return;
    for (const DrillResult& result : DrillResults(LedgerDrills(ledger_), played)) {
      if (result.drill.number != drill.number) continue;
      const std::string rank = result.rank > 0 ? ", rank " + result.RankText() : "";
      form.lblAll.SetText("All charts: " + DrillFiguresText(result.figures) + rank);
    }
  });
}

}  // namespace velumar
