#include "platform/x11/mailbox.h"

#include <stdexcept>
#include <string>

namespace velumar {

X11Mailbox::X11Mailbox(std::string_view name)
    : connection_(""), name_(connection_.Atom(std::string(name).c_str())) {
  window_ = xcb_generate_id(connection_.Xcb());
  xcb_create_window(connection_.Xcb(), 0, window_, connection_.Root(), -1, -1, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  xcb_set_selection_owner(connection_.Xcb(), window_, name_, XCB_CURRENT_TIME);
  connection_.RequireAnswer();
}

X11Mailbox::~X11Mailbox() {
  xcb_destroy_window(connection_.Xcb(), window_);
  xcb_flush(connection_.Xcb());
}

std::vector<Mail> X11Mailbox::Take() {
  std::vector<Mail> mails;
  while (const XOwned<xcb_generic_event_t> event{xcb_poll_for_event(connection_.Xcb())}) {
    constexpr std::uint8_t kSentMark = 0x80;
    if ((event->response_type & ~kSentMark) != XCB_CLIENT_MESSAGE) continue;
    const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(*event);
    if (message.type != name_) continue;
    mails.push_back({message.data.data32[0], message.data.data32[1]});
  }
  return mails;
}

bool PostMail(std::string_view box, const Mail& mail) {
  try {
    X11Connection connection("");
    const xcb_atom_t name = connection.Atom(std::string(box).c_str());
    const XOwned<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection.Xcb(), xcb_get_selection_owner(connection.Xcb(), name), nullptr));
    if (!owner || owner->owner == XCB_NONE) return false;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = owner->owner;
    message.type = name;
    message.data.data32[0] = mail.first;
    message.data.data32[1] = mail.second;
    xcb_send_event(connection.Xcb(), 0, owner->owner, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&message));
    connection.RequireAnswer();
    return true;
  } catch (const std::runtime_error&) {
    return false;
  }
}

}  // namespace velumar
