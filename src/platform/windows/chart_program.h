#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace velumar {

// Empty for a window that is gone.
std::string TitleOf(HWND window);
// All of the desktop, front to back.
std::vector<HWND> AllTopLevelWindows();
DWORD ProcessOf(HWND window);

// Tells the chart program's windows from all others. A folder or a letter may be called like the
// chart program too: where a window belongs to a process of the program's own file, only that
// program's windows count; else those whose title is exactly the host title; else those that begin
// with it.
class WindowsChartProgram {
 public:
  explicit WindowsChartProgram(std::string host_title) : host_title_(std::move(host_title)) {}

  // Front to back; empty while the program doesn't run.
  std::vector<HWND> MainWindows() const;
  // Whether the window belongs to a process with a main window.
  bool Owns(HWND window) const;
  // Whether keys may go into this window: a main window, or the file dialog of one.
  bool TakesKeys(HWND window) const;

 private:
  std::string host_title_;
};

}  // namespace velumar
