#include "resultchart/result_plot.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "charts/qt_text.h"
#include "charts/value_ticker.h"
#include "resultchart/chart_layers.h"

namespace velumar {
namespace {

constexpr double kFewestPoints = 5;  // that a zoom leaves visible
constexpr int kAroundPlot = 14;
constexpr int kPlainPixels = 12;

QPointF DepthFor(const QSize& size) {
  const double across = std::clamp(size.width() * 0.035, 8.0, 26.0);
  return {std::round(across), -std::round(across * 0.7)};
}

// The dates of as many points as have room next to each other, none cut off by the picture's edge.
class DateTicker : public QCPAxisTicker {
 public:
  DateTicker(const QCPAxis& axis, const ChartScene& scene) : axis_(axis), scene_(scene) {}

 protected:
  double getTickStep(const QCPRange& range) override {
    constexpr int kGap = 18;
    const int width = std::max(1, axis_.axisRect()->width());
    return std::max(1.0, RoundStep((LabelWidth() + kGap) * range.size() / width));
  }

  QVector<double> createTickVector(double step, const QCPRange& range) override {
    QVector<double> ticks = QCPAxisTicker::createTickVector(step, range);
    const auto count = static_cast<double>(scene_.points.labels.size());
    const QRect picture = axis_.parentPlot()->viewport();
    const double half = LabelWidth() / 2.0;
    erase_if(ticks, [&](double tick) {
      const double x = axis_.coordToPixel(tick);
      return tick < 0 || tick >= count || x - half < picture.left() || x + half > picture.right();
    });
    return ticks;
  }

  QString getTickLabel(double tick, const QLocale&, QChar, int) override {
    return ToQt(scene_.points.labels[static_cast<std::size_t>(tick)]);
  }

 private:
  // All labels have the same number of characters; digits are the widest.
  int LabelWidth() const {
    if (scene_.points.labels.empty()) return 0;
    const auto letters = static_cast<qsizetype>(scene_.points.labels.front().size());
    return QFontMetrics(axis_.tickLabelFont()).horizontalAdvance(QString(letters, u'0'));
  }

