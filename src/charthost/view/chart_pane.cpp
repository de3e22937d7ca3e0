#include "charthost/view/chart_pane.h"

#include <QApplication>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

#include "charthost/bar_text.h"
#include "charthost/view/chart_plot.h"
#include "charthost/view/drawing_tool.h"
#include "charthost/view/indicator_plots.h"
#include "charthost/view/readout_bar.h"
#include "charts/qt_text.h"

namespace velumar {
namespace {

QColor ToneColour(ReadoutTone tone, const Palette& colours) {
  switch (tone) {
    case ReadoutTone::kUp:
      return colours.up;
    case ReadoutTone::kDown:
      return colours.down;
    case ReadoutTone::kPlain:
      break;
  }
  return colours.text;
}

QString HeadText(const ChartDocument& document) {
  QString text = ToQt(document.Symbol());
  const QString name = ToQt(document.Name());
  if (!name.isEmpty() && name != text) text += QStringLiteral("  ") + name;
  return text + QStringLiteral("  \u00B7  ") +
         ToQt(FrameTitle(document.ShownFrame(), document.Interval()));
}

// For screen readers.
QString SpokenText(const std::vector<ReadoutItem>& items) {
  QStringList texts;
  for (const ReadoutItem& item : items) texts.append((item.label + u' ' + item.value).trimmed());
  return texts.join(QStringLiteral(", "));
}

void SetTextColour(QWidget* widget, const QColor& text, const QColor& background) {
  QPalette palette = widget->palette();
  palette.setColor(QPalette::WindowText, text);
  palette.setColor(QPalette::Window, background);
  widget->setPalette(palette);
}

}  // namespace

ChartPane::ChartPane(const SeriesSource& source, SeriesRequest request, std::map<int, Frame> frames,
                     const ChartOptions& options, QWidget* parent)
    : QWidget(parent), document_(source, std::move(request), std::move(frames)) {
  document_.Model().SetOptions(options);
  readout_ = new ReadoutBar(this);
  error_ = new QLabel(this);
  error_->setWordWrap(true);
  error_->setAutoFillBackground(true);
  error_->setContentsMargins(10, 4, 10, 4);
  error_->setTextFormat(Qt::PlainText);
  plot_ = new ChartPlot(document_.Model(), this);
  notice_ = new QLabel(plot_);
  notice_->setAlignment(Qt::AlignCenter);
  notice_->setWordWrap(true);
  notice_->setAttribute(Qt::WA_TransparentForMouseEvents);
  newest_ = new QPushButton(tr("newest"), plot_);
  newest_->setToolTip(tr("Show the newest bar (End)"));
  newest_->setFocusPolicy(Qt::NoFocus);
  newest_->setCursor(Qt::ArrowCursor);
  connect(newest_, &QPushButton::clicked, this, [this] {
    Window().ShowNewest();
    WindowMoved();
  });
  connect(plot_, &QCustomPlot::afterReplot, this, &ChartPane::PlaceNewest);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(readout_);
  layout->addWidget(error_);
  layout->addWidget(plot_, 1);
  setFocusProxy(plot_);
  connect(plot_, &ChartPlot::BarHovered, this, [this](int bar) {
    if (std::exchange(hovered_bar_, bar) != bar) ShowBar(bar);
  });
  connect(plot_, &ChartPlot::HeightsChanged, this, &ChartPane::OptionsChanged);
  connect(plot_, &ChartPlot::NumberPressed, this, [this](int number) {
    const std::vector<Frame> choices = FramesOf(document_.Interval());
    const auto index = static_cast<std::size_t>(number) - 1;
    if (index < choices.size()) ShowFrame(choices[index]);
  });
  ApplyColours();
}

const Palette& ChartPane::Colours() const {
  return Palette::Following(QApplication::palette(), document_.Model().Options().safe_colours);
}

void ChartPane::AddDrawings(DrawingDesk& desk) {
  desk_ = &desk;
  auto tool = std::make_unique<DrawingTool>(*plot_, document_, desk);
  drawings_ = tool.get();
  plot_->AddTool(std::move(tool));
  connect(&desk, &DrawingDesk::Changed, this, &ChartPane::ShowProblem);
  drawings_->Shown();  // reads the file, so that its problem is known
  ShowState();
}

void ChartPane::Refresh() {
  document_.Refresh();
  ShowState();
}

void ChartPane::RefreshNow() {
  document_.Refresh();
  ShowState(QCustomPlot::rpRefreshHint);
}

void ChartPane::ExpectRefreshes() {
  expects_refreshes_ = true;
  ShowState();
}

void ChartPane::SetPositions(const ChartPositions& positions) { plot_->SetPositions(positions); }

void ChartPane::SetOptions(const ChartOptions& options) {
  const bool other_colours = options.safe_colours != document_.Model().Options().safe_colours;
  document_.Model().SetOptions(options);
  readout_->ForgetWidths();
  if (other_colours) return ApplyColours();
  ShowState();
}

void ChartPane::ApplyColours() {
  const Palette& colours = Colours();
  readout_->SetColours(colours);
  plot_->SetColours(colours);
  SetTextColour(error_, colours.error, colours.field);
  SetTextColour(notice_, colours.muted, colours.field);
  ShowState();
}

QString ChartPane::Title() const {
  return ToQt(document_.Symbol()) + QStringLiteral(", ") +
         ToQt(FrameTitle(document_.ShownFrame(), document_.Interval()));
}

PlotPicture ChartPane::AsPicture() {
  const int head = readout_->height();
  return {.size = {plot_->width(), head + plot_->height()},
          .scale = devicePixelRatioF(),
          .ground = Colours().field,
          .title = Title(),
          .paint = [this, head](QCPPainter& painter) {
            readout_->PaintTo(painter);
            painter.translate(0, head);
            plot_->PaintTo(painter);
          }};
}

void ChartPane::ShowFrame(Frame frame) {
  document_.ShowFrame(frame);
  ShowState();
  ChartOptions options = document_.Model().Options();
  options.frames[document_.Interval()] = frame;
  emit OptionsChanged(options);
  emit FrameChanged();
}

void ChartPane::WindowMoved() { plot_->ModelChanged(); }

void ChartPane::ShowState(QCustomPlot::RefreshPriority when) {
  if (std::exchange(shown_title_, Title()) != shown_title_) readout_->ForgetWidths();
  ShowProblem();
  const bool empty = document_.Model().Series().size() == 0;
  notice_->setText(!document_.Error().empty() ? QString()
                   : expects_refreshes_       ? tr("No bars yet")
                                              : tr("No bars yet\nPress Alt+V, then R to refresh."));
  notice_->setVisible(empty);
  PlaceNotice();
  ShowBar(hovered_bar_);
  plot_->ModelChanged(when);
}

// Of the bars, or else of the file of the drawings.
void ChartPane::ShowProblem() {
  const std::string& bars = document_.Error();
  const std::string problem = bars.empty() && desk_ != nullptr ? desk_->Problem() : bars;
  error_->setText(ToQt(problem));
  error_->setVisible(!problem.empty());
}

// The bar under the pointer, or the newest one.
void ChartPane::ShowBar(int bar) {
  const ChartModel& model = document_.Model();
  const Palette& colours = Colours();
  const BarSeries& series = model.Series();
  std::vector<ReadoutItem> items;
  items.push_back({QString(), HeadText(document_), colours.text, true});
  const int shown = bar >= 0 && bar < series.size() ? bar : series.size() - 1;
  if (shown >= 0) {
    for (const ReadoutPart& part : BarReadout(series, shown)) {
      items.push_back({ToQt(part.label), ToQt(part.value), ToneColour(part.tone, colours), false});
    }
    AddOverlays(shown, items);
    const bool unfinished = series.newest_unfinished && shown == series.size() - 1;
    if (unfinished) items.push_back({QString(), tr("unfinished"), colours.muted, false});
  }
  plot_->setAccessibleName(tr("Chart of %1").arg(Title()));
  plot_->setAccessibleDescription(SpokenText(items));
  readout_->SetItems(std::move(items));
}

void ChartPane::AddOverlays(int bar, std::vector<ReadoutItem>& items) const {
  const ChartModel& model = document_.Model();
  const Palette& colours = Colours();
  for (const ModelIndicator& indicator : model.Indicators()) {
    const IndicatorPane pane = indicator.row->pane;
    if (pane == IndicatorPane::kOwn) continue;
    if (pane == IndicatorPane::kVolume && !model.ShowsVolume()) continue;
    QStringList values;
    for (std::size_t line = 0; line < indicator.run.LineCount(); ++line) {
      values.append(ToQt(IndicatorValueText(indicator.run.Line(line)[static_cast<std::size_t>(bar)],
                                            indicator.row->format, model.Series().decimals)));
    }
    items.push_back({ToQt(IndicatorLabel(indicator.choice)), values.join(QStringLiteral("  ")),
                     colours.indicators[static_cast<std::size_t>(indicator.choice.colour)], false});
  }
}

// At the right edge, as long as the newest bar is out of view.
void ChartPane::PlaceNewest() {
  constexpr int kMargin = 8;
  const int bars = document_.Model().Series().size();
  const bool hidden = bars > 0 && !Window().Shows(bars - 1);
  newest_->setVisible(hidden);
  if (!hidden) return;
  newest_->adjustSize();
  const QRect area = plot_->Prices().rect();
  newest_->move(area.right() - newest_->width() - kMargin,
                area.bottom() - newest_->height() - kMargin);
}

void ChartPane::PlaceNotice() { notice_->setGeometry(plot_->rect().adjusted(20, 0, -60, 0)); }

void ChartPane::ShowAsTile(bool tiled, bool active) {
  constexpr int kLineWidth = 2;
  const int margin = tiled ? kLineWidth : 0;
  layout()->setContentsMargins(margin, margin, margin, margin);
  active_tile_ = tiled && active;
  update();
}

void ChartPane::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) ApplyColours();
}

void ChartPane::paintEvent(QPaintEvent*) {
  const Palette& colours = Colours();
  QPainter(this).fillRect(rect(), active_tile_ ? colours.accent : colours.groove);
}

void ChartPane::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  PlaceNotice();
}

}  // namespace velumar
