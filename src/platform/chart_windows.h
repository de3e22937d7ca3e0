#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velumar {

using WindowId = std::uint64_t;  // 0 is no window

// Which program a window belongs to.
enum class WindowOwner : std::uint8_t { kOwn, kChartProgram, kOther };

// The top-level windows of all programs.
class ChartWindows {
 public:
  virtual ~ChartWindows() = default;
  // Front to back. Empty if the window system has no such list.
  virtual std::vector<WindowId> TopLevelWindows() = 0;
  virtual std::string WindowTitle(WindowId window) = 0;
  virtual bool IsWindowVisible(WindowId window) = 0;  // on the screen, so not minimised
  virtual bool HasOwner(WindowId window) = 0;
  virtual void Maximize(WindowId window) = 0;
  // Gives the focus to the window with exactly that title, otherwise to one whose title begins with
  // it. Returns false if there is none.
  virtual bool BringToFront(std::string_view title) = 0;
  // The process of the window that BringToFront would choose; 0 if there is none.
  virtual std::uint32_t ProcessOf(std::string_view title) = 0;
  // The top-level window that has the focus; 0 if none has.
  virtual WindowId FocusedWindow() = 0;
  virtual WindowOwner OwnerOf(WindowId window) = 0;
  // Gives the focus to that window. Does nothing and returns false if it is gone or not shown.
  virtual bool GiveFocus(WindowId window) = 0;
  // Looks for the chart program's file dialog; one of another program does not count.
  virtual bool FileDialogExists() = 0;
};

enum class KeyOutcome : std::uint8_t {
  kAccepted,
  kNotSent,      // the window in front isn't the chart program's
  kNotAnswered,  // typed, but the window in front didn't answer in time
};

class KeySender {
 public:
  virtual ~KeySender() = default;
  // Types a text in the notation of key_notation.h into the window that has the focus, and returns
  // once that window has processed the keys. Throws std::invalid_argument for any other text.
  virtual KeyOutcome Send(std::string_view keys) = 0;
  // Types into the chart program's main window while the trader works in another program. The
  // window in front gets the focus back and the keys that the trader typed in the meantime; the
  // back ends say what happens if it can't. Waiting until nobody types was the alternative, but a
  // trader who writes a letter would have no chart. Returns kNotSent if the chart isn't on the
  // screen.
  virtual KeyOutcome SendInBackground(std::string_view keys) = 0;
};

}  // namespace velumar
