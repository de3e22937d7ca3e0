#include "app/theme/form_style.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>
#include <algorithm>

namespace velumar {

namespace {

constexpr double kFieldRound = 3.5;
constexpr int kArrowRoom = 16;
constexpr int kHandle = 10;

QRectF Edge(const QRect& rect) { return QRectF(rect).adjusted(.5, .5, -.5, -.5); }

// True for the line in a combo box or date picker, which draws the background itself.
bool IsPartOfBox(const QWidget* widget) {
  const QWidget* parent = widget == nullptr ? nullptr : widget->parentWidget();
  return qobject_cast<const QComboBox*>(parent) != nullptr ||
         qobject_cast<const QAbstractSpinBox*>(parent) != nullptr;
}

void DrawChevron(QPainter& painter, const QPointF& middle) {
  const QPointF points[] = {middle + QPointF(-3.5, -1.75), middle + QPointF(0, 1.75),
                            middle + QPointF(3.5, -1.75)};
  painter.drawPolyline(points, 3);
}

}  // namespace

FormStyle::FormStyle(const Theme& theme)
    : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))), theme_(theme) {}

void FormStyle::DrawField(QPainter& painter, const QStyleOption& option, bool focus) const {
  const bool enabled = option.state.testFlag(State_Enabled);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(focus ? theme_.accent : theme_.border, focus ? 1.5 : 1));
  painter.setBrush(
      option.palette.color(enabled ? QPalette::Normal : QPalette::Disabled, QPalette::Base));
  painter.drawRoundedRect(Edge(option.rect), kFieldRound, kFieldRound);
}

void FormStyle::DrawTick(QPainter& painter, const QStyleOption& option) const {
  const bool active = option.state & (State_HasFocus | State_MouseOver);
  DrawField(painter, option, active);
  if (!option.state.testFlag(State_On)) return;
  const QRectF box = Edge(option.rect);
  const auto at = [&box](double x, double y) {
    return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
  };
  painter.setPen(
      QPen(option.palette.color(QPalette::Text), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  const QPointF points[] = {at(.25, .52), at(.43, .7), at(.76, .3)};
  painter.drawPolyline(points, 3);
}

void FormStyle::DrawButton(QPainter& painter, const QStyleOption& option) const {
  const bool down = option.state & (State_Sunken | State_On);
  const bool over = option.state.testFlag(State_MouseOver);
  const bool focus = option.state.testFlag(State_HasFocus);
  QColor face = theme_.button;
  if (down) {
    face = face.darker(115);
  } else if (over) {
    face = theme_.dark ? face.lighter(118) : QColor(0xe0, 0xec, 0xff);
  }
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(focus ? theme_.accent : theme_.border, focus ? 1.5 : 1));
  painter.setBrush(face);
  painter.drawRoundedRect(Edge(option.rect), kFieldRound, kFieldRound);
}

void FormStyle::DrawComboBox(QPainter& painter, const QStyleOptionComplex& option,
                             const QWidget* widget) const {
  DrawField(painter, option, option.state.testFlag(State_HasFocus));
  const QRect arrow = subControlRect(CC_ComboBox, &option, SC_ComboBoxArrow, widget);
  const bool over = option.state.testFlag(State_MouseOver) && option.state.testFlag(State_Enabled);
  const QColor ink = !option.state.testFlag(State_Enabled) ? theme_.faint
                     : over                                ? theme_.accent
                                                           : theme_.text;
  painter.setPen(QPen(ink, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  DrawChevron(painter, QRectF(arrow).center());
}

void FormStyle::DrawSlider(QPainter& painter, const QStyleOptionComplex& option,
                           const QWidget* widget) const {
  constexpr double kGroove = 4;
  const QRectF handle = subControlRect(CC_Slider, &option, SC_SliderHandle, widget);
  QRectF groove(option.rect.left() + 1, 0, option.rect.width() - 2, kGroove);
  groove.moveTop(QRectF(option.rect).center().y() - kGroove / 2);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme_.groove);
  painter.drawRoundedRect(groove, kGroove / 2, kGroove / 2);
  QRectF passed = groove;
  passed.setRight(handle.center().x());
  painter.setBrush(theme_.accent);
  painter.drawRoundedRect(passed, kGroove / 2, kGroove / 2);
  const bool active = option.state & (State_HasFocus | State_MouseOver | State_Sunken);
  painter.setPen(QPen(active ? theme_.accent : theme_.edge, active ? 2 : 1));
  painter.setBrush(theme_.dark ? theme_.text : theme_.field);
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
      return 14;
    case PM_ComboBoxFrameWidth:
      return 1;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

int FormStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* data) const {
  if (hint == SH_ComboBox_Popup) return 0;  // the list opens below the box
  if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
  return QProxyStyle::styleHint(hint, option, widget, data);
}

}  // namespace velumar
