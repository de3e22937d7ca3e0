#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/chart_windows.h"

namespace velumar {

class X11Connection;

// Types into the window in front if it is the chart program's main window or its file dialog. This
// is checked before every key, within a grab of the X server, so no other program ever receives
// one.
//
// While the user holds Ctrl, Alt, Shift or another modifier, a key waits up to a second and is then
// not sent. Caps Lock and the keyboard layout don't matter: characters that the layout lacks get a
// spare key until the chart program has read them.
class X11KeySender : public KeySender {
 public:
  // The arguments and errors are those of X11ChartWindows.
  explicit X11KeySender(std::string host_title, std::string display_name = {});
  ~X11KeySender() override;

  // kNotSent: another window was in front from some key on; that key and the rest were not typed.
  // kNotAnswered: after two seconds in all. A window that can't report when it has read its keys
  // gets 100 ms and counts as having accepted them. Throws std::runtime_error if the display is
  // gone or takes no keys from programs.
  KeyOutcome Send(std::string_view keys) override;
  // For each key the focus moves to the chart and back within one grab of the X server, less than a
  // millisecond, so no key of the user gets lost. While another program grabs the keyboard, as an
  // open menu does, a key waits as for a held modifier.
  KeyOutcome SendBehind(std::string_view keys) override;

 private:
  KeyOutcome TypeAll(std::string_view keys, bool behind);

  std::string host_title_;
  std::string display_name_;
  std::unique_ptr<X11Connection> connection_;
};

}  // namespace velumar
