#include <QCheckBox>
#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>

#include "app/controls/control_view.h"
#include "app/controls/key_codes.h"
#include "app/theme/artwork.h"
#include "app/theme/fonts.h"
#include "forms/panels.h"

namespace velumar {

namespace {

// A button that passes press, release and click to the model. Enter clicks it too.
template <typename Base, typename Model>
class PressedView : public View<Base, Model> {
 public:
  PressedView(FormContext& context, QWidget& parent, Model& model)
      : View<Base, Model>(context, parent, model) {
    this->connect(this, &Base::pressed, this, this->To(&Model::UserPress));
    this->connect(this, &Base::released, this, this->To(&Model::UserRelease));
    this->connect(this, &Base::clicked, this, this->To(&Model::UserClick));
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (IsEnter(*event)) {
      this->click();
    } else {
      Base::keyPressEvent(event);
    }
  }
};

class ButtonView : public PressedView<QPushButton, Button> {
 public:
  ButtonView(FormContext& context, QWidget& parent, Button& button)
      : PressedView(context, parent, button) {
    setAutoDefault(false);
  }
  void Update() override {
    PressedView::Update();
    const FittedText fitted =
        FitText(ToQString(model_.Text()), DesignFont(), QSizeF(width() - 4, height() - 2));
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
  PictureButtonView(FormContext& context, QWidget& parent, PictureButton& button)
      : PressedView(context, parent, button) {
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
  }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void PaintFocus(QPainter& painter) const;
};

void PictureButtonView::paintEvent(QPaintEvent*) {
  QPixmap art = ArtPixmap(Colours(), ToQString(model_.Text()), DevicePixels(*this));
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

// A double ring, visible on both bright and dark pictures.
void PictureButtonView::PaintFocus(QPainter& painter) const {
  constexpr QColor kFocusRing(0xff, 0xc8, 0x3d);
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

class SwatchView : public View<QAbstractButton, Swatch> {
 public:
  SwatchView(FormContext& context, QWidget& parent, Swatch& swatch)
      : View(context, parent, swatch) {
    setAttribute(Qt::WA_Hover);
    connect(this, &QAbstractButton::clicked, this, To(&Swatch::UserClick));
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    constexpr double kRound = 3;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(underMouse() || hasFocus() ? Colours().accent : Colours().border);
    painter.setBrush(ToQColor(model_.ForeColour()));
    painter.drawRoundedRect(QRectF(rect()).adjusted(.5, .5, -.5, -.5), kRound, kRound);
  }
};

class LinkView : public View<QAbstractButton, Link> {
 public:
  LinkView(FormContext& context, QWidget& parent, Link& link) : View(context, parent, link) {
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    connect(this, &QAbstractButton::clicked, this, To(&Link::UserClick));
  }
  void Update() override {
    View::Update();
    setText(ToQString(model_.Text()));
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
  CheckBoxView(FormContext& context, QWidget& parent, CheckBox& box) : View(context, parent, box) {
    connect(this, &QCheckBox::clicked, this, To(&CheckBox::UserToggle));
    connect(this, &QCheckBox::clicked, this, &CheckBoxView::Update);
  }
  void Update() override {
    View::Update();
    const bool green = model_.DesignLook().backdrop == Backdrop::kGreenPaper;
    QPalette colours = palette();
    colours.setColor(QPalette::Base, green ? Colours().tick : Colours().field);
    setPalette(colours);
    const QSignalBlocker quiet(this);
    setChecked(model_.Checked());
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
