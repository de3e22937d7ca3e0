#pragma once

#include <QSize>
#include <QWidget>

namespace velumar {

// What the window system of this platform does to a window's form.

// Whether windows may be see-through in places, pixel by pixel.
bool WindowsMayBlend();
// Whether it does so now, so that soft corners show. Window by window opacity is another matter.
bool SoftCornersShow();
// Cuts the corners by ellipses of that size, in logical pixels.
void CutCorners(QWidget& window, const QSize& corners);
// From 0, invisible, to 255, solid.
void SetAlpha(QWidget& window, int alpha);
// Puts the window above all others, where the toolkit's own flag doesn't do.
void KeepOnTop(QWidget& window);
// Lets the window system move the window until the left button is released; false where it can't.
// Where it is released already, the window stays.
bool MoveWithMouse(QWidget& window);

}  // namespace velumar
