#include "charthost/view/chart_area.h"

#include <QGridLayout>
#include <QLabel>
#include <QScopedValueRollback>
#include <QTabBar>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <chrono>

#include "charthost/view/chart_pane.h"
#include "charthost/view/chart_plot.h"
#include "charts/palette.h"

namespace velumar {

ChartArea::ChartArea(QWidget* parent) : QStackedWidget(parent) {
  hint_ = new QLabel(this);
  ShowHint();
  hint_->setAlignment(Qt::AlignCenter);
  hint_->setWordWrap(true);
  hint_->setMargin(24);
  auto* const charts = new QWidget(this);
  tabs_ = new QTabBar(charts);
  tabs_->setAccessibleName(tr("Charts"));
  tabs_->setDocumentMode(true);
  tabs_->setExpanding(false);
  tabs_->setTabsClosable(true);
  tabs_->setMovable(true);
  tabs_->setFocusPolicy(Qt::NoFocus);
  tabs_->setDrawBase(false);
  auto* const column = new QVBoxLayout(charts);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(tabs_);
  grid_ = new QGridLayout;
  grid_->setSpacing(0);
  column->addLayout(grid_, 1);
  StyleTabs();
  addWidget(hint_);
  addWidget(charts);
  connect(tabs_, &QTabBar::tabCloseRequested, this,
          [this](int index) { emit CloseRequested(charts_[static_cast<std::size_t>(index)]); });
  connect(tabs_, &QTabBar::currentChanged, this, [this] {
    Arrange();
    emit Activated();
  });
  connect(tabs_, &QTabBar::tabMoved, this, [this](int from, int to) {
    std::swap(charts_[static_cast<std::size_t>(from)], charts_[static_cast<std::size_t>(to)]);
    Arrange();
    emit Moved();
  });
}

int ChartArea::ActiveIndex() const { return tabs_->currentIndex(); }

ChartPane* ChartArea::Active() const {
  return charts_.empty() ? nullptr : charts_[static_cast<std::size_t>(ActiveIndex())];
}

void ChartArea::Add(ChartPane* chart) {
  const QSignalBlocker blocker(tabs_);
  connect(&chart->Plot(), &ChartPlot::FocusGained, this, [this, chart] {
    if (!arranging_) Activate(chart);
  });
  connect(&chart->Plot(), &ChartPlot::PointerMoved, this, [this, chart](const auto& moment) {
    for (ChartPane* const other : charts_) {
      if (other != chart) other->Plot().FollowPointer(moment);
    }
  });
  charts_.push_back(chart);
  tabs_->setCurrentIndex(tabs_->addTab(chart->Title()));
  Arrange();
}

void ChartArea::Remove(ChartPane* chart) {
  const QSignalBlocker blocker(tabs_);
  const QScopedValueRollback<bool> arranging(arranging_, true);
  const auto found = std::ranges::find(charts_, chart);
  const auto index = static_cast<int>(found - charts_.begin());
  charts_.erase(found);
  tabs_->removeTab(index);
  grid_->removeWidget(chart);
  chart->hide();
  chart->deleteLater();
  Arrange();
}

void ChartArea::Activate(ChartPane* chart) {
  tabs_->setCurrentIndex(static_cast<int>(std::ranges::find(charts_, chart) - charts_.begin()));
}

void ChartArea::MoveInRing(int step) {
  if (Count() < 2) return;
  tabs_->setCurrentIndex((ActiveIndex() + step + Count()) % Count());
}

void ChartArea::SetTiling(Tiling tiling) {
  tiling_ = tiling;
  Arrange();
}

// The last charts fill all tiles, so that a series that was opened to compare isn't alone.
bool ChartArea::HasTile(const ChartPane* chart) const {
  const int tiles = TileCount(tiling_);
  const int first = std::min(ActiveIndex() / tiles * tiles, std::max(Count() - tiles, 0));
  const auto index = static_cast<int>(std::ranges::find(charts_, chart) - charts_.begin());
  return index >= first && index < first + tiles;
}

// The third of three charts has the whole lower half.
void ChartArea::PlaceTile(ChartPane* chart, int tile, int count) {
  const int columns = tiling_ == Tiling::kStacked ? 1 : 2;
  const int row = tile / columns;
  const bool alone = tile % columns == 0 && tile + 1 == count;
  grid_->addWidget(chart, row, tile % columns, 1, alone ? columns : 1);
  grid_->setRowStretch(row, 1);
  grid_->setColumnStretch(tile % columns, 1);
  chart->ShowAsTile(count > 1, chart == Active());
  chart->show();
}

void ChartArea::Arrange() {
  const QScopedValueRollback<bool> arranging(arranging_, true);
  setCurrentIndex(charts_.empty() ? 0 : 1);
  std::vector<ChartPane*> shown;
  for (ChartPane* const chart : charts_) {
    grid_->removeWidget(chart);
    if (HasTile(chart)) {
      shown.push_back(chart);
    } else {
      chart->hide();
    }
  }
  for (int i = 0; i < 2; ++i) {
    grid_->setRowStretch(i, 0);
    grid_->setColumnStretch(i, 0);
  }
  for (std::size_t i = 0; i < shown.size(); ++i) {
    PlaceTile(shown[i], static_cast<int>(i), static_cast<int>(shown.size()));
  }
  if (Active() != nullptr) Active()->setFocus();
}

void ChartArea::ShowHint() {
  hint_->setText(
      tr("<p style='font-size:x-large'>No chart is open</p><p>Open one: press <b>Alt+F</b>, then "
         "<b>O</b>.<br>Type or browse to a folder with market data, choose a security and press "
         "Enter.</p>"));
}

void ChartArea::ShowOpening(const QString& symbol) {
  hint_->setText(QStringLiteral("<p style='font-size:x-large'>%1</p>")
                     .arg(tr("Opening %1 ...").arg(symbol.toHtmlEscaped())));
  constexpr std::chrono::seconds kPatience{15};  // Velumar may have ended in the meantime
  QTimer::singleShot(kPatience, this, &ChartArea::ShowHint);
}

void ChartArea::ShowTitles() {
  for (int i = 0; i < Count(); ++i) {
    tabs_->setTabText(i, charts_[static_cast<std::size_t>(i)]->Title());
  }
}

// The active tab has the colour of the chart below it and a line in the highlight colour.
void ChartArea::StyleTabs() {
  const Palette& colours = Palette::Following(palette());
  tabs_->setStyleSheet(
      QStringLiteral("QTabBar::tab { padding: 6px 12px; border: 0; border-top: 2px solid "
                     "transparent; color: %1; }"
                     "QTabBar::tab:selected { background: %2; color: %3; border-top-color: %4; }"
                     "QTabBar::tab:hover:!selected { color: %3; }")
          .arg(colours.muted.name(), colours.field.name(), colours.text.name(),
               palette().color(QPalette::Highlight).name()));
}

void ChartArea::changeEvent(QEvent* event) {
  QStackedWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) StyleTabs();
}

}  // namespace velumar
