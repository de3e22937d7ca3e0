#include <xcb/xcb.h>

#include <QGuiApplication>
#include <cstdlib>
#include <memory>
#include <string>

#include "app/compositing.h"

namespace velumar {

namespace {

template <typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> Owned(Reply* reply) {
  return {reply, &std::free};
}

}  // namespace

bool CompositingActive() {
  auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  xcb_connection_t* connection = x11 == nullptr ? nullptr : x11->connection();
  if (connection == nullptr) return true;  // not on X11
  const std::string name = "_NET_WM_CM_S0";
  const auto atom = Owned(xcb_intern_atom_reply(
      connection,
      xcb_intern_atom(connection, 1, static_cast<std::uint16_t>(name.size()), name.data()),
      nullptr));
  if (atom == nullptr || atom->atom == XCB_ATOM_NONE) return false;
  const auto owner = Owned(xcb_get_selection_owner_reply(
      connection, xcb_get_selection_owner(connection, atom->atom), nullptr));
  return owner != nullptr && owner->owner != XCB_WINDOW_NONE;
}

}  // namespace velumar
