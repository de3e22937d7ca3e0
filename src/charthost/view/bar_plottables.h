#pragma once

#include "charthost/chart_model.h"
#include "charts/bar_plot.h"

namespace velumar {

// Marks on the axis that counts bars, at the bars where a year, month, day or hour begins. Axes of
// the same bars and width can share one: it computes its marks once until the next Forget.
class BarDateTicker : public QCPAxisTicker {
 public:
  BarDateTicker(const QCPAxis& axis, const ChartModel& model) : axis_(axis), model_(model) {}

  void generate(const QCPRange& range, const QLocale& locale, QChar format, int precision,
                QVector<double>& ticks, QVector<double>* sub_ticks,
                QVector<QString>* labels) override;
  // The marks of the last call at which a new year, month or day begins.
  const QVector<double>& StrongTicks() const { return strong_; }
  // Call before each drawing.
  void Forget() { known_ = false; }

 private:
  void Compute(const QCPRange& range);

  const QCPAxis& axis_;
  const ChartModel& model_;
  bool known_ = false;
  QCPRange range_;  // of the marks below
  int width_ = 0;
  QVector<double> bars_;
  QVector<double> strong_;
  QVector<QString> texts_;
};

// Stronger grid lines at the strong ticks.
class StrongGrid : public QCPLayerable {
 public:
  StrongGrid(BarPlot& plot, const QCPAxisRect& rect, const BarDateTicker& ticker)
      : QCPLayerable(&plot, QStringLiteral("grid")), plot_(plot), rect_(rect), ticker_(ticker) {}

 protected:
  QRect clipRect() const override { return rect_.rect(); }
  void applyDefaultAntialiasingHint(QCPPainter* painter) const override {
    painter->setAntialiasing(false);
  }
  void draw(QCPPainter* painter) override;

 private:
  const BarPlot& plot_;
  const QCPAxisRect& rect_;
  const BarDateTicker& ticker_;
};

// Candles or bars on whole pixels: some of those that a chart shows. The newest one is hollow or
// pale for as long as it is unfinished. Hollow candles have the colour of the change from the close
// before, and are filled if they close below their open. A series without open prices has bars
// without the left tick, which QCPFinancial would draw.
class PriceBars : public QCPFinancial {
 public:
  // kDown: hollow candles that close below the bar before; all other finished bars are in kUp.
  enum class Part { kUp, kDown, kUnfinished };

  PriceBars(QCPAxis* bars, QCPAxis* values, Part part);

  void SetColours(const Palette& colours) { colours_ = colours; }
  // Takes the columns that the model has laid out.
  void Fill(const ChartModel& model);

 protected:
  void draw(QCPPainter* painter) override;

 private:
  void Style(const ChartModel& model);

  Part part_;
  Palette colours_ = Palette::Light();
  bool has_opens_ = true;
};

// Outlines the body of a candle or a volume in its own colour, with sharp corners.
QPen BodyPen(const QColor& colour);

// The middle of the pixel in which a place of the axis lies, so that bodies and wicks are centred.
double SnappedPlace(const QCPAxis& bars, double place);

// How far a body reaches to the left and the right of its wick, in whole pixels.
int BodyReach(const ChartModel& model);

}  // namespace velumar
