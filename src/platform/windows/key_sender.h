#pragma once

#include <string>
#include <string_view>

#include "platform/chart_windows.h"

namespace velumar {

// Types into the window in front if it is the chart program's main window or its file dialog. This
// is checked before every key.
//
// While the user holds Ctrl, Alt, Shift or a Windows key, a key waits up to a second and is then
// not sent. Caps Lock and the keyboard layout don't matter: text other than letters is sent as
// characters, and a shortcut whose letter the layout lacks by the key that has it in other layouts.
class WindowsKeySender : public KeySender {
 public:
  // The title of the chart program's main window begins with `host_title`.
  explicit WindowsKeySender(std::string host_title) : host_title_(std::move(host_title)) {}

  // kNotSent: another window was in front from some key on, or the keyboard lacks the key; that key
  // and the rest were not typed. kNotAnswered: after two seconds in all. Throws std::runtime_error
  // if the system takes no keys from programs.
  KeyOutcome Send(std::string_view keys) override;
  // Brings the chart to the front for a moment. The trader's keys are held meanwhile and typed into
  // the previous window once it is back. If it isn't back within half a second, they are dropped:
  // typed into the chart they could place orders.
  KeyOutcome SendBehind(std::string_view keys) override;

 private:
  std::string host_title_;
};

}  // namespace velumar
