#include "charthost/view/drawing_icon.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <functional>

namespace velumar {
namespace {

// On a square of 20 by 20.
using Picture = void (*)(QPainter&);

class LineArt : public QIconEngine {
 public:
  explicit LineArt(Picture picture) : picture_(picture) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    constexpr double kSide = 20;
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rect.topLeft());
    painter->scale(rect.width() / kSide, rect.height() / kSide);
    const QColor colour = QApplication::palette().color(group, QPalette::WindowText);
    painter->setPen(QPen(colour, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    picture_(*painter);
    painter->restore();
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap drawn(size);
    drawn.fill(Qt::transparent);
    QPainter painter(&drawn);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return drawn;
  }
  QIconEngine* clone() const override { return new LineArt(picture_); }

 private:
  Picture picture_;
};

void Line(QPainter& painter, QPointF from, QPointF to) { painter.drawLine(from, to); }

void Dot(QPainter& painter, QPointF centre) {
  painter.save();
  painter.setBrush(painter.pen().color());
  painter.setPen(Qt::NoPen);
  painter.drawEllipse(centre, 2.2, 2.2);
  painter.restore();
}

// An arrow that turns back to the left.
void Turn(QPainter& painter) {
  QPainterPath path(QPointF(4, 8));
  path.lineTo(12, 8);
  path.cubicTo(17, 8, 17, 16, 12, 16);
  path.lineTo(8, 16);
  painter.drawPath(path);
  painter.drawPolyline(QPolygonF({{8, 4}, {4, 8}, {8, 12}}));
}

Picture PictureOf(DrawingKind kind) {
  switch (kind) {
    case DrawingKind::kHorizontalLine:
      return [](QPainter& p) {
        Line(p, {2, 10}, {18, 10});
        Dot(p, {10, 10});
      };
    case DrawingKind::kTrendLine:
      return [](QPainter& p) {
        Line(p, {4, 16}, {16, 4});
        Dot(p, {4, 16});
        Dot(p, {16, 4});
      };
    case DrawingKind::kRay:
      return [](QPainter& p) {
        Line(p, {4, 16}, {19, 1});
        Dot(p, {4, 16});
        Dot(p, {11, 9});
      };
    case DrawingKind::kChannel:
      return [](QPainter& p) {
        Line(p, {2, 12}, {13, 2});
        Line(p, {7, 18}, {18, 8});
      };
    case DrawingKind::kRectangle:
      return [](QPainter& p) { p.drawRect(QRectF(3, 5, 14, 10)); };
    case DrawingKind::kFibonacci:
      return [](QPainter& p) {
        for (const double y : {3.0, 8.0, 12.0, 17.0}) Line(p, {3, y}, {17, y});
        p.setPen(QPen(p.pen().color(), 1, Qt::DotLine));
        Line(p, {3, 17}, {17, 3});
      };
    case DrawingKind::kText:
      return [](QPainter& p) {
        Line(p, {4, 4}, {16, 4});
        Line(p, {10, 4}, {10, 17});
        Line(p, {8, 17}, {12, 17});
      };
    case DrawingKind::kArrow:
      return [](QPainter& p) {
        Line(p, {3, 17}, {16, 4});
        p.drawPolyline(QPolygonF({{9, 4}, {16, 4}, {16, 11}}));
      };
  }
  return nullptr;
}

Picture PictureOf(DrawingAct act) {
  switch (act) {
    case DrawingAct::kSelect:
      return [](QPainter& p) {
        p.drawPolygon(
            QPolygonF({{5, 2}, {16, 11}, {11, 12}, {14, 17}, {12, 18}, {9, 13}, {5, 16}}));
      };
    case DrawingAct::kUndo:
      return Turn;
    case DrawingAct::kRedo:
      return [](QPainter& p) {
        p.translate(20, 0);
        p.scale(-1, 1);
        Turn(p);
      };
    case DrawingAct::kDuplicate:
      return [](QPainter& p) {
        p.drawRect(QRectF(3, 3, 10, 10));
        p.drawPolyline(QPolygonF({{16, 7}, {17, 7}, {17, 17}, {7, 17}, {7, 16}}));
      };
    case DrawingAct::kDelete:
      return [](QPainter& p) {
        Line(p, {3, 5}, {17, 5});
        Line(p, {8, 3}, {12, 3});
        p.drawPolyline(QPolygonF({{5, 5}, {6, 17}, {14, 17}, {15, 5}}));
      };
    case DrawingAct::kList:
      return [](QPainter& p) {
        for (const double y : {5.0, 10.0, 15.0}) {
          Dot(p, {4, y});
          Line(p, {8, y}, {17, y});
        }
      };
  }
  return nullptr;
}

}  // namespace

QIcon DrawingIcon(DrawingKind kind) { return QIcon(new LineArt(PictureOf(kind))); }

QIcon DrawingIcon(DrawingAct act) { return QIcon(new LineArt(PictureOf(act))); }

}  // namespace velumar
