#include "app/controls/control_view.h"

#include <QImage>
#include <cmath>
#include <exception>
#include <utility>

#include "app/theme/artwork.h"
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
  QColor background = look_.theme.window;
  for (const Control* control : form_.Controls()) {
    const QRect whole = LogicalPlace(*control);
    if (control->Kind() == ControlKind::kFrame && whole.contains(place)) {
      background = look_.theme.field;
    }
    if (control->Kind() != ControlKind::kPicture || !control->Visible() ||
        !whole.intersects(place)) {
      continue;
    }
    const QPixmap art = ArtPixmap(look_.theme, ToQString(control->Text()), whole.size());
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

QString ToQString(std::string_view text) { return QString::fromUtf8(text); }

void ApplyCommon(QWidget& widget, const Control& control) {
  widget.setGeometry(LogicalPlace(control));
  widget.setVisible(control.Visible());
  widget.setEnabled(control.Enabled());
  widget.setToolTip(ToQString(control.ToolTip()));
  widget.setObjectName(ToQString(control.Name()));
  widget.setAccessibleName(ToQString(control.SpokenName()).trimmed());
}

QColor TextColour(const Control& control, const QColor& background, const Theme& theme) {
  return ReadableOn(background,
                    control.ForeColour() == 0 ? theme.text : ToQColor(control.ForeColour()));
}

void ApplyFieldColours(QWidget& widget, const Control& control, const Theme& theme) {
  QPalette palette = widget.palette();
  const bool blue = control.DesignLook().backdrop == Backdrop::kBluePaper;
  const QColor background = blue ? Mixed(theme.field, theme.accent) : theme.field;
  const QColor text = TextColour(control, background, theme);
  for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
    palette.setColor(group, QPalette::Text, text);
  }
  // Text on blue is read, never typed, so it is as clear when the box is disabled.
  if (blue) {
    palette.setColor(QPalette::Base, background);
    palette.setColor(QPalette::Text, text);
  }
  widget.setPalette(palette);
}

ControlView* MakeControlView(FormContext& context, QWidget& parent, Control& control) {
  static const ViewMakers makers = [] {
    ViewMakers all;
    for (const auto add :
         {AddBarViews, AddButtonViews, AddSurfaceViews, AddListViews, AddChartViews,
          AddComboBoxView, AddDatePickerView, AddLabelView, AddTextBoxView}) {
      add(all);
    }
    return all;
  }();
  return makers.at(control.Kind())(context, parent, control);
}

}  // namespace velumar
