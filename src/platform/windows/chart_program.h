#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace velumar {

// Empty for a closed window.
std::string TitleOf(HWND window);
// Front to back.
std::vector<HWND> AllTopLevelWindows();
DWORD ProcessOf(HWND window);

// Recognises the chart program's windows; ChartMainWindows says how.
class WindowsChartProgram {
 public:
  explicit WindowsChartProgram(std::string host_title) : host_title_(std::move(host_title)) {}

  // Front to back; empty if the program isn't running.
  std::vector<HWND> MainWindows() const;
  // Returns true if the window belongs to the process of a main window.
  bool Owns(HWND window) const;
  // Returns true for windows that may be typed into: main windows and their file dialogs.
  bool TakesKeys(HWND window) const;

 private:
  std::string host_title_;
};

}  // namespace velumar
