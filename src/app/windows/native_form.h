#pragma once

#include <QSize>
#include <QWidget>

namespace velumar {

// What depends on the window system of this platform.

// True if windows may be translucent pixel by pixel.
bool WindowsMayBlend();
// True if they are at the moment, so that soft corners are visible.
bool SoftCornersShow();
// Cuts the corners by ellipses of that size, in logical pixels.
void CutCorners(QWidget& window, const QSize& corners);
// From 0, invisible, to 255, opaque.
void SetAlpha(QWidget& window, int alpha);
// Puts the window above all others if the toolkit's own flag isn't enough.
void KeepOnTop(QWidget& window);
// Has the window system move the window until the left button is released; returns false if it
// can't. If the button is already released, the window stays where it is.
bool MoveWithMouse(QWidget& window);

}  // namespace velumar
