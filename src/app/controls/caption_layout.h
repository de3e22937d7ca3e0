#pragma once

#include <QRect>

#include "app/theme/typefaces.h"
#include "forms/form.h"

namespace velumar {

// Room between the edge of a label and its text, in logical pixels.
int TextMargin(const Control& label);

// The baseline of a label's text, in logical pixels of the window: captions stand level with the
// box or button beside them, display type on its own line, and no text leaves its label.
double Baseline(const Control& label, const QFont& font, const QString& text);

// The largest size at which all captions of that look in the window fit into their places, so that
// they look alike.
int CaptionPixels(const Form& form, const Look& look, const Typefaces& faces);

// True for a text that stands free on the artwork beside what it names.
bool IsCaption(const Control& control);

}  // namespace velumar
