#include "charthost/view/chart_plot.h"

#include <cmath>

#include "charthost/bar_text.h"
#include "charthost/view/bar_plottables.h"
#include "charthost/view/indicator_plots.h"
#include "charthost/view/position_marks.h"
#include "charts/qt_text.h"
#include "charts/value_ticker.h"

namespace velumar {
namespace {

constexpr int kLeastMarkedPixels = 6;

// The marked area has the full height, since only the bars are zoomed.
class MarkedBars : public QCPSelectionRect {
 public:
  MarkedBars(BarPlot* plot, const std::function<QRect()>& area)
      : QCPSelectionRect(plot), plot_(*plot), area_(area) {}

 protected:
  void draw(QCPPainter* painter) override {
    if (!isActive()) return;
    QColor fill = plot_.Colours().line;
    fill.setAlpha(48);
    QRect marked = rect().normalized();
    const QRect area = area_();
    marked.setTop(area.top());
    marked.setBottom(area.bottom());
    painter->fillRect(marked & area, fill);
  }

 private:
  const BarPlot& plot_;
  std::function<QRect()> area_;
};

QCPGraph* AddLine(QCPAxis* bars, QCPAxis* values) {
  auto* const line = new QCPGraph(bars, values);
  line->setSelectable(QCP::stNone);
  return line;
}

QPen LinePen(const QColor& colour) {
  return {colour, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

}  // namespace

ChartPlot::ChartPlot(ChartModel& model, QWidget* parent) : BarPlot(parent), model_(model) {
  plotLayout()->setRowSpacing(6);
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::CrossCursor);
  setPlottingHint(QCP::phFastPolylines);  // a line that zigzags over the pane costs a fifth
  margins_ = new QCPMarginGroup(this);
  prices_ = AddPane();
  volumes_ = AddPane();
  QCPAxis* const prices = prices_->axis(QCPAxis::atRight);
  prices->setTicker(QSharedPointer<ValueTicker>::create(*prices, 52, [this](double value, double) {
    return ToQt(PriceText(value, model_.Series().decimals));
  }));
  QCPAxis* const volumes = volumes_->axis(QCPAxis::atRight);
  volumes->setTicker(QSharedPointer<ValueTicker>::create(
      *volumes, 34, [](double value, double) { return ToQt(ShortVolumeText(value)); }));
  AddPlottables();
  indicators_ = std::make_unique<IndicatorPlots>(
      model_, IndicatorPlots::Surroundings{this, prices_, volumes_, PointerLayer(),
                                           [this] { return AddPane(); }});
  AddLastPrice();
  positions_ = std::make_unique<PositionMarks>(*this, *prices_, BarAxis());
  value_tag_ = AddPointerText();
  value_tag_->setPositionAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  date_tag_ = AddPointerText();
  date_tag_->setPositionAlignment(Qt::AlignHCenter | Qt::AlignTop);
  setSelectionRect(new MarkedBars(this, [this] { return PlotArea(); }));
  selectionRect()->setLayer(QStringLiteral("overlay"));
  connect(selectionRect(), &QCPSelectionRect::accepted, this, &ChartPlot::ZoomToMarked);
  connect(this, &QCustomPlot::beforeReplot, this, &ChartPlot::BeforeReplot);
  connect(this, &BarPlot::SpanMoved, this, [this] {
    model_.Window().ShowBetween(BarAxis().range().lower, BarAxis().range().upper);
  });
  connect(this, &QCustomPlot::mouseRelease, this, [this] { setCursor(Qt::CrossCursor); });
  connect(this, &QCustomPlot::mouseDoubleClick, this, [this] {
    model_.Window().Reset(model_.Series().size());
    ModelChanged();
  });
  ModelChanged();
}

ChartPlot::~ChartPlot() = default;

QCPAxisRect* ChartPlot::AddPane() {
  QCPAxisRect* const rect = AddRect(plotLayout()->rowCount(), QCPAxis::atRight);
  rect->setMinimumMargins(QMargins(1, 1, 48, 1));
  rect->setMarginGroup(QCP::msRight, margins_);
  QCPAxis* const bars = rect->axis(QCPAxis::atBottom);
  if (!dates_) dates_ = QSharedPointer<BarDateTicker>::create(*bars, model_);
  bars->setTicker(dates_);
  new StrongGrid(*this, *rect, *dates_);
  return rect;
}

void ChartPlot::AddPlottables() {
  QCPAxis* const prices = prices_->axis(QCPAxis::atRight);
  bars_ = new PriceBars(&BarAxis(), prices, true);
  unfinished_ = new PriceBars(&BarAxis(), prices, false);
  line_ = AddLine(&BarAxis(), prices);
  for (QCPBars** volume : {&up_volume_, &down_volume_}) {
    *volume = new QCPBars(volumes_->axis(QCPAxis::atBottom), volumes_->axis(QCPAxis::atRight));
    (*volume)->setAntialiased(false);
    (*volume)->setSelectable(QCP::stNone);
    (*volume)->setWidthType(QCPBars::wtAbsolute);
  }
}

void ChartPlot::AddLastPrice() {
  last_line_ = new QCPItemLine(this);
  last_tag_ = new QCPItemText(this);
  last_tag_->setClipToAxisRect(false);
  last_tag_->setPadding(QMargins(5, 1, 5, 1));
  last_tag_->setPositionAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  for (QCPItemPosition* const place : {last_line_->start, last_line_->end, last_tag_->position}) {
    place->setAxisRect(prices_);
    place->setAxes(&BarAxis(), prices_->axis(QCPAxis::atRight));
    place->setTypeX(QCPItemPosition::ptAxisRectRatio);
    place->setTypeY(QCPItemPosition::ptPlotCoords);
  }
  last_line_->setAntialiased(false);
  last_line_->setLayer(QStringLiteral("axes"));
  last_tag_->setLayer(QStringLiteral("axes"));
}

void ChartPlot::SetColours(const Palette& colours) {
  BarPlot::SetColours(colours);
  bars_->SetColours(colours);
  unfinished_->SetColours(colours);
  line_->setPen(LinePen(colours.line));
  up_volume_->setPen(BodyPen(colours.up_volume));
  up_volume_->setBrush(colours.up_volume);
  down_volume_->setPen(BodyPen(colours.down_volume));
  down_volume_->setBrush(colours.down_volume);
  StyleTag(*value_tag_, colours.tag, colours.on_tag);
  StyleTag(*date_tag_, colours.tag, colours.on_tag);
  indicators_->SetColours(colours);
  positions_->SetColours(colours);
  ModelChanged();
}

void ChartPlot::SetPositions(const ChartPositions& positions) { positions_->Set(positions); }

void ChartPlot::StyleTag(QCPItemText& tag, const QColor& background, const QColor& text) {
  tag.setFont(font());
  tag.setBrush(background);
  tag.setColor(text);
}

void ChartPlot::ModelChanged(RefreshPriority when) {
  if (isVisible()) replot(when);
}

void ChartPlot::showEvent(QShowEvent* event) {
  BarPlot::showEvent(event);
  ModelChanged();
}

std::vector<QCPAxisRect*> ChartPlot::WantedPanes() const {
  std::vector<QCPAxisRect*> panes = {prices_};
  if (model_.ShowsVolume()) panes.push_back(volumes_);
  for (QCPAxisRect* const pane : indicators_->Panes()) panes.push_back(pane);
  return panes;
}

// The lowest pane shows the dates.
void ChartPlot::ArrangePanes() {
  indicators_->Arrange();
  std::vector<QCPAxisRect*> wanted = WantedPanes();
  if (wanted != panes_ || plotLayout()->elementCount() != static_cast<int>(wanted.size())) {
    panes_ = std::move(wanted);
    for (QCPAxisRect* const rect : Rects()) {
      if (rect->layout() != nullptr) plotLayout()->take(rect);
    }
    plotLayout()->simplify();
    for (std::size_t i = 0; i < panes_.size(); ++i) {
      plotLayout()->addElement(static_cast<int>(i), 0, panes_[i]);
      panes_[i]->axis(QCPAxis::atBottom)->setTickLabels(i + 1 == panes_.size());
    }
    volumes_->setVisible(model_.ShowsVolume());
  }
  QList<double> heights = {100};
  if (model_.ShowsVolume()) heights.append(model_.Options().volume_height);
  for (std::size_t i = 0; i < indicators_->Panes().size(); ++i) {
    heights.append(indicators_->Of(i).choice.height);
  }
  plotLayout()->setRowStretchFactors(heights);
}

void ChartPlot::BeforeReplot() {
  constexpr double kVolumeRoom = 1.12;
  ArrangePanes();
  dates_->Forget();
  const int width = prices_->width() > 0 ? prices_->width() : viewport().width();
  model_.Layout(width);
  ShowBars({model_.Window().First(), model_.Window().Last()});
  QCPAxis* const prices = prices_->axis(QCPAxis::atRight);
  prices->setScaleType(model_.Logarithmic() ? QCPAxis::stLogarithmic : QCPAxis::stLinear);
  prices->setRange(model_.Prices().lower, model_.Prices().upper);
  const double highest = model_.HighestVolume();
  volumes_->axis(QCPAxis::atRight)->setRange(0, highest > 0 ? highest * kVolumeRoom : 1);
  const bool empty = model_.Series().size() == 0;
  prices->setTickLabels(!empty);
  prices->setTicks(!empty);
  prices->grid()->setVisible(!empty);
  indicators_->SetRanges();
  LayOut(viewport().size());
  if (prices_->width() != width) model_.Layout(prices_->width());
  FillPlottables();
  indicators_->ShowLegends(ShownBar());
  PlacePointer();
}

void ChartPlot::FillPlottables() {
  const bool as_line = model_.Options().style == ChartStyle::kLine;
  line_->setVisible(as_line);
  for (PriceBars* const bars : {bars_, unfinished_}) {
    bars->setVisible(!as_line);
    bars->Fill(model_);
  }
  QVector<QCPGraphData> line;
  QVector<QCPBarsData> rising;
  QVector<QCPBarsData> falling;
  for (const BarColumn& column : model_.Columns()) {
    if (as_line) line.append({column.place, column.close});
    QVector<QCPBarsData>& volumes = column.close >= column.open ? rising : falling;
    if (column.volume > 0) {
      volumes.append({SnappedPlace(BarAxis(), column.place), column.volume});
    }
  }
  line_->data()->set(line, true);
  up_volume_->data()->set(rising, true);
  down_volume_->data()->set(falling, true);
  for (QCPBars* const volume : {up_volume_, down_volume_}) {
    volume->setWidth(2 * BodyReach(model_));
  }
  indicators_->Fill();
  ShowLastPrice();
  positions_->Show(model_);
}

void ChartPlot::ShowLastPrice() {
  const BarSeries& series = model_.Series();
  const int count = series.size();
  const bool shown =
      count > 0 && prices_->axis(QCPAxis::atRight)->range().contains(series.closes.back());
  last_line_->setVisible(shown);
  last_tag_->setVisible(shown);
  if (!shown) return;
  const double close = series.closes.back();
  const bool rising = count < 2 || close >= series.closes[count - 2];
  const QColor colour = rising ? Colours().up : Colours().down;
  last_line_->setPen(QPen(colour, 0, Qt::DotLine));
  last_line_->start->setCoords(0, close);
  last_line_->end->setCoords(1, close);
  StyleTag(*last_tag_, colour, Colours().field);
  last_tag_->setText(ToQt(PriceText(close, series.decimals)));
  last_tag_->position->setCoords(1, close);
}

QCPRange ChartPlot::Bounded(const QCPRange& wanted) const {
  ViewWindow window = model_.Window();
  window.ShowBetween(wanted.lower, wanted.upper);
  return {window.First(), window.Last()};
}

QRect ChartPlot::PlotArea() const {
  return panes_.empty() ? QRect() : prices_->rect().united(panes_.back()->rect());
}

// The bar under the pointer, or the newest one; -1 without bars.
int ChartPlot::ShownBar() const {
  const int newest = model_.Series().size() - 1;
  return hovered_bar_ && *hovered_bar_ <= newest ? *hovered_bar_ : newest;
}

std::optional<int> ChartPlot::BarAt(QPointF pixel) const {
  if (!PlotArea().contains(pixel.toPoint())) return std::nullopt;
  const int bar = static_cast<int>(std::lround(BarAxis().pixelToCoord(pixel.x())));
  if (bar < 0 || bar >= model_.Series().size()) return std::nullopt;
  return bar;
}

void ChartPlot::Hover(std::optional<int> bar) {
  if (std::exchange(hovered_bar_, bar) == bar) return;
  indicators_->ShowLegends(ShownBar());
  emit BarHovered(bar.value_or(-1));
}

void ChartPlot::ShowPointer(QPointF pixel) {
  const std::optional<int> bar = BarAt(pixel);
  Hover(bar);
  if (!bar || selectionRect()->isActive()) return;
  ShowCross({BarAxis().coordToPixel(*bar), pixel.y()}, PlotArea());
  ShowPointerTexts(*bar, pixel);
}

void ChartPlot::MovePointer(std::optional<QPointF> pixel) {
  if (!pixel) Hover(std::nullopt);
  BarPlot::MovePointer(pixel);
}

void ChartPlot::ShowPointerTexts(int bar, QPointF pixel) {
  const BarSeries& series = model_.Series();
  const QRect area = PlotArea();
  for (std::size_t i = 0; i < panes_.size(); ++i) {
    if (!panes_[i]->rect().contains(pixel.toPoint())) continue;
    const double value = panes_[i]->axis(QCPAxis::atRight)->pixelToCoord(pixel.y());
    value_tag_->setText(ValueText(i, value));
    value_tag_->position->setCoords(area.right() + 1, pixel.y());
    value_tag_->setVisible(true);
  }
  std::string date = LongDayText(series.dates[bar]);
  if (series.has_times) date += "  " + TimeText(series.times[bar]);
  date_tag_->setText(ToQt(date));
  const int half = QFontMetrics(font()).horizontalAdvance(date_tag_->text()) / 2 + 5;
  const int leftmost = area.left() + half;
  const double middle = std::clamp<double>(BarAxis().coordToPixel(bar), leftmost,
                                           std::max(leftmost, area.right() - half));
  date_tag_->position->setCoords(middle, area.bottom() + 2);
  date_tag_->setVisible(true);
}

QString ChartPlot::ValueText(std::size_t pane, double value) const {
  const int decimals = model_.Series().decimals;
  if (pane == 0) return ToQt(PriceText(value, decimals));
  if (panes_[pane] == volumes_) return ToQt(ShortVolumeText(std::max(0.0, value)));
  const ModelIndicator& indicator = indicators_->Of(pane - (model_.ShowsVolume() ? 2 : 1));
  return ToQt(IndicatorValueText(value, indicator.row->format, decimals));
}

std::optional<std::size_t> ChartPlot::LineAt(QPointF pixel) const {
  constexpr int kReach = 3;
  for (std::size_t i = 0; i + 1 < panes_.size(); ++i) {
    const bool near = pixel.y() >= panes_[i]->rect().bottom() - kReach &&
                      pixel.y() <= panes_[i + 1]->rect().top() + kReach;
    if (near && pixel.x() <= prices_->rect().right()) return i;
  }
  return std::nullopt;
}

// The lowest pane has the dates below it, which count as its own.
void ChartPlot::DragLine(std::size_t pane, double y) {
  constexpr double kLeastPixels = 30;
  std::vector<double> heights;
  for (const QCPAxisRect* const rect : panes_) heights.push_back(rect->outerRect().height());
  const double both = heights[pane] + heights[pane + 1];
  if (both < 2 * kLeastPixels) return;
  heights[pane] =
      std::clamp(y - panes_[pane]->outerRect().top(), kLeastPixels, both - kLeastPixels);
  heights[pane + 1] = both - heights[pane];
  const auto percent = [&heights](std::size_t i) {
    return std::clamp(static_cast<int>(std::lround(100 * heights[i] / heights[0])),
                      ChosenIndicator::kLeastHeight, ChosenIndicator::kMostHeight);
  };
  ChartOptions options = model_.Options();
  std::size_t next = 1;
  if (model_.ShowsVolume()) options.volume_height = percent(next++);
  for (std::size_t i = 0; next < panes_.size(); ++i) {
    options.indicators[indicators_->Of(i).place].height = percent(next++);
  }
  emit HeightsChanged(options);
}

void ChartPlot::ZoomToMarked(const QRect& marked) {
  if (std::abs(marked.width()) < kLeastMarkedPixels) return;
  model_.Window().ShowBetween(BarAxis().pixelToCoord(marked.left()),
                              BarAxis().pixelToCoord(marked.right()));
  ModelChanged();
}

void ChartPlot::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) dragged_line_ = LineAt(event->position());
  if (dragged_line_) return;
  const bool mark =
      event->button() == Qt::RightButton || event->modifiers().testFlag(Qt::ShiftModifier);
  setSelectionRectMode(mark ? QCP::srmCustom : QCP::srmNone);
  if (!mark) setCursor(Qt::ClosedHandCursor);
  BarPlot::mousePressEvent(event);
}

