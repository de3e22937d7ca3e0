#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace velumar {

// Empty for a closed window.
std::string TitleOf(HWND window);
// Front to back.
std::vector<HWND> AllTopLevelWindows();
std::vector<HWND> VisibleTopLevelWindows();
DWORD ProcessOf(HWND window);

// The chart program's main windows, front to back; empty if it isn't running.
std::vector<HWND> ChartMainWindows();
// Returns true if the window belongs to the process of a main window.
bool IsOfChartProgram(HWND window);
// Returns true for windows that may be typed into: main windows and their file dialogs.
bool TakesChartKeys(HWND window);

}  // namespace velumar
