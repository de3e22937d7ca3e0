#include "app/chart_view.h"

#include <QMouseEvent>
#include <QPainter>

#include "app/qt_printers.h"
#include "forms/form.h"
#include "resultchart/chart_file.h"

namespace velumar {

namespace {

constexpr double kTwipsPerInch = 1440;

// `rows` are those that the plot holds.
void Apply(ResultPlot& plot, const ChartContent& content, std::shared_ptr<const ChartRows>& rows) {
  if (rows != content.rows) {
    rows = content.rows;
    plot.SetPoints({rows->labels, rows->values, rows->hint});
  }
  plot.SetType(static_cast<ChartType>(content.type));
  plot.SetSeriesColour(ToQColor(content.series));
  plot.SetShadow(content.shadow);
  plot.SetWhiteWall(content.white_wall);
  plot.ShowSpan(content.span ? AxisSpan{content.span->first, content.span->second}
                             : plot.WholeSpan());
}

}  // namespace

ChartView::ChartView(FormCanvas& canvas, QWidget& window, Chart& chart)
    : ResultPlot(&window), canvas_(canvas), chart_(chart), rows_(chart.Content().rows) {
  setFont(canvas.Look().faces.Plain(font().pixelSize()));
  connect(this, &ResultPlot::SpanMoved, this, [this] {
    const AxisSpan span = Span();
    canvas_.Deliver([this, &span] { chart_.UserSpan(std::pair(span.first, span.last)); });
  });
  chart_.endings.clear();
  for (const QString& ending : ChartFileEndings()) chart_.endings.push_back(ending.toStdString());
  chart_.save = [this](const std::string& file) {
    SaveChartFile(*this, LogicalPlace(chart_).size(), ToQString(file));
  };
  SetPoints({rows_->labels, rows_->values, rows_->hint});
}

void ChartView::Update() {
  ApplyCommon(*this, chart_);
  setAccessibleName(QStringLiteral("The portfolio's value after each closing"));
  SetColours(canvas_.Look().theme.dark ? Palette::Dark() : Palette::Light());
  SetCovered(LogicalPixels(chart_.Covered()));
  Apply(*this, chart_.Content(), rows_);
}

ChartPictureView::ChartPictureView(FormCanvas& canvas, QWidget& window, ChartPicture& picture)
    : QWidget(&window), canvas_(canvas), picture_(picture) {
  setCursor(Qt::SizeAllCursor);
  plot_.setFont(canvas.Look().faces.Plain(plot_.font().pixelSize()));
  Palette ink = Palette::Light();
  ink.ground = Qt::white;
  plot_.SetColours(ink);
  picture_.print = [this](const PrintJob& job) { Print(job); };
}

void ChartPictureView::Update() {
  const bool resized = LogicalPlace(picture_).size() != size();
  ApplyCommon(*this, picture_);
  if (!resized && !pixels_.isNull() && drawn_ == picture_.Content()) return;
  drawn_ = picture_.Content();
  Apply(plot_, drawn_, rows_);
  pixels_ = QPixmap(size() * devicePixelRatioF());
  pixels_.setDevicePixelRatio(devicePixelRatioF());
  pixels_.fill(Qt::white);
  if (pixels_.isNull()) return;
  QCPPainter painter(&pixels_);
  plot_.PaintTo(painter, size());
  update();
}

void ChartPictureView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.drawPixmap(0, 0, pixels_);
}

void ChartPictureView::Print(const PrintJob& job) {
  const QRectF twips(picture_.Left(), picture_.Top(), picture_.Width(), picture_.Height());
  const ChartPage page{
      .place = {twips.topLeft() / kTwipsPerInch, twips.size() / kTwipsPerInch},
      .orientation = job.orientation == 2 ? QPageLayout::Landscape : QPageLayout::Portrait,
      .copies = job.copies};
  const auto print = [&](QPagedPaintDevice& device) { PrintChartPages(plot_, page, device); };
  if (job.pdf_file.empty()) {
    PrintOnPaper(job.quality, print);
  } else {
    SavePages(ToQString(job.pdf_file), kPlotTitle, print);
  }
}

void ChartPictureView::mousePressEvent(QMouseEvent* event) {
  const QPointF twips = event->position() * kTwipsPerPixel;
  if (event->button() != Qt::LeftButton) return;
  canvas_.Deliver([&] {
    picture_.UserMouseDown(static_cast<float>(twips.x()), static_cast<float>(twips.y()));
  });
}

void ChartPictureView::mouseMoveEvent(QMouseEvent* event) {
  const QPointF twips = event->position() * kTwipsPerPixel;
  canvas_.Deliver([&] {
    picture_.UserMouseMove(static_cast<float>(twips.x()), static_cast<float>(twips.y()));
  });
}

void ChartPictureView::mouseReleaseEvent(QMouseEvent* event) {
  const QPointF twips = event->position() * kTwipsPerPixel;
  if (event->button() != Qt::LeftButton) return;
  canvas_.Deliver(
      [&] { picture_.UserMouseUp(static_cast<float>(twips.x()), static_cast<float>(twips.y())); });
}

}  // namespace velumar
