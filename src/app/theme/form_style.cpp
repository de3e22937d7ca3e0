#include <QtWidgets>
#include <algorithm>

#include "app/theme/theme.h"

namespace velumar {

namespace {

constexpr double kFieldRound = 3.5;
constexpr int kArrowRoom = 16;
constexpr int kHandle = 10;
constexpr int kTickBox = 14;

// True for the line in a combo box or date picker, which draws the background itself.
bool IsPartOfBox(const QWidget* widget) {
  const QWidget* parent = widget == nullptr ? nullptr : widget->parentWidget();
  return qobject_cast<const QComboBox*>(parent) != nullptr ||
         qobject_cast<const QAbstractSpinBox*>(parent) != nullptr;
}

// Draws boxes, lists, sliders, ticks and buttons flat, with round corners, and small enough for
// windows whose lines are thirteen pixels high.
class FormStyle : public QProxyStyle {
 public:
  explicit FormStyle(const Palette& palette)
      : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))), palette_(palette) {}

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                       const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    if (hint == SH_ComboBox_Popup) return 0;  // the list opens below the box
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
    return QProxyStyle::styleHint(hint, option, widget, data);
  }

 private:
  void DrawFrame(QPainter& painter, const QRect& place, bool focus, const QColor& fill) const {
    DrawRounded(painter, place, kFieldRound,
                QPen(focus ? palette_.accent : palette_.border, focus ? 1.5 : 1), fill);
  }
  void DrawField(QPainter& painter, const QStyleOption& option, bool focus) const {
    const bool enabled = option.state.testFlag(State_Enabled);
    DrawFrame(
        painter, option.rect, focus,
        option.palette.color(enabled ? QPalette::Normal : QPalette::Disabled, QPalette::Base));
  }
  void DrawTick(QPainter& painter, const QStyleOption& option) const;
  void DrawButton(QPainter& painter, const QStyleOption& option) const;
  void DrawComboBox(QPainter& painter, const QStyleOptionComplex& option,
                    const QWidget* widget) const;
  void DrawSlider(QPainter& painter, const QStyleOptionComplex& option,
                  const QWidget* widget) const;

  Palette palette_;
};

