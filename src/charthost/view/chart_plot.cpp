#include "charthost/view/chart_plot.h"

#include <cmath>

#include "charthost/bar_text.h"
#include "charthost/view/measure_tool.h"
#include "charthost/view/plot_panes.h"
#include "charthost/view/plot_tool.h"
#include "charthost/view/pointer_tags.h"
#include "charthost/view/position_marks.h"
#include "charthost/view/price_plots.h"
#include "charts/qt_text.h"

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

}  // namespace

ChartPlot::ChartPlot(ChartModel& model, QWidget* parent) : BarPlot(parent), model_(model) {
  plotLayout()->setRowSpacing(6);
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::CrossCursor);
  setPlottingHint(QCP::phFastPolylines);  // a line that zigzags over the pane costs a fifth
  auto panes = std::make_unique<PlotPanes>(
      model_,
      PlotPanes::Surroundings{
          this, PointerLayer(),
          [this] { return AddRect(plotLayout()->rowCount(), QCPAxis::atLeft | QCPAxis::atRight); },
          [this](const ChartOptions& options) { emit HeightsChanged(options); }});
  panes_ = panes.get();
  tools_.push_back(std::move(panes));
  bars_ = std::make_unique<PricePlots>(model_, panes_->Prices(), panes_->Volumes());
  positions_ = std::make_unique<PositionMarks>(*this, panes_->Prices(), BarAxis());
  tags_ = std::make_unique<PointerTags>(AddPointerText(), AddPointerText());
  AddTool(std::make_unique<MeasureTool>(*this));
  setSelectionRect(new MarkedBars(this, [this] { return panes_->Area(); }));
  selectionRect()->setLayer(PointerLayer());
  connect(selectionRect(), &QCPSelectionRect::accepted, this, &ChartPlot::ZoomToMarked);
  connect(this, &QCustomPlot::beforeReplot, this, &ChartPlot::BeforeReplot);
  connect(this, &BarPlot::SpanMoved, this, [this] {
    model_.Window().ShowBetween(BarAxis().range().lower, BarAxis().range().upper);
  });
  ModelChanged();
}

ChartPlot::~ChartPlot() = default;

QCPAxisRect& ChartPlot::Prices() const { return panes_->Prices(); }

void ChartPlot::AddTool(std::unique_ptr<PlotTool> tool) {
  tool->SetColours(Colours());
  tools_.push_back(std::move(tool));
}

void ChartPlot::SetColours(const Palette& colours) {
  BarPlot::SetColours(colours);
  bars_->SetColours(colours);
  tags_->SetColours(colours);
  panes_->Indicators().SetColours(colours);
  positions_->SetColours(colours);
  for (const auto& tool : tools_) tool->SetColours(colours);
  ModelChanged();
}

void ChartPlot::SetPositions(const ChartPositions& positions) {
  positions_->Set(positions);
  std::vector<double> levels;
  for (const PlanLine& line : positions.plans) levels.push_back(line.price);
  model_.SetLevels(std::move(levels));
}

const ChartPositions& ChartPlot::Positions() const { return positions_->Positions(); }

void ChartPlot::PaintTo(QCPPainter& painter) {
  HidePointer();
  toPainter(&painter, viewport().width(), viewport().height());
  PlacePointer();
}

void ChartPlot::ModelChanged(RefreshPriority when) {
  if (isVisible()) replot(when);
}

void ChartPlot::showEvent(QShowEvent* event) {
  BarPlot::showEvent(event);
  ModelChanged();
}

void ChartPlot::BeforeReplot() {
  const QCPAxisRect& prices = panes_->Prices();
  panes_->Arrange();
  const int width = prices.width() > 0 ? prices.width() : viewport().width();
  model_.Layout(width);
  ShowBars({model_.Window().First(), model_.Window().Last()});
  panes_->SetRanges();
  LayOut(viewport().size());
  if (prices.width() != width) model_.Layout(prices.width());
  bars_->Fill();
  panes_->Indicators().Fill();
  positions_->Show(model_);
  for (const auto& tool : tools_) tool->BeforeReplot();
  panes_->Indicators().ShowLegends(ShownBar());
  PlacePointer();
}

