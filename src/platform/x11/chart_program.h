#pragma once

#include <optional>
#include <vector>

#include "platform/x11/connection.h"

namespace velumar {

// The chart program's windows; a window has the file name of its program as its class.

// Front to back; empty if the program isn't running.
std::vector<xcb_window_t> ChartMainWindows(X11Connection& connection);

// Returns true if the window belongs to the program of a main window.
bool IsOfChartProgram(X11Connection& connection, xcb_window_t window);

// Returns true for windows that may be typed into: main windows and their file dialogs.
bool TakesChartKeys(X11Connection& connection, xcb_window_t window);

// The program's file dialog, if it is on the screen.
std::optional<xcb_window_t> ShownFileDialog(X11Connection& connection);

}  // namespace velumar
