#pragma once

#include <QProxyStyle>

#include "app/theme/theme.h"

namespace velumar {

// Draws boxes, lists, sliders, ticks and buttons flat, with round corners, and small enough for
// windows whose lines are thirteen pixels high.
class FormStyle : public QProxyStyle {
 public:
  explicit FormStyle(const Theme& theme);

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                       const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override;

 private:
  void DrawField(QPainter& painter, const QStyleOption& option, bool focus) const;
  void DrawTick(QPainter& painter, const QStyleOption& option) const;
  void DrawButton(QPainter& painter, const QStyleOption& option) const;
  void DrawComboBox(QPainter& painter, const QStyleOptionComplex& option,
                    const QWidget* widget) const;
  void DrawSlider(QPainter& painter, const QStyleOptionComplex& option,
                  const QWidget* widget) const;

  Theme theme_;
};

}  // namespace velumar
