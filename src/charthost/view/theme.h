#pragma once

#include <QApplication>

#include "charthost/chart_options.h"

namespace velumar {

// The look of all windows: one style on every desktop, in the palette of the system or in a light
// or dark one of our own. Alt alone does nothing, so that keys from outside can't end up in the
// menu bar.
void InstallStyle();
void ApplyTheme(ChartTheme theme);

// A drawn icon: three candles.
QIcon ProgramIcon();

}  // namespace velumar
