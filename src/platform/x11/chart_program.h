#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/x11/connection.h"

namespace velumar {

// Tells the chart program's windows from all others. A window names its program's file as its
// class.
class X11ChartProgram {
 public:
  // `connection` must outlive the object.
  X11ChartProgram(X11Connection& connection, std::string host_title)
      : connection_(connection), host_title_(std::move(host_title)) {}

  // Front to back; empty while the program doesn't run.
  std::vector<xcb_window_t> MainWindows();
  // Whether keys may go into this window: a main window, or the file dialog of one.
  bool TakesKeys(xcb_window_t window);
  // Whether the window is of the program that has the main windows.
  bool Owns(xcb_window_t window);
  // The dialog of that title, where one is on the screen.
  std::optional<xcb_window_t> ShownDialog(std::string_view title);

 private:
  bool BelongsTo(const std::vector<xcb_window_t>& main_windows, xcb_window_t window);

  X11Connection& connection_;
  std::string host_title_;
};

}  // namespace velumar
