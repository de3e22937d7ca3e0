#pragma once

#include <xcb/xcb.h>

#include <string_view>
#include <vector>

#include "platform/mailbox.h"
#include "platform/x11/connection.h"

namespace velumar {

// A mailbox on an X display: a window that is never shown, found as the owner of the selection of
// the box's name. The display lets go of it when the process ends, however it ends. Of two programs
// with one name the later one gets the mail.
class X11Mailbox {
 public:
  // Throws std::runtime_error where the display can't be reached.
  explicit X11Mailbox(std::string_view name);
  X11Mailbox(const X11Mailbox&) = delete;
  X11Mailbox& operator=(const X11Mailbox&) = delete;
  ~X11Mailbox();

  // Readable when mail has come.
  int Descriptor() const { return xcb_get_file_descriptor(connection_.Xcb()); }
  // What has come since the last call; doesn't wait.
  std::vector<Mail> Take();

 private:
  X11Connection connection_;
  xcb_window_t window_ = XCB_NONE;
  xcb_atom_t name_ = XCB_NONE;
};

}  // namespace velumar
