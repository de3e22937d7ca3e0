#include <xcb/xcb.h>

#include <QString>
#include <QtGlobal>
#include <memory>

#include "app/wiring/display.h"

namespace velumar {

namespace {

bool Reachable(const QByteArray& display) {
  const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
      xcb_connect(display.constData(), nullptr), &xcb_disconnect);
  return xcb_connection_has_error(connection.get()) == 0;
}

}  // namespace

std::optional<std::string> ChooseDisplay() {
  if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) return std::nullopt;
  const QByteArray display = qgetenv("DISPLAY");
  if (display.isEmpty() && !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
    return "Velumar finds and places windows through X11, and this Wayland session has no X server "
           "for it: install XWayland, or log in to an X11 session.";
  }
  if (display.isEmpty()) return "There is no display to show windows on: DISPLAY is not set.";
  if (!Reachable(display)) {
    return "The display " + display.toStdString() + ", named by DISPLAY, can't be reached.";
  }
  qputenv("QT_QPA_PLATFORM", "xcb");
  return std::nullopt;
}

}  // namespace velumar
