#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/chart_windows.h"

namespace velumar {

class X11Connection;

// Types through the X server into the window in front, and only while that one is the chart
// program's main window or its file dialog. That is looked at before every single key, and no
// window can take the focus between the look and the key, so no other program ever receives one.
//
// A person's own keys come first: while one holds Ctrl, Alt, Shift or another modifier, a key waits
// up to a second and is then held back. Keys arrive the same under Caps Lock and in every keyboard
// layout, and characters that the layout lacks get a spare key until the chart program has read
// them.
class X11KeySender : public KeySender {
 public:
  // As in X11ChartWindows.
  explicit X11KeySender(std::string host_title, std::string display_name = {});
  ~X11KeySender() override;

  // kNotSent: the keys from the first that found another window in front were not typed.
  // kNotAnswered: after two seconds in all. A window that can't say when it has read its keys gets
  // a short moment and counts as having taken them in. Throws std::runtime_error when the display
  // is gone or takes no keys from programs.
  KeyOutcome Send(std::string_view keys) override;
  // The focus goes to the chart and back within one grab of the X server for each key, less than a
  // millisecond, so the trader's own keys don't come between. While another program keeps the
  // keyboard to itself, as an open menu does, a key waits like for a held modifier.
  KeyOutcome SendBehind(std::string_view keys) override;

 private:
  KeyOutcome TypeAll(std::string_view keys, bool behind);

  std::string host_title_;
  std::string display_name_;
  std::unique_ptr<X11Connection> connection_;
};

}  // namespace velumar
