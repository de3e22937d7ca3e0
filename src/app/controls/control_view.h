#pragma once

#include <QRect>
#include <QString>

#include "app/controls/form_canvas.h"
#include "forms/control.h"

class QKeyEvent;
class QWidget;

namespace velumar {

// The widget that draws one control. It is a child of the window's widget and dies with it.
class ControlView {
 public:
  virtual ~ControlView() = default;
  virtual QWidget& Widget() = 0;
  // Takes over what the model holds; tells nothing back.
  virtual void Update() = 0;
};

// Twips to whole logical pixels.
int LogicalPixels(float twips);
QRect LogicalPlace(const Control& control);

QString ToQString(std::string_view text);

// A press of Enter, which clicks a button that has the focus; holding it down is one press.
bool IsEnter(const QKeyEvent& event);

// What all kinds have in common: place, visible, enabled, tooltip, the name for screen readers.
void ApplyCommon(QWidget& widget, const Control& control);

// The control's own colour as it can be read on that ground, or the theme's where it has none.
QColor TextColour(const Control& control, const QColor& ground, const Theme& theme);

// Text and ground of a box in which texts are edited.
void ApplyFieldColours(QWidget& widget, const Control& control, const Theme& theme);

// The view that goes with the control's kind.
ControlView* MakeControlView(FormCanvas& canvas, QWidget& window, Control& control);

}  // namespace velumar
