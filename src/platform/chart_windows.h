#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velumar {

using WindowId = std::uint64_t;  // 0 is no window

// Whose window it is: of this process, of the chart program or of any other.
enum class WindowOwner : std::uint8_t { kOwn, kChartProgram, kOther };

// The top-level windows of all programs.
class ChartWindows {
 public:
  virtual ~ChartWindows() = default;
  // Front to back. Empty where the window system can't tell.
  virtual std::vector<WindowId> TopLevelWindows() = 0;
  virtual std::string WindowTitle(WindowId window) = 0;
  virtual bool IsWindowVisible(WindowId window) = 0;  // on the screen, so not minimised
  virtual bool HasOwner(WindowId window) = 0;
  virtual void Maximize(WindowId window) = 0;
  // Gives the focus to the window with exactly that title, else to one whose title begins with it.
  // False when there is none.
  virtual bool BringToFront(std::string_view title) = 0;
  // The top-level window that has the focus; 0 while none has.
  virtual WindowId FocusedWindow() = 0;
  virtual WindowOwner OwnerOf(WindowId window) = 0;
  // Gives the focus to that window. False, and nothing happens, when it is gone or isn't shown.
  virtual bool GiveFocus(WindowId window) = 0;
  // The file dialog: a top-level window of that class and title. Where windows have no such
  // classes, the title of a dialog decides.
  virtual bool DialogExists(std::string_view window_class, std::string_view title) = 0;
};

enum class KeyOutcome : std::uint8_t {
  kAccepted,
  kNotSent,      // the window in front isn't the chart program's: nothing was typed
  kNotAnswered,  // typed, but the window in front didn't answer in time
};

class KeySender {
 public:
  virtual ~KeySender() = default;
  // Types a text in the notation of key_notation.h into the window that has the focus and returns
  // once it has taken the keys in. Throws std::invalid_argument for a text that isn't in it.
  virtual KeyOutcome Send(std::string_view keys) = 0;
  // Types into the chart program's main window while the trader works in another program. The
  // window in front stays in front and still receives every key of the trader. kNotSent if the
  // chart isn't on the screen.
  virtual KeyOutcome SendBehind(std::string_view keys) = 0;
};

}  // namespace velumar
