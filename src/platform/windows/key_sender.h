#pragma once

#include <string>
#include <string_view>

#include "platform/chart_windows.h"

namespace velumar {

// Types into the window in front, and only while that one is the chart program's main window or its
// file dialog; that is looked at before every single key.
//
// A person's own keys come first: while one holds Ctrl, Alt, Shift or a Windows key, a key waits up
// to a second and is then held back. Keys arrive the same under Caps Lock and in every keyboard
// layout: all text but its letters is typed as characters, and shortcuts by the keys that carry
// their letters elsewhere where the layout has none.
class WindowsKeySender : public KeySender {
 public:
  // As in WindowsChartWindows.
  explicit WindowsKeySender(std::string host_title) : host_title_(std::move(host_title)) {}

  // kNotSent: the keys from the first that found another window in front, or that the keyboard
  // lacks, were not typed.
  // kNotAnswered: after two seconds in all. Throws std::runtime_error when the system takes no keys
  // from programs.
  KeyOutcome Send(std::string_view keys) override;
  // The chart is in front for a moment. The trader's keys are held until the window that was in
  // front before is back, and typed into it then. If it doesn't come back, they are dropped: typed
  // into the chart they could place orders.
  KeyOutcome SendBehind(std::string_view keys) override;

 private:
  std::string host_title_;
};

}  // namespace velumar
