#pragma once

#include <qcustomplot.h>

#include <QPicture>

namespace velumar {

// A paint buffer without transparent pixels, so that a plot shows it by copying.
class GroundBuffer : public QCPPaintBufferPixmap {
 public:
  // `ground` is the colour of an empty buffer; it must outlive the object and may change.
  explicit GroundBuffer(const QColor& ground) : QCPPaintBufferPixmap({}, 1), ground_(ground) {}

  void clear(const QColor& /*color*/) override { QCPPaintBufferPixmap::clear(ground_); }

 private:
  const QColor& ground_;
};

// A paint buffer for a few lines and texts: it keeps how they are drawn, and no pixels.
class RecordedBuffer : public QCPAbstractPaintBuffer {
 public:
  RecordedBuffer() : QCPAbstractPaintBuffer({}, 1) {}

  QCPPainter* startPainting() override { return new QCPPainter(&picture_); }
  void draw(QCPPainter* painter) const override { painter->drawPicture(0, 0, picture_); }
  void clear(const QColor& /*color*/) override { picture_ = QPicture(); }

 private:
  void reallocateBuffer() override {}

  QPicture picture_;
};

}  // namespace velumar
