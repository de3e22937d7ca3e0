#pragma once

#include <memory>

#include "platform/chart_windows.h"

namespace velumar {

// The windows of the Windows desktop. BringToFront and GiveFocus wait up to half a second until the
// window has the focus; BringToFront restores it if it is minimised. FileDialogExists brings the
// dialog to the front. FocusedWindow raises our windows if another program's window has got the
// focus since the last call.
std::unique_ptr<ChartWindows> MakeWindowsChartWindows();

// Types into the window in front if it is the chart program's main window or its file dialog. This
// is checked before every key.
//
// While the user holds Ctrl, Alt, Shift or a Windows key, a key waits up to a second and is then
// not sent. Caps Lock and the keyboard layout don't matter: text other than letters is sent as
// characters, and a shortcut whose letter the layout lacks by the key that has it in other layouts.
//
// kNotSent: another window was in front from some key on, or the keyboard lacks the key; that key
// and the rest were not typed. kNotAnswered: after two seconds in all. Whether keys were read is
// found out by sent messages, which a window answers before it reads its next key. Throws
// std::runtime_error if the system does not accept keys from programs.
//
// SendInBackground brings the chart to the front for a moment. The trader's keys are held for that
// time and typed into the previous window once it is back. If it isn't back within half a second,
// they are dropped: typed into the chart they could place orders.
std::unique_ptr<KeySender> MakeWindowsKeySender();

}  // namespace velumar