void ChartPlot::mouseMoveEvent(QMouseEvent* event) {
  if (dragged_line_) return DragLine(*dragged_line_, event->position().y());
  if (event->buttons() == Qt::NoButton) {
    setCursor(LineAt(event->position()) ? Qt::SplitVCursor : Qt::CrossCursor);
  }
  BarPlot::mouseMoveEvent(event);
}

void ChartPlot::mouseReleaseEvent(QMouseEvent* event) {
  if (std::exchange(dragged_line_, std::nullopt)) return;
  BarPlot::mouseReleaseEvent(event);
}

void ChartPlot::keyPressEvent(QKeyEvent* event) {
  static const QHash<int, void (*)(ViewWindow&)> kMoves = {
      {Qt::Key_Left, [](ViewWindow& window) { window.Pan(-0.1 * window.Span()); }},
      {Qt::Key_Right, [](ViewWindow& window) { window.Pan(0.1 * window.Span()); }},
      {Qt::Key_PageUp, [](ViewWindow& window) { window.Pan(-0.9 * window.Span()); }},
      {Qt::Key_PageDown, [](ViewWindow& window) { window.Pan(0.9 * window.Span()); }},
      {Qt::Key_Home, [](ViewWindow& window) { window.ShowOldest(); }},
      {Qt::Key_End, [](ViewWindow& window) { window.ShowNewest(); }},
      {Qt::Key_Plus, [](ViewWindow& window) { window.Zoom(0.8); }},
      {Qt::Key_Equal, [](ViewWindow& window) { window.Zoom(0.8); }},
      {Qt::Key_Minus, [](ViewWindow& window) { window.Zoom(1.25); }}};
  const bool number = event->key() >= Qt::Key_1 && event->key() <= Qt::Key_9;
  if (number && (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier) {
    emit NumberPressed(event->key() - Qt::Key_0);
    return;
  }
  const auto move = kMoves.value(event->key(), nullptr);
  if (move == nullptr) return event->ignore();
  move(model_.Window());
  ModelChanged();
}

}  // namespace velumar
