#include <QtGlobal>

#include "charthost/view/display_choice.h"

namespace velumar {

// Wayland lets no program find or type into another one's windows; its X11 side does.
void ChooseChartDisplay() {
  const bool chosen = qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
  if (!chosen && qEnvironmentVariableIsSet("DISPLAY")) qputenv("QT_QPA_PLATFORM", "xcb");
}

}  // namespace velumar
