#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/x11/connection.h"

namespace velumar {

// Recognises the chart program's windows; a window has the file name of its program as its class.
class X11ChartProgram {
 public:
  // `connection` must outlive the object.
  X11ChartProgram(X11Connection& connection, std::string host_title)
      : connection_(connection), host_title_(std::move(host_title)) {}

  // Front to back; empty if the program isn't running.
  std::vector<xcb_window_t> MainWindows();
  // Returns true for windows that may be typed into: main windows and their file dialogs.
  bool TakesKeys(xcb_window_t window);
  // Returns true if the window belongs to the program of a main window.
  bool Owns(xcb_window_t window);
  // The dialog with that title, if it is on the screen.
  std::optional<xcb_window_t> ShownDialog(std::string_view title);

 private:
  bool BelongsTo(const std::vector<xcb_window_t>& main_windows, xcb_window_t window);

  X11Connection& connection_;
  std::string host_title_;
};

}  // namespace velumar
