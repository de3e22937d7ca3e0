#pragma once

#include <QFont>
#include <QString>

#include "forms/control.h"

namespace velumar {

// The families that stand for the three faces of the control tables, chosen once from what is
// installed.
struct Typefaces {
  QString plain;
  QString verdana;
  QString impact;

  static Typefaces Installed();

  // Sized in logical pixels, 96 to the inch, so that a window keeps its measures whatever the
  // resolution the system claims for fonts.
  QFont For(const Look& look) const;
  QFont Plain(int pixels) const;
};

}  // namespace velumar
