#include <QtWidgets>

#include "app/controls/control_view.h"
#include "forms/panels.h"

namespace velumar {

namespace {

// A button that passes press, release and click to the model. Enter clicks it too.
template <typename Base, typename Model>
class PressedView : public View<Base, Model> {
 public:
  explicit PressedView(const ViewParts<Model>& parts) : View<Base, Model>(parts) {
    this->connect(this, &Base::pressed, this, this->To(&Model::UserPress));
    this->connect(this, &Base::released, this, this->To(&Model::UserRelease));
    this->connect(this, &Base::clicked, this, this->To(&Model::UserClick));
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!enter || event->isAutoRepeat()) return Base::keyPressEvent(event);
    this->click();
  }
};

class ButtonView : public PressedView<QPushButton, Button> {
 public:
  explicit ButtonView(const Parts& parts) : PressedView(parts) { setAutoDefault(false); }
  void Update() override {
    PressedView::Update();
    const FittedText fitted =
        FitText(ToQt(model_.Text()), DesignFont(), QSizeF(width() - 4, height() - 2));
    setFont(fitted.font);
    setText(fitted.shown);  // with an ampersand before the letter of its shortcut
  }
};

// Lays a colour over the opaque part of a picture.
QPixmap Tinted(const QPixmap& art, const QColor& tint) {
  QPixmap tinted = art;
  QPainter painter(&tinted);
  painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
  painter.fillRect(tinted.rect(), tint);
  return tinted;
}

// A button that is all picture. A click leaves the keyboard focus where it is.
class PictureButtonView : public PressedView<QAbstractButton, PictureButton> {
 public:
  explicit PictureButtonView(const Parts& parts) : PressedView(parts) {
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPixmap art = ArtPixmap(Colours(), ToQt(model_.Text()), DevicePixels(*this));
    if (art.isNull()) return;
    if (isDown()) {
      art = Tinted(art, QColor(0, 0, 0, 70));
    } else if (underMouse()) {
      art = Tinted(art, Colours().dark ? QColor(255, 255, 255, 45) : QColor(70, 140, 255, 55));
    }
    QPainter painter(this);
    if (!isEnabled()) painter.setOpacity(0.4);
    painter.save();
    PaintInDevicePixels(painter);
    painter.drawPixmap(0, 0, art);
    painter.restore();
    if (hasFocus()) PaintFocus(painter);
  }

 private:
  // A double ring, visible on both bright and dark pictures.
  void PaintFocus(QPainter& painter) const {
    constexpr QColor kFocusRing(0xff, 0xc8, 0x3d);
    constexpr double kRound = 5;
    const QRectF edge(rect());
    painter.setOpacity(1);
    DrawRounded(painter, edge.adjusted(.5, .5, -.5, -.5), kRound, QPen(kFocusRing, 2));
    DrawRounded(painter, edge.adjusted(2, 2, -2, -2), kRound - 1, QPen(Qt::black, 1));
  }
};

class SwatchView : public View<QAbstractButton, Swatch> {
 public:
  explicit SwatchView(const Parts& parts) : View(parts) {
    setAttribute(Qt::WA_Hover);
    connect(this, &QAbstractButton::clicked, this, To(&Swatch::UserClick));
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    constexpr double kRound = 3;
    QPainter painter(this);
    DrawRounded(painter, rect(), kRound,
                underMouse() || hasFocus() ? Colours().accent : Colours().border,
                ToQColor(model_.ForeColour()));
  }
};

class LinkView : public View<QAbstractButton, Link> {
 public:
  explicit LinkView(const Parts& parts) : View(parts) {
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    connect(this, &QAbstractButton::clicked, this, To(&Link::UserClick));
  }
  void Update() override {
    View::Update();
    setText(ToQt(model_.Text()));
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QFont font = DesignFont();
    font.setUnderline(underMouse() || hasFocus());
    QPainter painter(this);
    painter.setFont(font);
    painter.setPen(Colours().accent);
    painter.drawText(rect(), Qt::AlignRight | Qt::AlignVCenter, text());
  }
};

class CheckBoxView : public View<QCheckBox, CheckBox> {
 public:
  explicit CheckBoxView(const Parts& parts) : View(parts) {
    connect(this, &QCheckBox::clicked, this, To(&CheckBox::UserToggle));
    connect(this, &QCheckBox::clicked, this, &CheckBoxView::Update);
  }
  void Update() override {
    View::Update();
    const bool green = model_.DesignLook().backdrop == Backdrop::kGreenPaper;
    QPalette colours = palette();
    colours.setColor(QPalette::Base, green ? Colours().tick : Colours().field);
    setPalette(colours);
    if (!model_.Text().empty()) ShowText();
    const QSignalBlocker quiet(this);
    setChecked(model_.Checked());
  }

 private:
  void ShowText() {
    const int box = style()->pixelMetric(QStyle::PM_IndicatorWidth) +
                    style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing);
    const QString text = ToQt(model_.Text());
    const FittedText fitted = FitText(text, DesignFont(), QSizeF(width() - box - 2, height()));
    setFont(fitted.font);
    setText(fitted.shown);
    if (fitted.shortened) setToolTip(text + QLatin1Char('\n') + ToQt(model_.ToolTip()));
  }
};

}  // namespace

void AddButtonViews(ViewMakers& makers) {
  makers[ControlKind::kButton] = MakeView<ButtonView>;
  makers[ControlKind::kPictureButton] = MakeView<PictureButtonView>;
  makers[ControlKind::kSwatch] = MakeView<SwatchView>;
  makers[ControlKind::kLink] = MakeView<LinkView>;
  makers[ControlKind::kCheckBox] = MakeView<CheckBoxView>;
}

}  // namespace velumar
