#pragma once

#include <qcustomplot.h>

#include "charts/palette.h"

namespace velumar {

// A plot over an axis that counts bars: bar i lies at i, so closed days leave no gap. The wheel
// zooms at the pointer and, with Shift or sideways, scrolls; a drag scrolls.
class BarPlot : public QCustomPlot {
  Q_OBJECT

 public:
  explicit BarPlot(QWidget* parent);

  const Palette& Colours() const { return colours_; }
  virtual void SetColours(const Palette& colours);

 signals:
  // The wheel or the mouse has moved the range of bars.
  void SpanMoved();

 protected:
  // An axis rectangle with bars below and values on `sides`, in the colours of the plot. All
  // rectangles show the same bars.
  QCPAxisRect* AddRect(int row, QCPAxis::AxisTypes sides);
  // Valid once there is a rectangle.
  QCPAxis& BarAxis() const { return *rects_.front()->axis(QCPAxis::atBottom); }
  const QList<QCPAxisRect*>& Rects() const { return rects_; }
  // What the plot can show of the range that the trader asks for.
  virtual QCPRange Bounded(const QCPRange& wanted) const = 0;
  void ShowBars(const QCPRange& range);
  // Places all rectangles in a plot of that size. The ticks are made before a layout sets the
  // rectangles' sizes, so a plot whose ticks depend on them calls this before it is drawn.
  void LayOut(const QSize& size);

  // Lines through `centre` across `area`. The cross and the texts made by AddPointerText have a
  // paint buffer of their own: MovePointer repaints nothing else.
  void ShowCross(QPointF centre, const QRect& area);
  // The upright one of the two lines.
  void ShowUpright(double x, const QRect& area);
  void HidePointer();
  QCPItemText* AddPointerText();
  const QString& PointerLayer() const { return pointer_layer_; }
  // Draws the cross for a pointer at that pixel.
  virtual void ShowPointer(QPointF pixel) = 0;
  // Draws what there is to draw while there is no pointer.
  virtual void ShowNoPointer() {}
  // Call after the plot has changed: the pointer may be at another bar now.
  void PlacePointer();
  // The pointer is at that pixel now, or has left the plot if there is none.
  virtual void MovePointer(std::optional<QPointF> pixel);

  void wheelEvent(QWheelEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  void BoundRange(const QCPRange& wanted, const QCPRange& before);
  void StyleRect(QCPAxisRect& rect) const;

  Palette colours_ = Palette::Light();
  QList<QCPAxisRect*> rects_;
  const QString pointer_layer_ = QStringLiteral("pointer");
  std::array<QCPItemLine*, 2> cross_;
  QList<QCPItemText*> pointer_texts_;
  std::optional<QPointF> pointer_;
  bool bounding_ = false;
};

}  // namespace velumar
