#include "charthost/view/view_menu.h"

#include <QActionGroup>
#include <utility>

#include "charts/qt_text.h"

namespace velumar {

ViewMenu::ViewMenu(const QString& title, QWidget* parent) : QMenu(title, parent) {
  addAction(tr("&Refresh"), QKeySequence(Qt::Key_F5), this, &ViewMenu::RefreshChosen);
  addSeparator();
  AddChoice(*addMenu(tr("&Bars as")), &ChartOptions::style,
            {{tr("&Candles"), ChartStyle::kCandles},
             {tr("&Hollow candles"), ChartStyle::kHollow},
             {tr("Heikin-&Ashi candles"), ChartStyle::kHeikinAshi},
             {tr("&Bars"), ChartStyle::kBars},
             {tr("&Line"), ChartStyle::kLine},
             {tr("A&rea"), ChartStyle::kArea}});
  intervals_ = addMenu(tr("Int&erval"));
  interval_group_ = new QActionGroup(this);
  connect(intervals_, &QMenu::aboutToShow, this, &ViewMenu::FillIntervals);
  AddTilings();
  compare_ = addAction(tr("C&ompare..."), QKeySequence(Qt::CTRL | Qt::Key_K), this,
                       &ViewMenu::CompareChosen);
  addSeparator();
  AddToggle(*this, tr("&Volume"), &ChartOptions::volume);
  AddChoice(*addMenu(tr("&Scale")), &ChartOptions::scale,
            {{tr("&Linear"), PriceScale::kLinear},
             {tr("Lo&garithmic"), PriceScale::kLogarithmic},
             {tr("&Percent"), PriceScale::kPercent}});
  AddToggle(*this, tr("&Price axis at the left"), &ChartOptions::axis_at_left);
  AddToggle(*this, tr("Or&ders and positions"), &ChartOptions::positions);
  AddToggle(*this, tr("Dra&wing toolbar"), &ChartOptions::drawing_bar);
  addAction(tr("Indic&ators..."), QKeySequence(Qt::CTRL | Qt::Key_I), this,
            &ViewMenu::IndicatorsChosen);
  addSeparator();
  AddMoves();
  addSeparator();
  QMenu* const theme = addMenu(tr("T&heme"));
  AddChoice(*theme, &ChartOptions::theme,
            {{tr("&System"), ChartTheme::kSystem},
             {tr("&Light"), ChartTheme::kLight},
             {tr("&Dark"), ChartTheme::kDark}});
  theme->addSeparator();
  AddToggle(*theme, tr("&Colour-blind safe"), &ChartOptions::safe_colours);
}

template <typename T>
void ViewMenu::AddChoice(QMenu& menu, T ChartOptions::*option,
                         std::initializer_list<std::pair<QString, T>> entries) {
  auto* const group = new QActionGroup(this);
  for (const auto& [text, value] : entries) {
    QAction* const action = menu.addAction(text, this, [this, option, value = value] {
      ChartOptions options = options_;
      options.*option = value;
      emit OptionsChosen(options);
    });
    action->setCheckable(true);
    group->addAction(action);
    check_marks_.emplace_back(
        [this, action, option, value = value] { action->setChecked(options_.*option == value); });
  }
}

void ViewMenu::AddToggle(QMenu& menu, const QString& text, bool ChartOptions::*option) {
  QAction* const action = menu.addAction(text, this, [this, option] {
    ChartOptions options = options_;
    options.*option = !(options.*option);
    emit OptionsChosen(options);
  });
  action->setCheckable(true);
  check_marks_.emplace_back([this, action, option] { action->setChecked(options_.*option); });
}

void ViewMenu::AddTilings() {
  QMenu* const menu = addMenu(tr("&Tile"));
  tilings_ = new QActionGroup(this);
  const std::initializer_list<std::pair<QString, Tiling>> entries = {
      {tr("&One at a time"), Tiling::kTabs},
      {tr("2 &side by side"), Tiling::kSideBySide},
      {tr("2 s&tacked"), Tiling::kStacked},
      {tr("&4"), Tiling::kFour}};
  for (const auto& [text, tiling] : entries) {
    QAction* const action =
        menu->addAction(text, this, [this, tiling = tiling] { emit TilingChosen(tiling); });
    action->setCheckable(true);
    tilings_->addAction(action);
  }
}

// ChartPlot handles the keys named in these entries.
void ViewMenu::AddMoves() {
  const std::initializer_list<std::pair<QString, WindowMove>> entries = {
      {tr("Zoom &in\t+"), [](ViewWindow& window) { window.Zoom(0.8); }},
      {tr("Zoom o&ut\t-"), [](ViewWindow& window) { window.Zoom(1.25); }},
      {tr("&Fit whole series\t0"), [](ViewWindow& window) { window.ShowAll(); }},
      {tr("&Newest bar\tEnd"), [](ViewWindow& window) { window.ShowNewest(); }}};
  for (const auto& [text, move] : entries) {
    addAction(text, this, [this, move = move] { emit MoveChosen(move); });
  }
}

// ChartPlot handles the keys 1 to 9.
void ViewMenu::FillIntervals() {
  intervals_->clear();
  if (chart_ == nullptr) return;
  int number = 0;
  for (const Frame frame : FramesOf(chart_->Interval())) {
    ++number;
    QString text = ToQt(FrameTitle(frame, chart_->Interval()));
    if (number <= 9) text += QStringLiteral("\t%1").arg(number);
    QAction* const action =
        intervals_->addAction(text, this, [this, frame] { emit FrameChosen(frame); });
    action->setCheckable(true);
    interval_group_->addAction(action);
    action->setChecked(frame == chart_->ShownFrame());
  }
}

void ViewMenu::ShowOptions(const ChartOptions& options) {
  options_ = options;
  for (const auto& show : check_marks_) show();
}

void ViewMenu::ShowTiling(Tiling tiling) {
  tilings_->actions()[static_cast<int>(tiling)]->setChecked(true);
}

void ViewMenu::ShowChart(const ChartDocument* chart) {
  chart_ = chart;
  intervals_->menuAction()->setEnabled(chart != nullptr);
  compare_->setEnabled(chart != nullptr && offers_compare_);
}

void ViewMenu::OfferCompare(bool offered) {
  offers_compare_ = offered;
  compare_->setText(offered ? tr("C&ompare...") : tr("C&ompare (not in a blind run)"));
  compare_->setEnabled(chart_ != nullptr && offered);
}

}  // namespace velumar
