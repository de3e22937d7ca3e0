#include "app/controls/control_view.h"

#include <QWidget>
#include <cmath>

#include "app/controls/chart_view.h"
#include "app/controls/combo_box_view.h"
#include "app/controls/date_picker_view.h"
#include "app/controls/frame_view.h"
#include "app/controls/label_view.h"
#include "app/controls/list_box_view.h"
#include "app/controls/panel_views.h"
#include "app/controls/picture_view.h"
#include "app/controls/small_views.h"
#include "app/controls/table_view.h"
#include "app/controls/text_box_view.h"
#include "forms/form.h"

namespace velumar {

namespace {

// The ground with a breath of the colour.
QColor Mixed(const QColor& ground, const QColor& colour) {
  constexpr float kPart = 0.18F;
  const auto mix = [](float a, float b) { return a + (b - a) * kPart; };
  return QColor::fromRgbF(mix(ground.redF(), colour.redF()), mix(ground.greenF(), colour.greenF()),
                          mix(ground.blueF(), colour.blueF()));
}

}  // namespace

int LogicalPixels(float twips) { return static_cast<int>(std::lround(twips / kTwipsPerPixel)); }

QRect LogicalPlace(const Control& control) {
  return {LogicalPixels(control.Left()), LogicalPixels(control.Top()),
          LogicalPixels(control.Width()), LogicalPixels(control.Height())};
}

bool IsEnter(const QKeyEvent& event) {
  const bool enter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
  return enter && !event.isAutoRepeat();
}

QString ToQString(std::string_view text) { return QString::fromUtf8(text); }

void ApplyCommon(QWidget& widget, const Control& control) {
  const QString tip = ToQString(control.ToolTip());
  widget.setGeometry(LogicalPlace(control));
  widget.setVisible(control.Visible());
  widget.setEnabled(control.Enabled());
  widget.setToolTip(tip);
  widget.setObjectName(ToQString(control.Name()));
  widget.setAccessibleName(ToQString(control.SpokenName()).trimmed());
}

QColor TextColour(const Control& control, const QColor& ground, const Theme& theme) {
  return ReadableOn(ground,
                    control.ForeColour() == 0 ? theme.text : ToQColor(control.ForeColour()));
}

void ApplyFieldColours(QWidget& widget, const Control& control, const Theme& theme) {
  QPalette palette = widget.palette();
  const bool blue = control.DesignLook().backdrop == Backdrop::kBluePaper;
  const QColor ground = blue ? Mixed(theme.field, theme.accent) : theme.field;
  const QColor text = TextColour(control, ground, theme);
  for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
    palette.setColor(group, QPalette::Text, text);
  }
  // A text that nobody types, but everybody reads.
  if (blue) {
    palette.setColor(QPalette::Base, ground);
    palette.setColor(QPalette::Text, text);
  }
  widget.setPalette(palette);
}

ControlView* MakeControlView(FormCanvas& canvas, QWidget& window, Control& control) {
  switch (control.Kind()) {
    case ControlKind::kPicture:
      return new PictureView(canvas, window, static_cast<Picture&>(control));
    case ControlKind::kPictureButton:
      return new PictureButtonView(canvas, window, static_cast<PictureButton&>(control));
    case ControlKind::kLabel:
      return new LabelView(canvas, window, static_cast<Label&>(control));
    case ControlKind::kTextBox:
      return new TextBoxView(canvas, window, static_cast<TextBox&>(control));
    case ControlKind::kButton:
      return new ButtonView(canvas, window, static_cast<Button&>(control));
    case ControlKind::kComboBox:
      return new ComboBoxView(canvas, window, static_cast<ComboBox&>(control));
    case ControlKind::kDatePicker:
      return new DatePickerView(canvas, window, static_cast<DatePicker&>(control));
    case ControlKind::kSlider:
      return new SliderView(canvas, window, static_cast<Slider&>(control));
    case ControlKind::kProgressLine:
      return new ProgressLineView(canvas, window, static_cast<ProgressLine&>(control));
    case ControlKind::kCheckBox:
      return new CheckBoxView(canvas, window, static_cast<CheckBox&>(control));
    case ControlKind::kFrame:
      return new FrameView(canvas, window, static_cast<Frame&>(control));
    case ControlKind::kListBox:
      return new ListBoxView(canvas, window, static_cast<ListBox&>(control));
    case ControlKind::kToolbar:
      return new ToolbarView(canvas, window, static_cast<Toolbar&>(control));
    case ControlKind::kTabBar:
      return new TabBarView(canvas, window, static_cast<TabBar&>(control));
    case ControlKind::kSwatch:
      return new SwatchView(canvas, window, static_cast<Swatch&>(control));
    case ControlKind::kTable:
      return new TableView(canvas, window, static_cast<Table&>(control));
    case ControlKind::kChart:
      return new ChartView(canvas, window, static_cast<Chart&>(control));
    case ControlKind::kChartPicture:
      return new ChartPictureView(canvas, window, static_cast<ChartPicture&>(control));
    case ControlKind::kScrollBar:
      return new ScrollBarView(canvas, window, static_cast<ScrollBar&>(control));
    case ControlKind::kMenu:
      return new MenuView(canvas, window, static_cast<Menu&>(control));
    case ControlKind::kLine:
      return new LineView(window, static_cast<Line&>(control));
    case ControlKind::kSheet:
      return new SheetView(canvas, window, static_cast<Sheet&>(control));
    case ControlKind::kLink:
      return new LinkView(canvas, window, static_cast<Link&>(control));
  }
  return nullptr;
}

}  // namespace velumar
