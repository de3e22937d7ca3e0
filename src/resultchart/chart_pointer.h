#pragma once

#include <qcustomplot.h>

#include <optional>

#include "resultchart/chart_scene.h"

namespace velumar {

// The cross at the mouse with the date and value of the point under it.
class ChartPointer : public QCPLayerable {
 public:
  ChartPointer(QCPAxisRect* rect, const QString& layer, const ChartScene& scene);

  // Takes the point nearest to the pixel; nothing hides the cross, as a pixel beside the axes does.
  void Follow(std::optional<QPointF> pixel);
  std::optional<std::size_t> Point() const { return point_; }
  QString Text() const;

 protected:
  void draw(QCPPainter* painter) override;
  void applyDefaultAntialiasingHint(QCPPainter* painter) const override;

 private:
  QPointF Centre() const;

  QCPAxisRect* rect_;
  const ChartScene& scene_;
  std::optional<std::size_t> point_;
};

}  // namespace velumar
