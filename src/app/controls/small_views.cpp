#include "app/controls/small_views.h"

#include <QKeyEvent>
#include <QPainter>
#include <QSignalBlocker>

#include "app/theme/text_fit.h"

namespace velumar {

namespace {

constexpr int kProgressSteps = 1000;

}  // namespace

ButtonView::ButtonView(FormCanvas& canvas, QWidget& window, Button& button)
    : QPushButton(&window), canvas_(canvas), button_(button) {
  setAutoDefault(false);
  connect(this, &QPushButton::pressed, this,
          [this] { canvas_.Deliver([this] { button_.UserPress(); }); });
  connect(this, &QPushButton::released, this,
          [this] { canvas_.Deliver([this] { button_.UserRelease(); }); });
  connect(this, &QPushButton::clicked, this,
          [this] { canvas_.Deliver([this] { button_.UserClick(); }); });
}

void ButtonView::Update() {
  ApplyCommon(*this, button_);
  const QString caption = ToQString(button_.Text());
  const FittedText fitted = FitText(caption, canvas_.Look().faces.For(button_.DesignLook()),
                                    QSizeF(width() - 4, height() - 2));
  setFont(fitted.font);
  // An ampersand stands before the letter of the button's key.
  setText(fitted.shown);
}

void ButtonView::keyPressEvent(QKeyEvent* event) {
  if (IsEnter(*event)) {
    click();
  } else {
    QPushButton::keyPressEvent(event);
  }
}

SliderView::SliderView(FormCanvas& canvas, QWidget& window, Slider& slider)
    : QSlider(Qt::Horizontal, &window), canvas_(canvas), slider_(slider) {
  setRange(slider.Limits().low, slider.Limits().high);
  setSingleStep(slider.Limits().step);
  setPageStep(slider.Limits().step);
  connect(this, &QSlider::valueChanged, this, [this](int value) {
    canvas_.Deliver([this, value] { slider_.UserMove(value); });
    Update();
  });
}

void SliderView::Update() {
  ApplyCommon(*this, slider_);
  if (slider_.Value() == value()) return;
  const QSignalBlocker quiet(this);
  setValue(slider_.Value());
}

ProgressLineView::ProgressLineView(FormCanvas& canvas, QWidget& window, ProgressLine& line)
    : QProgressBar(&window), canvas_(canvas), line_(line) {
  setRange(0, kProgressSteps);
}

void ProgressLineView::Update() {
  ApplyCommon(*this, line_);
  setValue(static_cast<int>(line_.Fraction() * kProgressSteps));  // for screen readers
  update();
}

void ProgressLineView::paintEvent(QPaintEvent*) {
  if (line_.ToolTip().empty()) return;  // no run yet
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const double radius = height() / 2.0;
  painter.setBrush(canvas_.Look().theme.border);
  painter.drawRoundedRect(rect(), radius, radius);
  painter.setBrush(canvas_.Look().theme.accent);
  painter.drawRoundedRect(QRectF(0, 0, width() * double{line_.Fraction()}, height()), radius,
                          radius);
}

CheckBoxView::CheckBoxView(FormCanvas& canvas, QWidget& window, CheckBox& box)
    : QCheckBox(&window), canvas_(canvas), box_(box) {
  connect(this, &QCheckBox::clicked, this, [this] {
    canvas_.Deliver([this] { box_.UserToggle(); });
    Update();
  });
}

void CheckBoxView::Update() {
  ApplyCommon(*this, box_);
  QPalette colours = palette();
  const Theme& theme = canvas_.Look().theme;
  colours.setColor(QPalette::Base,
                   box_.DesignLook().backdrop == Backdrop::kGreenPaper ? theme.tick : theme.field);
  setPalette(colours);
  const QSignalBlocker quiet(this);
  setChecked(box_.Checked());
}

}  // namespace velumar
