#include "charts/plot_buffers.h"

namespace velumar {

QCPPainter* GroundBuffer::startPainting() { return new QCPPainter(&image_); }

void GroundBuffer::draw(QCPPainter* painter) const { painter->drawImage(0, 0, image_); }

void GroundBuffer::clear(const QColor& /*color*/) { image_.fill(ground_); }

void GroundBuffer::reallocateBuffer() {
  setInvalidated();
  image_ = QImage((QSizeF(mSize) * mDevicePixelRatio).toSize(), QImage::Format_RGB32);
  image_.setDevicePixelRatio(mDevicePixelRatio);
}

QCPPainter* RecordedBuffer::startPainting() { return new QCPPainter(&picture_); }

void RecordedBuffer::draw(QCPPainter* painter) const { painter->drawPicture(0, 0, picture_); }

}  // namespace velumar
