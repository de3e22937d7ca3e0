#include <QtWidgets>

#include "app/controls/control_view.h"
#include "app/services/desktop_services.h"
#include "forms/chart.h"
#include "forms/form.h"
#include "resultchart/chart_file.h"
#include "resultchart/number_plot.h"
#include "resultchart/result_plot.h"

namespace velumar {

namespace {

constexpr double kTwipsPerInch = 1440;

// `rows` are the rows that the plot has.
void Apply(ResultPlot& plot, const ChartContent& content, std::shared_ptr<const ChartRows>& rows) {
  if (rows != content.rows) {
    rows = content.rows;
    plot.SetPoints({rows->labels, rows->values, rows->hint});
  }
  plot.SetStyle({static_cast<ChartType>(content.type), ToQColor(content.series), content.shadow,
                 content.white_wall});
  plot.ShowSpan(content.span ? AxisSpan{content.span->first, content.span->second}
                             : plot.WholeSpan());
}

void OfferToSave(SavableControl& model, std::function<void(const std::string& file)> save) {
  model.endings.clear();
  for (const QString& ending : PictureFileEndings()) model.endings.push_back(FromQt(ending));
  model.save = std::move(save);
}

// A chart in the colours of the window. It is saved as it is shown.
class ChartView : public View<ResultPlot, Chart> {
 public:
  explicit ChartView(const Parts& parts) : View(parts) {
    setFont(context_.Look().faces.Plain(font().pixelSize()));
    connect(this, &ResultPlot::SpanMoved, this,
            [this] { Pass(&Chart::UserSpan, std::pair(Span().first, Span().last)); });
    OfferToSave(model_, [this](const std::string& file) {
      SaveChartFile(*this, LogicalPlace(model_).size(), ToQt(file));
    });
  }
  void Update() override {
    ApplyCommon(*this, model_);
    setAccessibleName(QStringLiteral("The portfolio's value after each closing"));
    SetColours(Colours());
    SetCovered(LogicalPixels(model_.Covered()));
    Apply(*this, model_.Content(), rows_);
  }

 private:
  std::shared_ptr<const ChartRows> rows_;  // as shown
};

// A picture of numbers in the colours of the window. It is saved as it is shown.
class PlotView : public View<NumberPlot, Plot> {
 public:
  explicit PlotView(const Parts& parts) : View(parts) {
    setFont(context_.Look().faces.Plain(font().pixelSize()));
    OfferToSave(model_, [this](const std::string& file) {
      SaveTo(LogicalPlace(model_).size(), ToQt(file));
    });
  }
  void Update() override {
    ApplyCommon(*this, model_);
    if (Colours().ground != ground_) SetColours(Colours());
    ground_ = Colours().ground;
    if (!model_.Picture()) return;
    setAccessibleName(ToQt(model_.Picture()->title));
    SetPicture(model_.Picture());
  }

 private:
  QColor ground_;  // of the colours that are shown
};

// The portfolio chart as ink on paper, at the size of the control. It can be dragged.
class ChartPictureView : public View<QWidget, ChartPicture> {
 public:
  explicit ChartPictureView(const Parts& parts) : View(parts) {
    setCursor(Qt::SizeAllCursor);
    plot_.setFont(context_.Look().faces.Plain(plot_.font().pixelSize()));
    Palette ink = Palette::Light();
    ink.ground = Qt::white;
    plot_.SetColours(ink);
    model_.print = [this](const PrintJob& job) { Print(job); };
  }
  void Update() override;

 protected:
  void paintEvent(QPaintEvent*) override { QPainter(this).drawPixmap(0, 0, pixels_); }
  void mousePressEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton) PassMouse(&ChartPicture::UserMouseDown, *event);
  }
  void mouseMoveEvent(QMouseEvent* event) override {
    PassMouse(&ChartPicture::UserMouseMove, *event);
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton) PassMouse(&ChartPicture::UserMouseUp, *event);
  }

 private:
  void Print(const PrintJob& job);
  void PassMouse(void (ChartPicture::*handler)(float, float), const QMouseEvent& event) {
    const QPointF twips = event.position() * kTwipsPerPixel;
    Pass(handler, static_cast<float>(twips.x()), static_cast<float>(twips.y()));
  }

  ResultPlot plot_;  // never shown itself
  std::shared_ptr<const ChartRows> rows_;
  ChartContent drawn_;  // the contents of `pixels_`
  QPixmap pixels_;
};

void ChartPictureView::Update() {
  const bool resized = LogicalPlace(model_).size() != size();
  ApplyCommon(*this, model_);
  if (!resized && !pixels_.isNull() && drawn_ == model_.Content()) return;
  drawn_ = model_.Content();
  Apply(plot_, drawn_, rows_);
  pixels_ = QPixmap(size() * devicePixelRatioF());
  pixels_.setDevicePixelRatio(devicePixelRatioF());
  pixels_.fill(Qt::white);
  if (pixels_.isNull()) return;
  QCPPainter painter(&pixels_);
  plot_.PaintTo(painter, size());
  update();
}

void ChartPictureView::Print(const PrintJob& job) {
  const QRectF twips(model_.Left(), model_.Top(), model_.Width(), model_.Height());
  const ChartPage page{
      .place = {twips.topLeft() / kTwipsPerInch, twips.size() / kTwipsPerInch},
      .orientation = job.orientation == 2 ? QPageLayout::Landscape : QPageLayout::Portrait,
      .copies = job.copies};
  const auto print = [&](QPagedPaintDevice& device) { PrintChartPages(plot_, page, device); };
  if (!job.pdf_file.empty()) return SavePages(ToQt(job.pdf_file), kPlotTitle, print);
  PrintOnPaper(job.quality, print);
}

}  // namespace

void AddChartViews(ViewMakers& makers) {
  makers[ControlKind::kChart] = MakeView<ChartView>;
  makers[ControlKind::kPlot] = MakeView<PlotView>;
  makers[ControlKind::kChartPicture] = MakeView<ChartPictureView>;
}

}  // namespace velumar