QCPRange ChartPlot::Bounded(const QCPRange& wanted) const {
  ViewWindow window = model_.Window();
  window.ShowBetween(wanted.lower, wanted.upper);
  return {window.First(), window.Last()};
}

// The bar under the crosshair, or the newest one; -1 without bars.
int ChartPlot::ShownBar() const {
  const int newest = model_.Series().size() - 1;
  return hovered_bar_ && *hovered_bar_ <= newest ? *hovered_bar_ : newest;
}

std::optional<int> ChartPlot::BarAt(QPointF pixel) const {
  if (!panes_->Area().contains(pixel.toPoint())) return std::nullopt;
  const int bar = static_cast<int>(std::lround(BarAxis().pixelToCoord(pixel.x())));
  if (bar < 0 || bar >= model_.Series().size()) return std::nullopt;
  return bar;
}

std::optional<ChartPlace> ChartPlot::PlaceAt(QPointF pixel) const {
  const std::optional<int> bar = BarAt(pixel);
  if (!bar || !Prices().rect().contains(pixel.toPoint())) return std::nullopt;
  return ChartPlace{*bar, Prices().axis(QCPAxis::atRight)->pixelToCoord(pixel.y())};
}

std::optional<ChartPlace> ChartPlot::StepPointer(int bars) {
  const BarSeries& series = model_.Series();
  if (series.size() == 0) return std::nullopt;
  const int bar = std::clamp(ShownBar() + bars, 0, series.size() - 1);
  ViewWindow& window = model_.Window();
  if (!window.Shows(bar)) {
    window.Pan(bar < window.First() ? bar - 1 - window.First() : bar + 1 - window.Last());
    replot();
  }
  const ChartPlace place = {bar, series.closes[bar]};
  MovePointer(QPointF(BarAxis().coordToPixel(place.bar),
                      Prices().axis(QCPAxis::atRight)->coordToPixel(place.price)));
  return place;
}

void ChartPlot::Hover(std::optional<int> bar) {
  if (std::exchange(hovered_bar_, bar) == bar) return;
  panes_->Indicators().ShowLegends(ShownBar());
  emit BarHovered(bar.value_or(-1));
}

void ChartPlot::ShowPointer(QPointF pixel) {
  const std::optional<int> bar = BarAt(pixel);
  Hover(bar);
  emit PointerMoved(bar ? std::optional(MomentOf(model_.Series(), *bar)) : std::nullopt);
  if (!bar || selectionRect()->isActive()) return;
  const QRect area = panes_->Area();
  const double x = BarAxis().coordToPixel(*bar);
  ShowCross({x, pixel.y()}, area);
  const QString value = panes_->ValueText(pixel);
  if (!value.isEmpty()) {
    tags_->ShowValue(value, pixel.y(), area, panes_->ValueSide(), bars_->LastTag());
  }
  tags_->ShowDate(ToQt(MomentText(model_.Series(), *bar)), x, area);
}

void ChartPlot::ShowNoPointer() {
  std::optional<int> bar;
  if (followed_) bar = BarAtMoment(model_.Series(), *followed_);
  Hover(bar);
  if (!bar || !BarAxis().range().contains(*bar)) return;
  const double x = BarAxis().coordToPixel(*bar);
  ShowUpright(x, panes_->Area());
  tags_->ShowDate(ToQt(MomentText(model_.Series(), *bar)), x, panes_->Area());
}

void ChartPlot::MovePointer(std::optional<QPointF> pixel) {
  if (!pixel) emit PointerMoved(std::nullopt);
  BarPlot::MovePointer(pixel);
}

void ChartPlot::FollowPointer(const std::optional<BarMoment>& moment) {
  if (std::exchange(followed_, moment) == moment || !isVisible()) return;
  PlacePointer();
  layer(PointerLayer())->replot();
}

