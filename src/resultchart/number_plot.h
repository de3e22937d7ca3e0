#pragma once

#include <qcustomplot.h>

#include <memory>

#include "charts/palette.h"
#include "progress/number_picture.h"

namespace velumar {

// A picture of numbers: panes of lines, areas, bars and points over one axis.
class NumberPlot : public QCustomPlot {
  Q_OBJECT

 public:
  explicit NumberPlot(QWidget* parent = nullptr);

  void SetPicture(std::shared_ptr<const NumberPicture> picture);
  void SetColours(const Palette& colours);

  // Draws the picture at that size in units; as vectors if the painter's device takes them.
  void PaintTo(QCPPainter& painter, const QSize& size);
  // Saves it in the format of the extension: see SavePicture in charts/picture_file.h.
  void SaveTo(const QSize& size, const QString& file);

 private:
  void Build();
  void AddTitle(const QString& text);
  void AddPane(const NumberPicture::Pane& pane, int row, bool last);
  // `distance` is that of bars.
  void AddSeries(const NumberPicture::Series& series, double distance, QCPAxis* x, QCPAxis* y);
  void AddMark(QCPAxis* x, QCPAxis* y);
  void StyleAxis(QCPAxis& axis) const;
  void SpanValues(QCPAxis& y, const NumberPicture::Pane& pane) const;
  QCPRange SpanOfX() const;
  // Labels turn if they have no room side by side, and some are left out if they still don't.
  void FitLabels(const QSize& size);
  QColor ColourOf(NumberPicture::Tone tone) const;

  std::shared_ptr<const NumberPicture> picture_;
  Palette colours_ = Palette::Light();
  QCPMarginGroup* left_sides_;   // of the panes, whose values begin at the same place
  QCPAxis* labelled_ = nullptr;  // the lowest axis of x
};

}  // namespace velumar
