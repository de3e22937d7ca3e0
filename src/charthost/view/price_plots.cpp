#include "charthost/view/price_plots.h"

#include "charthost/view/bar_plottables.h"
#include "charts/qt_text.h"

namespace velumar {

PricePlots::PricePlots(const ChartModel& model, QCPAxisRect& prices, QCPAxisRect& volumes)
    : model_(model),
      rect_(prices),
      places_(*prices.axis(QCPAxis::atBottom)),
      prices_(*prices.axis(QCPAxis::atRight)) {
  for (std::size_t i = 0; i < bars_.size(); ++i) {
    bars_[i] = new PriceBars(&places_, &prices_, static_cast<PriceBars::Part>(i));
  }
  line_ = new QCPGraph(&places_, &prices_);
  line_->setSelectable(QCP::stNone);
  for (QCPBars*& volume : volumes_) {
    volume = new QCPBars(volumes.axis(QCPAxis::atBottom), volumes.axis(QCPAxis::atRight));
    volume->setAntialiased(false);
    volume->setSelectable(QCP::stNone);
    volume->setWidthType(QCPBars::wtAbsolute);
  }
  AddLastPrice();
}

void PricePlots::AddLastPrice() {
  QCustomPlot* const plot = rect_.parentPlot();
  last_line_ = new QCPItemLine(plot);
  last_tag_ = new QCPItemText(plot);
  last_tag_->setClipToAxisRect(false);
  last_tag_->setPadding(QMargins(5, 1, 5, 1));
  for (QCPItemPosition* const place : {last_line_->start, last_line_->end, last_tag_->position}) {
    place->setAxisRect(&rect_);
    place->setAxes(&places_, &prices_);
    place->setTypeX(QCPItemPosition::ptAxisRectRatio);
    place->setTypeY(QCPItemPosition::ptPlotCoords);
  }
  last_line_->setAntialiased(false);
  last_line_->setLayer(QStringLiteral("axes"));
  last_tag_->setLayer(QStringLiteral("axes"));
}

void PricePlots::SetColours(const Palette& colours) {
  colours_ = colours;
  for (PriceBars* const bars : bars_) bars->SetColours(colours);
  line_->setPen(QPen(colours.line, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  const std::array volume_colours = {colours.up_volume, colours.down_volume};
  for (std::size_t i = 0; i < volumes_.size(); ++i) {
    volumes_[i]->setPen(BodyPen(volume_colours[i]));
    volumes_[i]->setBrush(volume_colours[i]);
  }
}

void PricePlots::Fill() {
  const bool as_line = IsLine(model_.Options().style);
  QColor fill = colours_.line;
  fill.setAlpha(40);
  line_->setVisible(as_line);
  line_->setBrush(model_.Options().style == ChartStyle::kArea ? QBrush(fill) : QBrush());
  for (PriceBars* const bars : bars_) {
    bars->setVisible(!as_line);
    bars->Fill(model_);
  }
  QVector<QCPGraphData> line;
  std::array<QVector<QCPBarsData>, 2> volumes;
  for (const BarColumn& column : model_.Columns()) {
    if (as_line) line.append({column.place, column.close});
    if (column.volume <= 0) continue;
    const std::size_t side = column.close >= column.open ? 0 : 1;
    volumes[side].append({SnappedPlace(places_, column.place), column.volume});
  }
  line_->data()->set(line, true);
  for (std::size_t i = 0; i < volumes_.size(); ++i) {
    volumes_[i]->data()->set(volumes[i], true);
    volumes_[i]->setWidth(2 * BodyReach(model_));
  }
  ShowLastPrice();
}

void PricePlots::ShowLastPrice() {
  const BarSeries& series = model_.Series();
  const int count = series.size();
  const bool shown = count > 0 && prices_.range().contains(series.closes.back());
  last_line_->setVisible(shown);
  last_tag_->setVisible(shown);
  if (!shown) return;
  const double close = series.closes.back();
  const bool rising = count < 2 || close >= series.closes[count - 2];
  const QColor colour = rising ? colours_.up : colours_.down;
  last_line_->setPen(QPen(colour, 0, Qt::DotLine));
  last_line_->start->setCoords(0, close);
  last_line_->end->setCoords(1, close);
  last_tag_->setFont(rect_.parentPlot()->font());
  last_tag_->setBrush(colour);
  last_tag_->setColor(colours_.field);
  last_tag_->setText(ToQt(model_.AxisText(close)));
  const bool at_left = model_.Options().axis_at_left;
  last_tag_->setPositionAlignment((at_left ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
  last_tag_->position->setCoords(at_left ? 0 : 1, close);
}

}  // namespace velumar
