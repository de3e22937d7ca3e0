#include "app/controls/control_view.h"

#include <QHash>
#include <QImage>
#include <cmath>
#include <exception>

#include "forms/form.h"

namespace velumar {

namespace {

// The background with a little of the colour.
QColor Mixed(const QColor& background, const QColor& colour) {
  constexpr float kPart = 0.18F;
  const auto mix = [](float a, float b) { return a + (b - a) * kPart; };
  return QColor::fromRgbF(mix(background.redF(), colour.redF()),
                          mix(background.greenF(), colour.greenF()),
                          mix(background.blueF(), colour.blueF()));
}

}  // namespace

FormContext::FormContext(QWidget& window, const Form& form, const Appearance& look,
                         ErrorReport report)
    : window_(window), form_(form), look_(look), report_(std::move(report)) {}

void FormContext::Deliver(const std::function<void()>& event) {
  if (retired_) return;
  ++running_handlers_;
  try {
    event();
  } catch (const std::exception& error) {
    report_(error.what());
  }
  if (--running_handlers_ == 0 && retired_) window_.deleteLater();
}

void FormContext::Retire() {
  retired_ = true;
  if (running_handlers_ == 0) window_.deleteLater();
}

QColor FormContext::BackgroundAt(const QRect& place) const {
  QColor background = look_.palette.window;
  for (const Control* control : form_.Controls()) {
    const QRect whole = LogicalPlace(*control);
    if (control->Kind() == ControlKind::kFrame && whole.contains(place)) {
      background = look_.palette.field;
    }
    if (control->Kind() != ControlKind::kPicture || !control->Visible() ||
        !whole.intersects(place)) {
      continue;
    }
    const QPixmap art = ArtPixmap(look_.palette, ToQt(control->Text()), whole.size());
    if (art.isNull()) continue;
    const QImage part = art.copy(place.intersected(whole).translated(-whole.topLeft())).toImage();
    background =
        part.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).pixelColor(0, 0);
  }
  return background;
}

QPainterPath FormContext::Outline() const {
  QPainterPath outline;
  outline.addRoundedRect(QRectF(window_.rect()).adjusted(.5, .5, -.5, -.5),
                         form_.CornerWidth() / 2.0, form_.CornerHeight() / 2.0);
  return outline;
}

int LogicalPixels(float twips) { return static_cast<int>(std::lround(twips / kTwipsPerPixel)); }

QRect LogicalPlace(const Control& control) {
  return {LogicalPixels(control.Left()), LogicalPixels(control.Top()),
          LogicalPixels(control.Width()), LogicalPixels(control.Height())};
}

void ApplyCommon(QWidget& widget, const Control& control) {
  widget.setGeometry(LogicalPlace(control));
  widget.setVisible(control.Visible());
  widget.setEnabled(control.Enabled());
  widget.setToolTip(ToQt(control.ToolTip()));
  widget.setObjectName(ToQt(control.Name()));
  widget.setAccessibleName(ToQt(control.SpokenName()).trimmed());
}

QColor TextColour(const Control& control, const QColor& background, const Palette& palette) {
  return ReadableOn(background,
                    control.ForeColour() == 0 ? palette.text : ToQColor(control.ForeColour()));
}

void ApplyFieldColours(QWidget& widget, const Control& control, const Palette& palette) {
  QPalette colours = widget.palette();
  const bool blue = control.DesignLook().backdrop == Backdrop::kBluePaper;
  const QColor background = blue ? Mixed(palette.field, palette.accent) : palette.field;
  const QColor text = TextColour(control, background, palette);
  for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
    colours.setColor(group, QPalette::Text, text);
  }
  // Text on blue is read, never typed, so it is as clear when the box is disabled.
  if (blue) {
    colours.setColor(QPalette::Base, background);
    colours.setColor(QPalette::Text, text);
  }
  widget.setPalette(colours);
}

int VirtualKeyCode(const QKeyEvent& event) {
  const int key = event.key();
  // Space, digits and letters: the code is the character itself.
  if (key == Qt::Key_Space || (key >= Qt::Key_0 && key <= Qt::Key_9) ||
      (key >= Qt::Key_A && key <= Qt::Key_Z)) {
    return key;
  }
  constexpr int kF1 = 112;
  if (key >= Qt::Key_F1 && key <= Qt::Key_F16) return kF1 + key - Qt::Key_F1;
  static const QHash<int, int> kNamedKeys{
      {Qt::Key_Backspace, 8}, {Qt::Key_Tab, 9},       {Qt::Key_Backtab, 9},  {Qt::Key_Return, 13},
      {Qt::Key_Enter, 13},    {Qt::Key_Shift, 16},    {Qt::Key_Control, 17}, {Qt::Key_Alt, 18},
      {Qt::Key_Pause, 19},    {Qt::Key_CapsLock, 20}, {Qt::Key_Escape, 27},  {Qt::Key_PageUp, 33},
      {Qt::Key_PageDown, 34}, {Qt::Key_End, 35},      {Qt::Key_Home, 36},    {Qt::Key_Left, 37},
      {Qt::Key_Up, 38},       {Qt::Key_Right, 39},    {Qt::Key_Down, 40},    {Qt::Key_Insert, 45},
      {Qt::Key_Delete, 46},   {Qt::Key_NumLock, 144}};
  return kNamedKeys.value(key);
}

ControlView* MakeControlView(FormContext& context, QWidget& parent, Control& control) {
  static const ViewMakers makers = [] {
    ViewMakers all;
    for (const auto add :
         {AddBarViews, AddButtonViews, AddSurfaceViews, AddListViews, AddChartViews,
          AddComboBoxView, AddDatePickerView, AddLabelView, AddTextBoxView, AddPictureFileView}) {
      add(all);
    }
    return all;
  }();
  return makers.at(control.Kind())(context, parent, control);
}

}  // namespace velumar
