#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QPainterPath>
#include <QRegion>
#include <QWindow>
#include <cstdlib>
#include <memory>

#include "app/native_form.h"

namespace velumar {

namespace {

// As the server knows it: what our own events say of the mouse is older. True where there is no X
// server to ask.
bool LeftButtonDown() {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  xcb_connection_t* const connection = x11 == nullptr ? nullptr : x11->connection();
  if (connection == nullptr) return true;
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  const std::unique_ptr<xcb_query_pointer_reply_t, decltype(&std::free)> mouse(
      xcb_query_pointer_reply(connection, xcb_query_pointer(connection, root), nullptr),
      &std::free);
  return mouse == nullptr || (mouse->mask & XCB_BUTTON_MASK_1) != 0;
}

}  // namespace

bool WindowsMayBlend() { return true; }

void CutCorners(QWidget& window, const QSize& corners) {
  QPainterPath shape;
  shape.addRoundedRect(window.rect(), corners.width() / 2.0, corners.height() / 2.0);
  window.setMask(QRegion(shape.toFillPolygon().toPolygon()));
}

void SetAlpha(QWidget& window, int alpha) { window.setWindowOpacity(alpha / 255.0); }

void KeepOnTop(QWidget&) {}

// A move that begins behind the release, as at the tap of a finger, would have the window follow
// the mouse until the next click.
bool MoveWithMouse(QWidget& window) {
  if (!LeftButtonDown()) return true;
  return window.windowHandle() != nullptr && window.windowHandle()->startSystemMove();
}

}  // namespace velumar
