#include "app/controls/picture_view.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "app/theme/artwork.h"

namespace velumar {

namespace {

constexpr QColor kFocusRing(0xff, 0xc8, 0x3d);

// Lays a colour over what is drawn of the picture, so that each shows its state the same way.
QPixmap Tinted(const QPixmap& art, const QColor& tint) {
  QPixmap tinted = art;
  QPainter painter(&tinted);
  painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
  painter.fillRect(tinted.rect(), tint);
  return tinted;
}

}  // namespace

PictureView::PictureView(FormCanvas& canvas, QWidget& window, Picture& picture)
    : QWidget(&window), canvas_(canvas), picture_(picture) {}

void PictureView::Update() {
  ApplyCommon(*this, picture_);
  update();
}

void PictureView::paintEvent(QPaintEvent*) {
  const QPixmap art =
      ArtPixmap(canvas_.Look().theme.ArtSet(), ToQString(picture_.Text()), DevicePixels(*this));
  if (art.isNull()) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPainterPath outline = canvas_.Outline().translated(-pos());
  painter.save();
  PaintInDevicePixels(painter);
  const double scale = devicePixelRatioF();
  painter.setPen(Qt::NoPen);
  painter.setBrush(art);
  painter.drawPath(QTransform::fromScale(scale, scale).map(outline));
  painter.restore();
  painter.setPen(canvas_.Look().theme.edge);
  painter.drawPath(outline);
}

void PictureView::mousePressEvent(QMouseEvent* event) {
  canvas_.Deliver([this] { picture_.UserPress(); });
  event->accept();
}

PictureButtonView::PictureButtonView(FormCanvas& canvas, QWidget& window, PictureButton& button)
    : QAbstractButton(&window), canvas_(canvas), button_(button) {
  setFocusPolicy(Qt::TabFocus);
  setAttribute(Qt::WA_Hover);
  connect(this, &QAbstractButton::pressed, this,
          [this] { canvas_.Deliver([this] { button_.UserPress(); }); });
  connect(this, &QAbstractButton::released, this,
          [this] { canvas_.Deliver([this] { button_.UserRelease(); }); });
  connect(this, &QAbstractButton::clicked, this,
          [this] { canvas_.Deliver([this] { button_.UserClick(); }); });
}

void PictureButtonView::Update() {
  ApplyCommon(*this, button_);
  update();
}

void PictureButtonView::paintEvent(QPaintEvent*) {
  QPixmap art =
      ArtPixmap(canvas_.Look().theme.ArtSet(), ToQString(button_.Text()), DevicePixels(*this));
  if (art.isNull()) return;
  if (isDown()) {
    art = Tinted(art, QColor(0, 0, 0, 70));
  } else if (underMouse()) {
    art = Tinted(art,
                 canvas_.Look().theme.dark ? QColor(255, 255, 255, 45) : QColor(70, 140, 255, 55));
  }
  QPainter painter(this);
  if (!isEnabled()) painter.setOpacity(0.4);
  painter.save();
  PaintInDevicePixels(painter);
  painter.drawPixmap(0, 0, art);
  painter.restore();
  if (hasFocus()) PaintFocus(painter);
}

// A double ring, to be seen on bright and on dark pictures alike.
void PictureButtonView::PaintFocus(QPainter& painter) const {
  constexpr double kRound = 5;
  const QRectF edge = QRectF(rect()).adjusted(1, 1, -1, -1);
  painter.setOpacity(1);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(kFocusRing, 2));
  painter.drawRoundedRect(edge, kRound, kRound);
  painter.setPen(QPen(Qt::black, 1));
  painter.drawRoundedRect(edge.adjusted(1.5, 1.5, -1.5, -1.5), kRound - 1, kRound - 1);
}

void PictureButtonView::keyPressEvent(QKeyEvent* event) {
  if (IsEnter(*event)) {
    click();
  } else {
    QAbstractButton::keyPressEvent(event);
  }
}

}  // namespace velumar
