#include <QtWidgets>

#include "app/controls/control_view.h"
#include "forms/panels.h"

namespace velumar {

namespace {

// What other controls lie on. A press of any mouse button goes to the model.
template <typename Model>
class SurfaceView : public View<QWidget, Model> {
 public:
  using View<QWidget, Model>::View;

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    this->Pass(&Model::UserPress);
    event->accept();
  }
};

// A picture that fills the window, cut to the window's outline.
class PictureView : public SurfaceView<Picture> {
 public:
  using SurfaceView::SurfaceView;

 protected:
  void paintEvent(QPaintEvent*) override {
    const QPixmap art = ArtPixmap(Colours(), ToQt(model_.Text()), DevicePixels(*this));
    if (art.isNull()) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPainterPath outline = context_.Outline().translated(-pos());
    painter.save();
    PaintInDevicePixels(painter);
    const double scale = devicePixelRatioF();
    painter.setPen(Qt::NoPen);
    painter.setBrush(art);
    painter.drawPath(QTransform::fromScale(scale, scale).map(outline));
    painter.restore();
    painter.setPen(Colours().edge);
    painter.drawPath(outline);
  }
};

class FrameView : public SurfaceView<Frame> {
 public:
  using SurfaceView::SurfaceView;

 protected:
  void paintEvent(QPaintEvent*) override {
    constexpr double kRound = 4;
    constexpr int kCaptionLeft = 10;
    constexpr int kCaptionRoom = 4;
    QPainter painter(this);
    painter.setFont(DesignFont());
    const QFontMetrics metrics(painter.font());
    const QString caption = metrics.elidedText(ToQt(model_.Text()).trimmed(), Qt::ElideMiddle,
                                               width() - 2 * (kCaptionLeft + kCaptionRoom));
    const int line = caption.isEmpty() ? 0 : metrics.height() / 2;
    // A frame may reach slightly over the edge of its window.
    const QRect seen = rect() & parentWidget()->rect().translated(-pos());
    DrawRounded(painter, seen.adjusted(0, line, 0, 0), kRound, Colours().border, Colours().field);
    if (caption.isEmpty()) return;
    const int width = metrics.horizontalAdvance(caption) + 2 * kCaptionRoom;
    const QRectF plate(kCaptionLeft, 0, width, metrics.height());
    DrawRounded(painter, plate, kRound, Qt::NoPen, Colours().field);
    painter.setPen(ReadableOn(Colours().field, ToQColor(model_.ForeColour())));
    painter.drawText(plate, Qt::AlignCenter, caption);
  }
};

class LineView : public View<QWidget, Line> {
 public:
  using View::View;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter(this).fillRect(rect(), ToQColor(model_.ForeColour()));
  }
};

class SheetView : public View<QWidget, Sheet> {
 public:
  using View::View;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setPen(Colours().border);
    painter.setBrush(Qt::white);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
  }
};

}  // namespace

void AddSurfaceViews(ViewMakers& makers) {
  makers[ControlKind::kPicture] = MakeView<PictureView>;
  makers[ControlKind::kFrame] = MakeView<FrameView>;
  makers[ControlKind::kLine] = MakeView<LineView>;
  makers[ControlKind::kSheet] = MakeView<SheetView>;
}

}  // namespace velumar
