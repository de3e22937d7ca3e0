#pragma once

#include <memory>
#include <string>

#include "platform/chart_windows.h"

namespace velumar {

// An empty `display_name` means the display of the environment. Both functions throw
// std::runtime_error naming the display if it can't be reached, and so do all calls of their
// objects once it is gone.

// The windows of an X display, as its window manager lists them; without one, the children of the
// root window. A window may close at any time: it then has no title, isn't visible and can't be
// maximised.
//
// BringToFront and GiveFocus restore the window if it is minimised, switch to its workspace, and
// wait up to half a second until it has the focus. FileDialogExists ignores the window class and
// brings the dialog to the front.
std::unique_ptr<ChartWindows> MakeX11ChartWindows(const std::string& display_name = {});

// Types into the window in front if it is the chart program's main window or its file dialog. This
// is checked before every key, within a grab of the X server, so no other program ever receives
// one.
//
// While the user holds Ctrl, Alt, Shift or another modifier, a key waits up to a second and is then
// not sent. Caps Lock and the keyboard layout don't matter: characters that the layout lacks get a
// spare key until the chart program has read them.
//
// kNotSent: another window was in front from some key on; that key and the rest were not typed.
// kNotAnswered: after two seconds in all. A window that can't report when it has read its keys gets
// 100 ms and counts as having accepted them. Throws std::runtime_error if the display does not
// accept keys from programs.
//
// SendInBackground moves the focus to the chart and back within one grab of the X server for each
// key, less than a millisecond, so no key of the user gets lost. While another program grabs the
// keyboard, as an open menu does, a key waits as for a held modifier.
std::unique_ptr<KeySender> MakeX11KeySender(std::string display_name = {});

}  // namespace velumar
