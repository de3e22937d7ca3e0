#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QPainterPath>
#include <QRegion>
#include <QWindow>
#include <cstdlib>
#include <memory>
#include <string>

#include "app/windows/native_form.h"

namespace velumar {

namespace {

template <typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> Owned(Reply* reply) {
  return {reply, &std::free};
}

// Null without an X server, as in tests.
xcb_connection_t* Server() {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 == nullptr ? nullptr : x11->connection();
}

// Asks the server, since our own events lag behind.
bool LeftButtonDown() {
  xcb_connection_t* const server = Server();
  if (server == nullptr) return true;
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(server)).data->root;
  const auto mouse =
      Owned(xcb_query_pointer_reply(server, xcb_query_pointer(server, root), nullptr));
  return mouse == nullptr || (mouse->mask & XCB_BUTTON_MASK_1) != 0;
}

}  // namespace

bool WindowsMayBlend() { return true; }

// True if a compositing manager runs: it owns this selection.
bool SoftCornersShow() {
  xcb_connection_t* const server = Server();
  if (server == nullptr) return true;
  const std::string name = "_NET_WM_CM_S0";
  const auto atom = Owned(xcb_intern_atom_reply(
      server, xcb_intern_atom(server, 1, static_cast<std::uint16_t>(name.size()), name.data()),
      nullptr));
  if (atom == nullptr || atom->atom == XCB_ATOM_NONE) return false;
  const auto owner = Owned(
      xcb_get_selection_owner_reply(server, xcb_get_selection_owner(server, atom->atom), nullptr));
  return owner != nullptr && owner->owner != XCB_WINDOW_NONE;
}

void CutCorners(QWidget& window, const QSize& corners) {
  QPainterPath shape;
  shape.addRoundedRect(window.rect(), corners.width() / 2.0, corners.height() / 2.0);
  window.setMask(QRegion(shape.toFillPolygon().toPolygon()));
}

void SetAlpha(QWidget& window, int alpha) { window.setWindowOpacity(alpha / 255.0); }

void KeepOnTop(QWidget&) {}

// A move that begins after the release, as at a tap of a finger, would make the window follow the
// mouse until the next click.
bool MoveWithMouse(QWidget& window) {
  if (!LeftButtonDown()) return true;
  return window.windowHandle() != nullptr && window.windowHandle()->startSystemMove();
}

}  // namespace velumar