void ChartPlot::ZoomToMarked(const QRect& marked) {
  if (std::abs(marked.width()) < kLeastMarkedPixels) return;
  model_.Window().ShowBetween(BarAxis().pixelToCoord(marked.left()),
                              BarAxis().pixelToCoord(marked.right()));
  ModelChanged();
}

PlotTool* ChartPlot::Taker(const std::function<bool(PlotTool&)>& takes) const {
  const auto found = std::ranges::find_if(tools_, [&](const auto& tool) { return takes(*tool); });
  return found == tools_.end() ? nullptr : found->get();
}

Qt::CursorShape ChartPlot::CursorAt(QPointF pixel) const {
  std::optional<Qt::CursorShape> shape;
  Taker([&](const PlotTool& tool) {
    shape = tool.CursorAt(pixel);
    return shape.has_value();
  });
  return shape.value_or(Qt::CrossCursor);
}

void ChartPlot::mousePressEvent(QMouseEvent* event) {
  pressed_ = Taker([event](PlotTool& tool) { return tool.Press(*event); });
  if (pressed_ != nullptr) return;
  const bool mark = event->button() == Qt::RightButton;
  setSelectionRectMode(mark ? QCP::srmCustom : QCP::srmNone);
  if (!mark) setCursor(Qt::ClosedHandCursor);
  BarPlot::mousePressEvent(event);
}

void ChartPlot::mouseMoveEvent(QMouseEvent* event) {
  if (pressed_ != nullptr) {
    pressed_->Move(*event);
    return MovePointer(event->position());
  }
  if (event->buttons() == Qt::NoButton) {
    for (const auto& tool : tools_) tool->Move(*event);
    setCursor(CursorAt(event->position()));
  }
  BarPlot::mouseMoveEvent(event);
}

void ChartPlot::mouseReleaseEvent(QMouseEvent* event) {
  if (PlotTool* const tool = std::exchange(pressed_, nullptr)) return tool->Release(*event);
  BarPlot::mouseReleaseEvent(event);
  setCursor(CursorAt(event->position()));
}

void ChartPlot::mouseDoubleClickEvent(QMouseEvent* event) {
  if (Taker([event](PlotTool& tool) { return tool.DoubleClick(*event); }) != nullptr) return;
  model_.Window().Reset(model_.Series().size());
  ModelChanged();
}

void ChartPlot::keyReleaseEvent(QKeyEvent* event) {
  for (const auto& tool : tools_) tool->KeyReleased(*event);
  BarPlot::keyReleaseEvent(event);
}

void ChartPlot::focusInEvent(QFocusEvent* event) {
  BarPlot::focusInEvent(event);
  emit FocusGained();
}

void ChartPlot::keyPressEvent(QKeyEvent* event) {
  static const QHash<int, void (*)(ViewWindow&)> kMoves = {
      {Qt::Key_Left, [](ViewWindow& window) { window.Pan(-0.1 * window.Span()); }},
      {Qt::Key_Right, [](ViewWindow& window) { window.Pan(0.1 * window.Span()); }},
      {Qt::Key_PageUp, [](ViewWindow& window) { window.Pan(-0.9 * window.Span()); }},
      {Qt::Key_PageDown, [](ViewWindow& window) { window.Pan(0.9 * window.Span()); }},
      {Qt::Key_Home, [](ViewWindow& window) { window.ShowOldest(); }},
      {Qt::Key_End, [](ViewWindow& window) { window.ShowNewest(); }},
      {Qt::Key_0, [](ViewWindow& window) { window.ShowAll(); }},
      {Qt::Key_Plus, [](ViewWindow& window) { window.Zoom(0.8); }},
      {Qt::Key_Equal, [](ViewWindow& window) { window.Zoom(0.8); }},
      {Qt::Key_Minus, [](ViewWindow& window) { window.Zoom(1.25); }}};
  if (Taker([event](PlotTool& tool) { return tool.Key(*event); }) != nullptr) return;
  if (event->modifiers() == Qt::ControlModifier) {
    if (event->key() != Qt::Key_Left && event->key() != Qt::Key_Right) return event->ignore();
    StepPointer(event->key() == Qt::Key_Left ? -1 : 1);
    return;
  }
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
