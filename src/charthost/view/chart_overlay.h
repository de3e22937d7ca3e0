#pragma once

#include <qcustomplot.h>

#include <optional>

#include "charthost/view/chart_layers.h"

namespace velumar {

// Stronger lines at new years, months or days, behind the prices.
class StrongGridLayer : public RectLayer {
 public:
  StrongGridLayer(QCPAxisRect* rect, const BarChartScene& scene)
      : RectLayer(rect, QStringLiteral("grid"), scene) {}

 protected:
  void draw(QCPPainter* painter) override;
};

// The tag with the last close on the price axis, and a dotted line towards it.
class LastPriceLayer : public QCPLayerable {
 public:
  LastPriceLayer(QCPAxisRect* rect, const BarChartScene& scene)
      : QCPLayerable(rect->parentPlot(), QStringLiteral("axes")), rect_(rect), scene_(scene) {}

 protected:
  void applyDefaultAntialiasingHint(QCPPainter* painter) const override {
    painter->setAntialiasing(false);
  }
  void draw(QCPPainter* painter) override;

 private:
  QCPAxisRect* const rect_;
  const BarChartScene& scene_;
};

// The crosshair with its tags on both axes, and the stretch that is being marked for a zoom. It
// stands on a paint buffer of its own, so that moving the mouse redraws nothing else.
class PointerLayer : public QCPLayerable {
 public:
  PointerLayer(QCPAxisRect* prices, QCPAxisRect* volumes, const BarChartScene& scene,
               const QString& layer)
      : QCPLayerable(prices->parentPlot(), layer),
        prices_(prices),
        volumes_(volumes),
        scene_(scene) {}

  void SetPointer(std::optional<QPointF> position) { pointer_ = position; }
  void SetMarked(std::optional<std::pair<double, double>> pixels) { marked_ = pixels; }
  // The bar under the pointer.
  std::optional<int> Bar() const;

 protected:
  void applyDefaultAntialiasingHint(QCPPainter* painter) const override {
    painter->setAntialiasing(false);
  }
  void draw(QCPPainter* painter) override;

 private:
  QRect PlotArea() const;
  void DrawMarked(QCPPainter* painter);
  void DrawCrosshair(QCPPainter* painter, int bar);
  void DrawValueTag(QCPPainter* painter);
  void DrawDateTag(QCPPainter* painter, int bar);

  QCPAxisRect* const prices_;
  QCPAxisRect* const volumes_;
  const BarChartScene& scene_;
  std::optional<QPointF> pointer_;
  std::optional<std::pair<double, double>> marked_;
};

}  // namespace velumar
