#pragma once

#include <qcustomplot.h>

#include "charthost/chart_model.h"
#include "charthost/view/chart_colors.h"

namespace velumar {

// What the painted layers of a chart share. Colours may change between two paintings.
struct BarChartScene {
  const ChartModel& model;
  const ChartColors* colors;
};

// Something painted inside one axis rect, clipped to it.
class RectLayer : public QCPLayerable {
 public:
  RectLayer(QCPAxisRect* rect, const QString& layer, const BarChartScene& scene)
      : QCPLayerable(rect->parentPlot(), layer), rect_(rect), scene_(scene) {}

 protected:
  QRect clipRect() const override { return rect_->rect(); }
  void applyDefaultAntialiasingHint(QCPPainter* painter) const override {
    painter->setAntialiasing(false);
  }

  double X(double place) const { return rect_->axis(QCPAxis::atBottom)->coordToPixel(place); }
  double Y(double value) const { return rect_->axis(QCPAxis::atRight)->coordToPixel(value); }
  const ChartModel& Model() const { return scene_.model; }
  const ChartColors& Colors() const { return *scene_.colors; }

  QCPAxisRect* const rect_;

 private:
  const BarChartScene& scene_;
};

// Candles, bars or a line, whichever the options say.
class PriceLayer : public RectLayer {
 public:
  using RectLayer::RectLayer;

 protected:
  void draw(QCPPainter* painter) override;

 private:
  void DrawCandles(QCPPainter* painter);
  void DrawBars(QCPPainter* painter);
  void DrawLine(QCPPainter* painter);
  void Fill(QCPPainter* painter);

  QVector<QRectF> rising_;
  QVector<QRectF> falling_;
  QPolygonF line_;
};

class AverageLayer : public RectLayer {
 public:
  using RectLayer::RectLayer;

 protected:
  void draw(QCPPainter* painter) override;

 private:
  QPolygonF line_;
};

class VolumeLayer : public RectLayer {
 public:
  using RectLayer::RectLayer;

 protected:
  void draw(QCPPainter* painter) override;

 private:
  QVector<QRectF> rising_;
  QVector<QRectF> falling_;
};

}  // namespace velumar
