#include "charthost/view/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QToolBar>
#include <algorithm>
#include <utility>

#include "charthost/view/chart_area.h"
#include "charthost/view/chart_pane.h"
#include "charthost/view/chart_plot.h"
#include "charthost/view/draw_menu.h"
#include "charthost/view/drawing_desk.h"
#include "charthost/view/drawings_dialog.h"
#include "charthost/view/indicators_dialog.h"
#include "charthost/view/open_charts.h"
#include "charthost/view/open_dialog.h"
#include "charthost/view/picture_dialog.h"
#include "charthost/view/theme.h"
#include "charthost/view/view_menu.h"
#include "charts/qt_text.h"
#include "platform/chart_program.h"

namespace velumar {

MainWindow::MainWindow(const SeriesSource& source, ChartSettings& settings,
                       const std::filesystem::path& drawings, Report report)
    : source_(source),
      settings_(settings),
      report_(std::move(report)),
      options_(settings.Options()),
      problems_(settings.Problems()),
      area_(new ChartArea(this)),
      desk_(new DrawingDesk(drawings, this)),
      charts_(new OpenCharts(source, settings, options_, *desk_, *area_, this)) {
  setWindowTitle(ToQt(kChartTitle));
  setMinimumSize(420, 320);
  setAttribute(Qt::WA_AlwaysShowToolTips);
  setCentralWidget(area_);
  connect(area_, &ChartArea::CloseRequested, this, &MainWindow::CloseChart);
  connect(area_, &ChartArea::Activated, this, [this] { Changed("activated"); });
  connect(area_, &ChartArea::Moved, charts_, &OpenCharts::SaveLayout);
  connect(charts_, &OpenCharts::OptionsChanged, this, &MainWindow::SetOptions);
  connect(charts_, &OpenCharts::Changed, this, &MainWindow::Changed);
  BuildDialogs();
  BuildMenus();
  BuildDrawing();
  view_menu_->ShowOptions(options_);
  area_->SetTiling(settings.Layout().tiling);
  view_menu_->ShowTiling(area_->ShownTiling());
  ApplyTheme();
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
  file_menu_->addAction(tr("&New chart of the same series"), QKeySequence::New, this, [this] {
    if (ActiveChart() == nullptr) return;
    charts_->OpenCopy();
    Changed("opened");
  });
  file_menu_->addSeparator();
  file_menu_->addAction(tr("Co&py picture"), QKeySequence::Copy, this, [this] {
    if (ActiveChart() != nullptr) CopyPicture(*ActiveChart());
  });
  file_menu_->addAction(tr("&Save picture..."), QKeySequence::Save, this, [this] {
    if (ActiveChart() != nullptr) AskForPictureFile(*ActiveChart(), *this);
  });
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
  connect(view_menu_, &ViewMenu::TilingChosen, this, [this](Tiling tiling) {
    area_->SetTiling(tiling);
    charts_->FillTiles();
    view_menu_->ShowTiling(tiling);
    charts_->SaveLayout();
  });
  connect(view_menu_, &ViewMenu::CompareChosen, this, [this] {
    if (ActiveChart() != nullptr) {
      dialog_->StartCompare(ToQt(ActiveChart()->Document().Folder()));
    }
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

void MainWindow::BuildDrawing() {
  draw_menu_ = new DrawMenu(tr("&Draw"), *desk_, this);
  menuBar()->addMenu(draw_menu_);
  connect(draw_menu_, &QMenu::aboutToHide, this, &MainWindow::MenuClosed);
  drawing_bar_ = draw_menu_->MakeToolbar(this);
  addToolBar(Qt::LeftToolBarArea, drawing_bar_);
  drawing_bar_->setVisible(options_.drawing_bar);
  setContextMenuPolicy(Qt::PreventContextMenu);  // would hide the toolbar without View's mark
  drawings_dialog_ = new DrawingsDialog(this);
  connect(draw_menu_, &DrawMenu::ListChosen, this, [this] {
    drawings_dialog_->show();
    drawings_dialog_->raise();
    drawings_dialog_->activateWindow();
  });
}

void MainWindow::Act(HostAction action) {
  file_menu_->hide();
  view_menu_->hide();
  draw_menu_->hide();
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
  charts_->Open(request);
  ShowHint();
  Changed("opened");
}

void MainWindow::OpenDirectly(const TypedChoice& choice) {
  const SeriesRequest request = RequestOf(choice, source_.List(choice.folder));
  std::vector<ChartPane*> open;
  std::ranges::copy_if(area_->Charts(), std::back_inserter(open),
                       [&](const ChartPane* chart) { return chart->Document().Shows(request); });
  if (open.empty()) {
    AddChart(request);
    for (ChartPane* const chart : area_->Charts()) chart->ExpectRefreshes();
    return;
  }
  if (std::ranges::find(open, ActiveChart()) == open.end()) area_->Activate(open.front());
  for (ChartPane* const chart : open) chart->RefreshNow();
  ActiveChart()->Plot().repaint();
}

void MainWindow::OfferCompare(bool offered) { view_menu_->OfferCompare(offered); }

bool MainWindow::RefreshFolder(const std::string& folder, const std::string& symbol,
                               const ChartPositions& positions) {
  if (!charts_->Refresh(folder, symbol, positions)) return false;
  ActiveChart()->Plot().repaint();  // and everything else that has changed in the window
  Changed("refreshed");
  return true;
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
  // The toolkit does not always report a second change to a widget that was moved to a layout.
  for (ChartPane* const chart : area_->Charts()) {
    QEvent changed(QEvent::PaletteChange);
    QCoreApplication::sendEvent(chart, &changed);
  }
}

void MainWindow::ShowHint() { area_->ShowHint(); }

void MainWindow::ShowOpening(const QString& symbol) {
  charts_->ForgetRun();
  area_->ShowOpening(symbol);
}

void MainWindow::CloseAll() {
  charts_->CloseAll();
  Changed("closed");
}

void MainWindow::CloseChart(ChartPane* chart) {
  if (chart == nullptr) return;
  charts_->Close(chart);
  Changed("closed");
}

// A run that is driven by keys knows nothing of the other charts that show its bars.
void MainWindow::RefreshActive() {
  const ChartPane* const active = ActiveChart();
  if (active == nullptr) return;
  for (ChartPane* const chart : area_->Charts()) {
    if (chart->Document().Folder() == active->Document().Folder()) chart->Refresh();
  }
  Changed("refreshed");
}

void MainWindow::SetOptions(const ChartOptions& options) {
  const bool other_theme = options.theme != options_.theme;
  options_ = options;
  settings_.SetOptions(options);
  for (ChartPane* const chart : area_->Charts()) chart->SetOptions(options);
  if (other_theme) ApplyTheme();
  view_menu_->ShowOptions(options_);
  drawing_bar_->setVisible(options_.drawing_bar);
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
  DrawingTool* const drawings = chart == nullptr ? nullptr : chart->Drawings();
  draw_menu_->ShowChart(drawings);
  drawings_dialog_->ShowChart(drawings, chart == nullptr ? QString() : chart->Title());
  const QString title = ToQt(kChartTitle);
  setWindowTitle(chart == nullptr ? title : title + QStringLiteral(" - ") + chart->Title());
  if (!report_) return;
  const HostState host = {area_->Count(), area_->ActiveIndex(), FromQt(windowTitle())};
  report_(StateLine(event, host, document));
}

}  // namespace velumar