void FormStyle::DrawTick(QPainter& painter, const QStyleOption& option) const {
  const bool active = option.state & (State_HasFocus | State_MouseOver);
  DrawField(painter, option, active);
  if (!option.state.testFlag(State_On)) return;
  const QRectF box = QRectF(option.rect).adjusted(.5, .5, -.5, -.5);
  const auto at = [&box](double x, double y) {
    return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
  };
  painter.setPen(
      QPen(option.palette.color(QPalette::Text), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPolyline(QPolygonF({at(.25, .52), at(.43, .7), at(.76, .3)}));
}

void FormStyle::DrawButton(QPainter& painter, const QStyleOption& option) const {
  QColor face = palette_.button;
  if (option.state & (State_Sunken | State_On)) {
    face = face.darker(115);
  } else if (option.state.testFlag(State_MouseOver)) {
    face = palette_.dark ? face.lighter(118) : QColor(0xe0, 0xec, 0xff);
  }
  DrawFrame(painter, option.rect, option.state.testFlag(State_HasFocus), face);
}

void FormStyle::DrawComboBox(QPainter& painter, const QStyleOptionComplex& option,
                             const QWidget* widget) const {
  DrawField(painter, option, option.state.testFlag(State_HasFocus));
  const QRectF arrow = subControlRect(CC_ComboBox, &option, SC_ComboBoxArrow, widget);
  const bool enabled = option.state.testFlag(State_Enabled);
  const bool over = option.state.testFlag(State_MouseOver);
  const QColor ink = !enabled ? palette_.faint : over ? palette_.accent : palette_.text;
  painter.setPen(QPen(ink, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  const QPolygonF chevron({{-3.5, -1.75}, {0, 1.75}, {3.5, -1.75}});
  painter.drawPolyline(chevron.translated(arrow.center()));
}

void FormStyle::DrawSlider(QPainter& painter, const QStyleOptionComplex& option,
                           const QWidget* widget) const {
  constexpr double kGroove = 4;
  const QRectF handle = subControlRect(CC_Slider, &option, SC_SliderHandle, widget);
  QRectF groove(option.rect.left() + 1, 0, option.rect.width() - 2, kGroove);
  groove.moveTop(QRectF(option.rect).center().y() - kGroove / 2);
  DrawRounded(painter, groove, kGroove / 2, Qt::NoPen, palette_.groove);
  groove.setRight(handle.center().x());
  DrawRounded(painter, groove, kGroove / 2, Qt::NoPen, palette_.accent);
  const bool active = option.state & (State_HasFocus | State_MouseOver | State_Sunken);
  painter.setPen(QPen(active ? palette_.accent : palette_.edge, active ? 2 : 1));
  painter.setBrush(palette_.dark ? palette_.text : palette_.field);
  painter.drawEllipse(handle.adjusted(1, 1, -1, -1));
}

void FormStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
  painter->save();
  switch (element) {
    case PE_PanelLineEdit:
      if (!IsPartOfBox(widget)) {
        DrawField(*painter, *option, option->state.testFlag(State_HasFocus));
      }
      break;
    case PE_FrameLineEdit:
      break;
    case PE_Frame:  // of a list, a table or a note
      painter->setBrush(Qt::NoBrush);
      painter->setPen(option->state.testFlag(State_HasFocus) ? palette_.accent : palette_.border);
      painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
      break;
    case PE_IndicatorCheckBox:
      DrawTick(*painter, *option);
      break;
    case PE_PanelButtonCommand:
      DrawButton(*painter, *option);
      break;
    default:
      QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
  painter->restore();
}

void FormStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   QPainter* painter, const QWidget* widget) const {
  painter->save();
  if (control == CC_ComboBox) {
    DrawComboBox(*painter, *option, widget);
  } else if (control == CC_Slider) {
    DrawSlider(*painter, *option, widget);
  } else {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
  }
  painter->restore();
}

QRect FormStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                SubControl part, const QWidget* widget) const {
  const QRect& whole = option->rect;
  if (control == CC_ComboBox && part == SC_ComboBoxEditField) {
    return whole.adjusted(3, 1, -kArrowRoom, -1);
  }
  if (control == CC_ComboBox && part == SC_ComboBoxArrow) {
    return {whole.right() + 1 - kArrowRoom, whole.top(), kArrowRoom, whole.height()};
  }
  const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control == CC_Slider && slider != nullptr && slider->orientation == Qt::Horizontal) {
    if (part == SC_SliderGroove) return whole;
    if (part == SC_SliderHandle) {
      const int size = std::min(kHandle, whole.height());
      const int left =
          sliderPositionFromValue(slider->minimum, slider->maximum, slider->sliderPosition,
                                  whole.width() - size, slider->upsideDown);
      return {whole.left() + left, whole.top() + (whole.height() - size) / 2, size, size};
    }
  }
  return QProxyStyle::subControlRect(control, option, part, widget);
}

int FormStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                           const QWidget* widget) const {
  switch (metric) {
    case PM_SliderLength:
    case PM_SliderThickness:
    case PM_SliderControlThickness:
      return kHandle;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
      // Whole in a low check box too.
      return widget == nullptr ? kTickBox : std::min(kTickBox, widget->height());
    case PM_ComboBoxFrameWidth:
      return 1;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

}  // namespace

void ApplyTheme(const Palette& palette) {
  constexpr int kIconPixels = 192;
  QApplication::setStyle(new FormStyle(palette));
  QApplication::setPalette(palette.ForWidgets());
  QToolTip::setPalette(palette.ForWidgets());
  QApplication::setWindowIcon(
      QIcon(ArtPixmap(palette, QStringLiteral("velumar"), {kIconPixels, kIconPixels})));
}

}  // namespace velumar
