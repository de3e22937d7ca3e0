#pragma once

#include <QColor>
#include <QPainterPath>
#include <QString>
#include <functional>

#include "app/theme/theme.h"
#include "app/theme/typefaces.h"

class QRect;

namespace velumar {

// How all windows look in this process.
struct Appearance {
  Theme theme;
  Typefaces faces;
  QString date_format;  // in the letters d, M, y
};

// What the view of a control asks of the window that it stands in.
class FormCanvas {
 public:
  virtual ~FormCanvas() = default;
  virtual const Appearance& Look() const = 0;
  // Hands an event of the user to the model. The window lives on until the handler has come back,
  // even when the handler unloads it or waits inside; an event for an unloaded window is dropped.
  virtual void Deliver(const std::function<void()>& event) = 0;
  // The mean colour of the artwork under a place, or of the window's ground.
  virtual QColor GroundUnder(const QRect& place) const = 0;
  // The rounded outline of the window, in its own logical pixels.
  virtual QPainterPath Outline() const = 0;
};

}  // namespace velumar
