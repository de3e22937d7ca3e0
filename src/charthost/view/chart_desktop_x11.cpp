#include <QWidget>

#include "charthost/view/chart_desktop.h"

namespace velumar {

// Wayland lets no program find or type into another program's windows; XWayland does.
void ChooseChartDisplay() {
  const bool chosen = qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
  if (!chosen && qEnvironmentVariableIsSet("DISPLAY")) qputenv("QT_QPA_PLATFORM", "xcb");
}

void ShowMaximisedForTrader(QWidget& window) {
  window.setAttribute(Qt::WA_ShowWithoutActivating);
  window.showMaximized();
}

struct DialogMarker::Marker {};

DialogMarker::DialogMarker() = default;

DialogMarker::~DialogMarker() = default;

void DialogMarker::Show() {}

void DialogMarker::Hide() {}

}  // namespace velumar
