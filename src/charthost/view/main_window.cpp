#include "charthost/view/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <utility>

#include "charthost/view/chart_area.h"
#include "charthost/view/chart_pane.h"
#include "charthost/view/indicators_dialog.h"
#include "charthost/view/open_dialog.h"
#include "charthost/view/theme.h"
#include "charthost/view/view_menu.h"
#include "charts/qt_text.h"
#include "platform/chart_program.h"

namespace velumar {

MainWindow::MainWindow(const SeriesSource& source, ChartSettings& settings, Report report)
    : source_(source),
      settings_(settings),
      report_(std::move(report)),
      options_(settings.Options()),
      problems_(settings.Problems()),
      area_(new ChartArea(this)) {
  setWindowTitle(ToQt(kChartTitle));
  setMinimumSize(420, 320);
  setAttribute(Qt::WA_AlwaysShowToolTips);
  setCentralWidget(area_);
  connect(area_, &ChartArea::CloseRequested, this, &MainWindow::CloseChart);
  connect(area_, &ChartArea::Activated, this, [this] { Changed("activated"); });
  BuildDialogs();
  BuildMenus();
  view_menu_->ShowOptions(options_);
  ApplyTheme();
  area_->ApplyColours();
  resize(1180, 760);
  restoreGeometry(settings.Geometry());
  Changed("ready");
}

void MainWindow::BuildDialogs() {
  dialog_ = new OpenDialog(source_, this);
  connect(dialog_, &OpenDialog::Chosen, this, &MainWindow::OpenChart);
  indicators_dialog_ = new IndicatorsDialog(this);
  connect(indicators_dialog_, &IndicatorsDialog::Changed, this, [this](const auto& indicators) {
    ChartOptions options = options_;
    options.indicators = indicators;
    SetOptions(options);
  });
  connect(indicators_dialog_, &IndicatorsDialog::SetsChanged, this,
          [this](const auto& sets) { settings_.SetSets(sets); });
}

// Keys from outside open the two menus by their letters F and V, so no other menu has these.
void MainWindow::BuildMenus() {
  file_menu_ = menuBar()->addMenu(tr("&File"));
  file_menu_->addAction(tr("&Open..."), QKeySequence::Open, this, &MainWindow::OpenFile);
  file_menu_->addSeparator();
  file_menu_->addAction(tr("&Close chart"), QKeySequence(Qt::CTRL | Qt::Key_W), this,
                        [this] { CloseChart(ActiveChart()); });
  file_menu_->addAction(tr("Clos&e all charts"), this, &MainWindow::CloseAll);
  file_menu_->addSeparator();
  file_menu_->addAction(tr("E&xit"), QKeySequence(Qt::CTRL | Qt::Key_Q), this, &MainWindow::close);

  view_menu_ = new ViewMenu(tr("&View"), this);
  menuBar()->addMenu(view_menu_);
  connect(view_menu_, &ViewMenu::RefreshChosen, this, &MainWindow::RefreshActive);
  connect(view_menu_, &ViewMenu::OptionsChosen, this, &MainWindow::SetOptions);
  connect(view_menu_, &ViewMenu::FrameChosen, this, [this](Frame frame) {
    if (ActiveChart() != nullptr) ActiveChart()->ShowFrame(frame);
  });
  connect(view_menu_, &ViewMenu::MoveChosen, this, [this](WindowMove change) {
    if (ActiveChart() == nullptr) return;
    change(ActiveChart()->Window());
    ActiveChart()->WindowMoved();
  });
  connect(view_menu_, &ViewMenu::IndicatorsChosen, this,
          [this] { indicators_dialog_->Show(options_.indicators, settings_.Sets(), problems_); });
  for (const QMenu* const menu : {file_menu_, static_cast<QMenu*>(view_menu_)}) {
    connect(menu, &QMenu::aboutToHide, this, &MainWindow::MenuClosed);
  }
}

void MainWindow::Act(HostAction action) {
  file_menu_->hide();
  view_menu_->hide();
  switch (action) {
    case HostAction::kOpen:
      return OpenFile();
    case HostAction::kCloseAll:
      return CloseAll();
    case HostAction::kRefresh:
      return RefreshActive();
    case HostAction::kNextChart:
      return area_->MoveInRing(1);
    case HostAction::kPreviousChart:
      return area_->MoveInRing(-1);
    case HostAction::kNone:
      return;
  }
}

void MainWindow::ShowMenu(HostMenu menu) {
  if (menu == HostMenu::kNone) return;
  const QMenu* const shown = menu == HostMenu::kFile ? file_menu_ : view_menu_;
  menuBar()->setActiveAction(shown->menuAction());
}

bool MainWindow::IsMenuShown() const { return file_menu_->isVisible() || view_menu_->isVisible(); }

ChartPane* MainWindow::ActiveChart() const { return area_->Active(); }

void MainWindow::OpenFile() { dialog_->Start(settings_.Folder()); }

void MainWindow::OpenChart(const SeriesRequest& request) {
  dialog_->Leave();
  AddChart(request);
}

void MainWindow::AddChart(const SeriesRequest& request) {
  settings_.SetFolder(ToQt(request.folder));
  auto* const pane = new ChartPane(source_, request, options_, area_);
  connect(pane, &ChartPane::OptionsChanged, this, &MainWindow::SetOptions);
  connect(pane, &ChartPane::FrameChanged, this, [this] { Changed("interval"); });
  area_->Add(pane);
  ShowHint();
  Changed("opened");
}

void MainWindow::OpenDirectly(const TypedChoice& choice) {
  const SeriesRequest request = RequestOf(choice, source_.List(choice.folder));
  for (ChartPane* const chart : area_->Charts()) {
    if (!chart->Document().Shows(request)) continue;
    area_->Activate(chart);
    return chart->RefreshNow();
  }
  AddChart(request);
  ActiveChart()->ExpectRefreshes();
}

bool MainWindow::RefreshFolder(const std::string& folder, const std::string& symbol,
                               const ChartPositions& positions) {
  bool any = false;
  for (ChartPane* const chart : area_->Charts()) {
    if (chart->Document().Folder() != folder) continue;
    any = true;
    if (chart->Document().Symbol() == symbol) chart->SetPositions(positions);
    chart->RefreshNow();
  }
  if (any) Changed("refreshed");
  return any;
}

void MainWindow::ShowPositions(const std::string& folder, const std::string& symbol,
                               const ChartPositions& positions) {
  for (ChartPane* const chart : area_->Charts()) {
    if (chart->Document().Folder() != folder || chart->Document().Symbol() != symbol) continue;
    chart->SetPositions(positions);
    chart->WindowMoved();
  }
}

void MainWindow::FollowTheme(bool dark) {
  velumar_dark_ = dark;
  ApplyTheme();
}

// "System" means the colours of Velumar's windows if they are known.
void MainWindow::ApplyTheme() {
  const bool follows = options_.theme == ChartTheme::kSystem && velumar_dark_;
  velumar::ApplyTheme(!follows         ? options_.theme
                      : *velumar_dark_ ? ChartTheme::kDark
                                       : ChartTheme::kLight);
}

void MainWindow::ShowHint() { area_->ShowHint(); }

void MainWindow::ShowOpening(const QString& symbol) { area_->ShowOpening(symbol); }

void MainWindow::CloseAll() {
  while (area_->Count() > 0) area_->Remove(area_->Charts().front());
  Changed("closed");
}

void MainWindow::CloseChart(ChartPane* chart) {
  if (chart == nullptr) return;
  area_->Remove(chart);
  Changed("closed");
}

void MainWindow::RefreshActive() {
  ChartPane* const chart = ActiveChart();
  if (chart == nullptr) return;
  chart->Refresh();
  Changed("refreshed");
}

void MainWindow::SetOptions(const ChartOptions& options) {
  const bool other_theme = options.theme != options_.theme;
  options_ = options;
  settings_.SetOptions(options);
  for (ChartPane* const chart : area_->Charts()) chart->SetOptions(options);
  if (other_theme) ApplyTheme();
  view_menu_->ShowOptions(options_);
}

void MainWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) area_->ApplyColours();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  settings_.SetGeometry(saveGeometry());
  event->accept();
  emit Closing();
}

void MainWindow::Changed(const char* event) {
  area_->ShowTitles();
  const ChartPane* const chart = ActiveChart();
  const ChartDocument* const document = chart == nullptr ? nullptr : &chart->Document();
  view_menu_->ShowChart(document);
  const QString title = ToQt(kChartTitle);
  setWindowTitle(chart == nullptr ? title : title + QStringLiteral(" - ") + chart->Title());
  if (!report_) return;
  const HostState host = {area_->Count(), area_->ActiveIndex(), FromQt(windowTitle())};
  report_(StateLine(event, host, document));
}

}  // namespace velumar
