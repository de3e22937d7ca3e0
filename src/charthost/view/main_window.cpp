#include "charthost/view/main_window.h"

#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMenuBar>
#include <QStackedWidget>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>
#include <chrono>
#include <utility>

#include "charthost/view/chart_pane.h"
#include "charthost/view/indicators_dialog.h"
#include "charthost/view/open_dialog.h"
#include "charthost/view/theme.h"
#include "charts/palette.h"
#include "charts/qt_text.h"
#include "platform/chart_program.h"

namespace velumar {

MainWindow::MainWindow(const SeriesSource& source, ChartSettings& settings, Report report)
    : source_(source),
      settings_(settings),
      report_(std::move(report)),
      options_(settings.Options()),
      problems_(settings.Problems()) {
  setWindowTitle(ToQt(kChartTitle));
  setMinimumSize(420, 320);
  setAttribute(Qt::WA_AlwaysShowToolTips);
  BuildCentre();
  dialog_ = new OpenDialog(source, this);
  connect(dialog_, &OpenDialog::Chosen, this, &MainWindow::OpenChart);
  BuildIndicatorsDialog();
  BuildFileMenu();
  BuildViewMenu();
  ShowOptions();
  ApplyTheme();
  ApplyColours();
  resize(1180, 760);
  restoreGeometry(settings.Geometry());
  Changed("ready");
}

void MainWindow::BuildIndicatorsDialog() {
  indicators_dialog_ = new IndicatorsDialog(this);
  connect(indicators_dialog_, &IndicatorsDialog::Changed, this, [this](const auto& indicators) {
    ChartOptions options = options_;
    options.indicators = indicators;
    SetOptions(options);
  });
  connect(indicators_dialog_, &IndicatorsDialog::SetsChanged, this,
          [this](const auto& sets) { settings_.SetSets(sets); });
}

void MainWindow::BuildCentre() {
  hint_ = new QLabel(this);
  ShowHint();
  hint_->setAlignment(Qt::AlignCenter);
  hint_->setWordWrap(true);
  hint_->setMargin(24);
  tabs_ = new QTabWidget(this);
  tabs_->setDocumentMode(true);
  tabs_->setTabsClosable(true);
  tabs_->setMovable(true);
  tabs_->setFocusPolicy(Qt::NoFocus);
  tabs_->tabBar()->setFocusPolicy(Qt::NoFocus);
  tabs_->tabBar()->setDrawBase(false);
  centre_ = new QStackedWidget(this);
  centre_->addWidget(hint_);
  centre_->addWidget(tabs_);
  setCentralWidget(centre_);
  connect(tabs_, &QTabWidget::tabCloseRequested, this, &MainWindow::CloseChart);
  connect(tabs_, &QTabWidget::currentChanged, this, &MainWindow::ChartActivated);
}

QMenu* MainWindow::AddMenu(const QString& title) {
  QMenu* const menu = menuBar()->addMenu(title);
  connect(menu, &QMenu::aboutToHide, this, &MainWindow::MenuClosed);
  return menu;
}

void MainWindow::BuildFileMenu() {
  file_menu_ = AddMenu(tr("&File"));
  file_menu_->addAction(tr("&Open..."), QKeySequence::Open, this, &MainWindow::OpenFile);
  file_menu_->addSeparator();
  file_menu_->addAction(tr("&Close chart"), QKeySequence(Qt::CTRL | Qt::Key_W), this,
                        [this] { CloseChart(tabs_->currentIndex()); });
  file_menu_->addAction(tr("Clos&e all charts"), this, &MainWindow::CloseAll);
  file_menu_->addSeparator();
  file_menu_->addAction(tr("E&xit"), QKeySequence(Qt::CTRL | Qt::Key_Q), this, &MainWindow::close);
}

template <typename T>
void MainWindow::AddChoice(QMenu& menu, T ChartOptions::*option,
                           std::initializer_list<std::pair<QString, T>> entries) {
  auto* const group = new QActionGroup(this);
  for (const auto& [text, value] : entries) {
    QAction* const action = menu.addAction(text, this, [this, option, value = value] {
      ChartOptions options = options_;
      options.*option = value;
      SetOptions(options);
    });
    action->setCheckable(true);
    group->addAction(action);
    option_views_.emplace_back(
        [this, action, option, value = value] { action->setChecked(options_.*option == value); });
  }
}

void MainWindow::BuildViewMenu() {
  view_menu_ = AddMenu(tr("&View"));
  view_menu_->addAction(tr("&Refresh"), QKeySequence(Qt::Key_F5), this, &MainWindow::RefreshActive);
  view_menu_->addSeparator();
  AddChoice(*view_menu_, &ChartOptions::style,
            {{tr("&Candles"), ChartStyle::kCandles},
             {tr("&Bars"), ChartStyle::kBars},
             {tr("&Line"), ChartStyle::kLine}});
  view_menu_->addSeparator();
  interval_menu_ = view_menu_->addMenu(tr("Int&erval"));
  interval_group_ = new QActionGroup(this);
  connect(interval_menu_, &QMenu::aboutToShow, this, &MainWindow::FillIntervalMenu);
  view_menu_->addSeparator();
  AddToggles();
  view_menu_->addSeparator();
  AddWindowActions();
  view_menu_->addSeparator();
  AddChoice(*view_menu_->addMenu(tr("&Theme")), &ChartOptions::theme,
            {{tr("&System"), ChartTheme::kSystem},
             {tr("&Light"), ChartTheme::kLight},
             {tr("&Dark"), ChartTheme::kDark}});
}

// ChartPlot handles the keys 1 to 9.
void MainWindow::FillIntervalMenu() {
  interval_menu_->clear();
  if (ActiveChart() == nullptr) return;
  const ChartDocument& chart = ActiveChart()->Document();
  int number = 0;
  for (const Frame frame : FramesOf(chart.Interval())) {
    ++number;
    QString text = ToQt(FrameTitle(frame, chart.Interval()));
    if (number <= 9) text += QStringLiteral("\t%1").arg(number);
    QAction* const action = interval_menu_->addAction(text, this, [this, frame] {
      if (ActiveChart() != nullptr) ActiveChart()->ShowFrame(frame);
    });
    action->setCheckable(true);
    interval_group_->addAction(action);
    action->setChecked(frame == chart.ShownFrame());
  }
}

void MainWindow::AddToggle(const std::function<QString()>& text,
                           const std::function<bool&(ChartOptions&)>& option) {
  QAction* const action = view_menu_->addAction(QString(), this, [this, option] {
    ChartOptions options = options_;
    option(options) = !option(options);
    SetOptions(options);
  });
  action->setCheckable(true);
  option_views_.emplace_back([this, action, text, option] {
    action->setText(text());
    action->setChecked(option(options_));
  });
}

void MainWindow::AddToggles() {
  AddToggle([] { return tr("&Volume"); }, [](ChartOptions& o) -> bool& { return o.volume; });
  AddToggle([] { return tr("Lo&g scale"); },
            [](ChartOptions& o) -> bool& { return o.logarithmic; });
  AddToggle([] { return tr("Or&ders and positions"); },
            [](ChartOptions& o) -> bool& { return o.positions; });
  view_menu_->addAction(tr("Indic&ators..."), QKeySequence(Qt::CTRL | Qt::Key_I), this, [this] {
    indicators_dialog_->Show(options_.indicators, settings_.Sets(), problems_);
  });
}

// ChartPlot handles the keys named in these entries.
void MainWindow::AddWindowActions() {
  const std::initializer_list<std::pair<QString, void (*)(ViewWindow&)>> entries = {
      {tr("Zoom &in\t+"), [](ViewWindow& window) { window.Zoom(0.8); }},
      {tr("Zoom o&ut\t-"), [](ViewWindow& window) { window.Zoom(1.25); }},
      {tr("&Whole series"), [](ViewWindow& window) { window.ShowAll(); }},
      {tr("&Newest bar\tEnd"), [](ViewWindow& window) { window.ShowNewest(); }}};
  for (const auto& [text, move] : entries) {
    view_menu_->addAction(text, this, [this, move = move] {
      if (ActiveChart() == nullptr) return;
      move(ActiveChart()->Window());
      ActiveChart()->WindowMoved();
    });
  }
}

void MainWindow::Act(HostAction action) {
  HideMenus();
  switch (action) {
    case HostAction::kOpen:
      return OpenFile();
    case HostAction::kCloseAll:
      return CloseAll();
    case HostAction::kRefresh:
      return RefreshActive();
    case HostAction::kNextChart:
      return MoveInRing(1);
    case HostAction::kPreviousChart:
      return MoveInRing(-1);
    case HostAction::kNone:
      return;
  }
}

void MainWindow::ShowMenu(HostMenu menu) {
  if (menu == HostMenu::kNone) return;
  QMenu* const shown = menu == HostMenu::kFile ? file_menu_ : view_menu_;
  menuBar()->setActiveAction(shown->menuAction());
}

void MainWindow::HideMenus() {
  for (QMenu* const menu : {file_menu_, view_menu_}) menu->hide();
}

bool MainWindow::IsMenuShown() const { return file_menu_->isVisible() || view_menu_->isVisible(); }

ChartPane* MainWindow::Chart(int index) const {
  return static_cast<ChartPane*>(tabs_->widget(index));
}

ChartPane* MainWindow::ActiveChart() const { return Chart(tabs_->currentIndex()); }

void MainWindow::OpenFile() { dialog_->Start(settings_.Folder()); }

void MainWindow::OpenChart(const SeriesRequest& request) {
  dialog_->Leave();
  AddChart(request);
}

void MainWindow::AddChart(const SeriesRequest& request) {
  settings_.SetFolder(ToQt(request.folder));
  auto* const pane = new ChartPane(source_, request, options_, tabs_);
  connect(pane, &ChartPane::OptionsChanged, this, &MainWindow::SetOptions);
  connect(pane, &ChartPane::FrameChanged, this, [this] { Changed("interval"); });
  {
    const QSignalBlocker blocker(tabs_);
    tabs_->setCurrentIndex(tabs_->addTab(pane, pane->Title()));
  }
  pane->setFocus();
  ShowHint();
  Changed("opened");
}

void MainWindow::OpenDirectly(const TypedChoice& choice) {
  const SeriesRequest request = RequestOf(choice, source_.List(choice.folder));
  for (int i = 0; i < tabs_->count(); ++i) {
    if (!Chart(i)->Document().Shows(request)) continue;
    tabs_->setCurrentIndex(i);
    return Chart(i)->RefreshNow();
  }
  AddChart(request);
  ActiveChart()->ExpectRefreshes();
}

bool MainWindow::RefreshFolder(const std::string& folder, const std::string& symbol,
                               const ChartPositions& positions) {
  bool any = false;
  for (int i = 0; i < tabs_->count(); ++i) {
    const ChartDocument& chart = Chart(i)->Document();
    if (chart.Folder() != folder) continue;
    any = true;
    if (chart.Symbol() == symbol) Chart(i)->SetPositions(positions);
    Chart(i)->RefreshNow();
  }
  if (any) Changed("refreshed");
  return any;
}

void MainWindow::ShowPositions(const std::string& folder, const std::string& symbol,
                               const ChartPositions& positions) {
  for (int i = 0; i < tabs_->count(); ++i) {
    const ChartDocument& chart = Chart(i)->Document();
    if (chart.Folder() != folder || chart.Symbol() != symbol) continue;
    Chart(i)->SetPositions(positions);
    Chart(i)->WindowMoved();
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

void MainWindow::ShowHint() {
  hint_->setText(
      tr("<p style='font-size:x-large'>No chart is open</p><p>Open one: press <b>Alt+F</b>, then "
         "<b>O</b>.<br>Type or browse to a folder with market data, choose a security and press "
         "Enter.</p>"));
}

void MainWindow::ShowOpening(const QString& symbol) {
  hint_->setText(QStringLiteral("<p style='font-size:x-large'>%1</p>")
                     .arg(tr("Opening %1 ...").arg(symbol.toHtmlEscaped())));
  constexpr std::chrono::seconds kPatience{15};  // Velumar may have ended in the meantime
  QTimer::singleShot(kPatience, this, &MainWindow::ShowHint);
}

void MainWindow::CloseAll() {
  while (tabs_->count() > 0) RemoveChart(0);
  Changed("closed");
}

void MainWindow::CloseChart(int index) {
  if (Chart(index) == nullptr) return;
  RemoveChart(index);
  if (ActiveChart() != nullptr) ActiveChart()->setFocus();
  Changed("closed");
}

void MainWindow::RemoveChart(int index) {
  const QSignalBlocker blocker(tabs_);
  QWidget* const pane = tabs_->widget(index);
  tabs_->removeTab(index);
  pane->deleteLater();
}

void MainWindow::RefreshActive() {
  ChartPane* const chart = ActiveChart();
  if (chart == nullptr) return;
  chart->Refresh();
  Changed("refreshed");
}

void MainWindow::MoveInRing(int step) {
  const int count = tabs_->count();
  if (count < 2) return;
  tabs_->setCurrentIndex((tabs_->currentIndex() + step + count) % count);
}

void MainWindow::ChartActivated() {
  if (ActiveChart() == nullptr) return;
  ActiveChart()->setFocus();
  Changed("activated");
}

void MainWindow::SetOptions(const ChartOptions& options) {
  const bool other_theme = options.theme != options_.theme;
  options_ = options;
  settings_.SetOptions(options);
  for (int i = 0; i < tabs_->count(); ++i) Chart(i)->SetOptions(options);
  if (other_theme) ApplyTheme();
  ShowOptions();
}

void MainWindow::ShowOptions() {
  for (const auto& show : option_views_) show();
}

void MainWindow::ApplyColours() {
  StyleTabs();
  for (int i = 0; i < tabs_->count(); ++i) Chart(i)->ApplyColours();
}

// The active tab has the colour of the chart below it and a line in the highlight colour.
void MainWindow::StyleTabs() {
  const Palette& colours = Palette::Following(palette());
  tabs_->setStyleSheet(
      QStringLiteral("QTabBar::tab { padding: 6px 12px; border: 0; border-top: 2px solid "
                     "transparent; color: %1; }"
                     "QTabBar::tab:selected { background: %2; color: %3; border-top-color: %4; }"
                     "QTabBar::tab:hover:!selected { color: %3; }")
          .arg(colours.muted.name(), colours.field.name(), colours.text.name(),
               palette().color(QPalette::Highlight).name()));
}

void MainWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) ApplyColours();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  settings_.SetGeometry(saveGeometry());
  event->accept();
  emit Closing();
}

void MainWindow::Changed(const char* event) {
  for (int i = 0; i < tabs_->count(); ++i) tabs_->setTabText(i, Chart(i)->Title());
  const ChartPane* const chart = ActiveChart();
  interval_menu_->menuAction()->setEnabled(chart != nullptr);
  centre_->setCurrentIndex(chart == nullptr ? 0 : 1);
  const QString title = ToQt(kChartTitle);
  setWindowTitle(chart == nullptr ? title : title + QStringLiteral(" - ") + chart->Title());
  if (!report_) return;
  const HostState host = {tabs_->count(), tabs_->currentIndex(), FromQt(windowTitle())};
  report_(StateLine(event, host, chart == nullptr ? nullptr : &chart->Document()));
}

}  // namespace velumar