  const QCPAxis& axis_;
  const ChartScene& scene_;
};

}  // namespace

ResultPlot::ResultPlot(QWidget* parent) : BarPlot(parent) {
  // In pixels: a size in points would follow the printer's resolution.
  QFont plain = font();
  plain.setPixelSize(kPlainPixels);
  setFont(plain);
  plotLayout()->setMargins(QMargins(kAroundPlot, kAroundPlot / 2, kAroundPlot, kAroundPlot));
  title_ = new QCPTextElement(this);
  plotLayout()->addElement(0, 0, title_);
  rect_ = AddRect(1, QCPAxis::atLeft);
  QCPAxis* const values = rect_->axis(QCPAxis::atLeft);
  BarAxis().setTicker(QSharedPointer<DateTicker>::create(BarAxis(), scene_));
  values->setTicker(QSharedPointer<ValueTicker>::create(*values, 46, StepLabel));
  for (QCPAxis* const axis : rect_->axes()) {
    axis->grid()->setVisible(false);
    axis->setLabelPadding(6);
    axis->setTickLabelPadding(5);
  }
  new ChartWall(rect_, scene_);
  line_ = new PortfolioLine(&BarAxis(), values, scene_);
  bars_ = new PortfolioBars(&BarAxis(), values, scene_);
  pointer_text_ = AddPointerText();
  pointer_text_->setPadding(QMargins(5, 5, 5, 5));
  connect(this, &QCustomPlot::beforeReplot, this, [this] {
    Arrange(viewport().size() - QSize(0, covered_));
    PlacePointer();
  });
  connect(this, &QCustomPlot::mouseDoubleClick, this, [this] {
    ShowSpan(WholeSpan());
    emit SpanMoved();
  });
  ResultPlot::SetColours(scene_.colours);
  SetPoints({});
}

void ResultPlot::SetPoints(ChartPoints points) {
  scene_.points = std::move(points);
  line_->SetPoints();
  const bool empty = scene_.points.values.empty();
  QCPAxis& values = *rect_->axis(QCPAxis::atLeft);
  title_->setText(empty ? QString() : QString(kPlotTitle));
  BarAxis().setLabel(empty ? QString() : QStringLiteral("Action Date"));
  values.setLabel(empty ? QString() : QStringLiteral("Portfolio"));
  BarAxis().setVisible(!empty);
  values.setVisible(!empty);
  ShowSpan(WholeSpan());
}

void ResultPlot::SetStyle(const ChartStyle& style) {
  scene_.style = style;
  Changed();
}

void ResultPlot::SetColours(const Palette& colours) {
  BarPlot::SetColours(colours);
  scene_.colours = colours;
  setBackground(QBrush(colours.ground));
  QFont title_font = font();
  title_font.setPixelSize(16);
  title_font.setBold(true);
  title_->setFont(title_font);
  title_->setTextColor(colours.text);
  pointer_text_->setFont(font());
  pointer_text_->setColor(colours.text);
  pointer_text_->setPen(QPen(colours.border, 0));
  pointer_text_->setBrush(colours.hint);
  Changed();
}

AxisSpan ResultPlot::WholeSpan() const {
  return {-0.5, std::max(1.0, static_cast<double>(scene_.points.values.size())) - 0.5};
}

AxisSpan ResultPlot::Span() const { return {BarAxis().range().lower, BarAxis().range().upper}; }

void ResultPlot::ShowSpan(AxisSpan span) {
  ShowBars(ResultPlot::Bounded({span.first, span.last}));
  Changed();
}

QCPRange ResultPlot::Bounded(const QCPRange& wanted) const {
  const AxisSpan whole = WholeSpan();
  const double size =
      std::clamp(wanted.size(), std::min(kFewestPoints, whole.Size()), whole.Size());
  const double first = std::clamp(wanted.lower, whole.first, whole.last - size);
  return {first, first + size};
}

void ResultPlot::SetCovered(int pixels) {
  covered_ = pixels;
  Changed();
}

void ResultPlot::Changed() { replot(QCustomPlot::rpQueuedReplot); }

// Depth and values depend on the size and on what is visible.
void ResultPlot::Arrange(const QSize& size) {
  scene_.depth = scene_.style.HasDepth() ? DepthFor(size) : QPointF();
  const QPoint depth = scene_.depth.toPoint();
  rect_->setMinimumMargins(QMargins(8, 10 - depth.y(), 14 + depth.x(), 8));
  const ValueSpan values = FittingValues(scene_.points.values, Span(), scene_.style.StandsOnBase());
  rect_->axis(QCPAxis::atLeft)->setRange(values.lower, values.upper);
  LayOut(size);
  line_->ApplyStyle();
  bars_->Fill();
}

void ResultPlot::PaintTo(QCPPainter& painter, const QSize& size) {
  HidePointer();
  Arrange(size);
  toPainter(&painter, size.width(), size.height());
  Changed();
}

void ResultPlot::ShowPointer(QPointF pixel) {
  const auto count = static_cast<double>(scene_.points.values.size());
  if (count == 0 || !rect_->rect().contains(pixel.toPoint())) return;
  const double place = std::clamp(std::round(BarAxis().pixelToCoord(pixel.x())), 0.0, count - 1);
  const auto point = static_cast<std::size_t>(place);
  const QPointF centre(BarAxis().coordToPixel(place),
                       rect_->axis(QCPAxis::atLeft)->coordToPixel(scene_.points.values[point]));
  ShowCross(centre, rect_->rect());
  ShowPointerText(point, centre);
}

// Above and to the right of the point, or on the other side if there is no room.
void ResultPlot::ShowPointerText(std::size_t point, QPointF centre) {
  constexpr int kDistance = 10;
  constexpr int kDecimals = 2;
  pointer_text_->setText(ToQt(scene_.points.labels[point]) + QStringLiteral("   ") +
                         GroupedText(scene_.points.values[point], kDecimals));
  const QSize room = QFontMetrics(font()).boundingRect(pointer_text_->text()).size() +
                     QSize(2 * kDistance, 2 * kDistance);
  const bool right = centre.x() + room.width() <= rect_->right();
  const bool above = centre.y() - room.height() >= rect_->top();
  pointer_text_->setPositionAlignment((right ? Qt::AlignLeft : Qt::AlignRight) |
                                      (above ? Qt::AlignBottom : Qt::AlignTop));
  pointer_text_->position->setCoords(
      centre + QPointF(right ? kDistance : -kDistance, above ? -kDistance : kDistance));
  pointer_text_->setVisible(true);
}

}  // namespace velumar
