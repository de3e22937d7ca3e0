#include <QtWidgets>

#include "app/controls/control_view.h"

namespace velumar {

namespace {

class PictureFileView : public View<QWidget, PictureFile> {
 public:
  explicit PictureFileView(const Parts& parts) : View(parts) {
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
  }
  void Update() override {
    View::Update();
    const QString file = ToQt(model_.Text());
    if (file == shown_) return;
    shown_ = file;
    picture_ = QPixmap(file);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    constexpr double kRound = 4;
    QPainter painter(this);
    DrawRounded(painter, rect(), kRound, hasFocus() ? Colours().accent : Colours().border,
                Colours().field);
    const QRect room = rect().adjusted(2, 2, -2, -2);
    if (picture_.isNull()) {
      painter.setPen(Colours().muted);
      painter.setFont(DesignFont());
      painter.drawText(room, Qt::AlignCenter, QStringLiteral("No picture"));
      return;
    }
    // Smooth at the size in pixels of the screen, and never larger than it was.
    const double scale = devicePixelRatioF();
    const QSize pixels =
        picture_.size().boundedTo(picture_.size().scaled(room.size() * scale, Qt::KeepAspectRatio));
    QPixmap fitted = picture_.scaled(pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    fitted.setDevicePixelRatio(scale);
    QRect place({}, fitted.deviceIndependentSize().toSize());
    place.moveCenter(room.center());
    painter.drawPixmap(place.topLeft(), fitted);
  }
  void mouseDoubleClickEvent(QMouseEvent*) override { Pass(&PictureFile::UserDoubleClick); }
  void keyPressEvent(QKeyEvent* event) override {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!enter) return View::keyPressEvent(event);
    Pass(&PictureFile::UserDoubleClick);
  }
  void focusInEvent(QFocusEvent*) override { update(); }
  void focusOutEvent(QFocusEvent*) override { update(); }

 private:
  QString shown_;
  QPixmap picture_;
};

}  // namespace

void AddPictureFileView(ViewMakers& makers) {
  makers[ControlKind::kPictureFile] = MakeView<PictureFileView>;
}

}  // namespace velumar
