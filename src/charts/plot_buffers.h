#pragma once

#include <qcustomplot.h>

#include <QImage>
#include <QPicture>

namespace velumar {

// A paint buffer without transparent pixels, so that a plot shows it by copying.
class GroundBuffer : public QCPAbstractPaintBuffer {
 public:
  // `ground` is the colour of an empty buffer; it must outlive the object and may change.
  explicit GroundBuffer(const QColor& ground) : QCPAbstractPaintBuffer({}, 1), ground_(ground) {}

  QCPPainter* startPainting() override;
  void draw(QCPPainter* painter) const override;
  void clear(const QColor& color) override;

 private:
  void reallocateBuffer() override;

  const QColor& ground_;
  QImage image_;
};

// A paint buffer for a few lines and texts: it keeps how they are drawn, and no pixels.
class RecordedBuffer : public QCPAbstractPaintBuffer {
 public:
  RecordedBuffer() : QCPAbstractPaintBuffer({}, 1) {}

  QCPPainter* startPainting() override;
  void draw(QCPPainter* painter) const override;
  void clear(const QColor& /*color*/) override { picture_ = QPicture(); }

 private:
  void reallocateBuffer() override {}

  QPicture picture_;
};

}  // namespace velumar
