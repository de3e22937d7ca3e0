#include "platform/windows/chart_program.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include "base/handle_windows.h"
#include "base/paths.h"
#include "base/windows_text.h"
#include "platform/chart_program.h"

namespace velumar {

namespace {

// The file name of the window's program; empty if the system doesn't say.
std::string ProgramOf(HWND window) {
  const NativeHandle process =
      OwnedHandle(::OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, ProcessOf(window)));
  std::array<wchar_t, 32768> path{};
  auto length = static_cast<DWORD>(path.size());
  if (!process || ::QueryFullProcessImageNameW(process.get(), 0, path.data(), &length) == 0) {
    return {};
  }
  return PathText(std::filesystem::path(std::wstring(path.data(), length)).filename());
}

}  // namespace

std::string TitleOf(HWND window) {
  const int length = ::GetWindowTextLengthW(window);
  if (length <= 0) return {};
  std::wstring title(static_cast<std::size_t>(length) + 1, L'\0');
  const int copied = ::GetWindowTextW(window, title.data(), length + 1);
  return Utf8Text({title.data(), static_cast<std::size_t>(std::max(copied, 0))});
}

std::vector<HWND> AllTopLevelWindows() {
  std::vector<HWND> windows;
  // A window that is raised during the loop would make the loop see the same windows again.
  constexpr std::size_t kMost = 10000;
  for (HWND window = ::GetWindow(::GetDesktopWindow(), GW_CHILD);
       window != nullptr && windows.size() < kMost; window = ::GetWindow(window, GW_HWNDNEXT)) {
    windows.push_back(window);
  }
  return windows;
}

std::vector<HWND> VisibleTopLevelWindows() {
  std::vector<HWND> windows = AllTopLevelWindows();
  std::erase_if(windows, [](HWND window) { return ::IsWindowVisible(window) == 0; });
  return windows;
}

DWORD ProcessOf(HWND window) {
  DWORD process = 0;
  ::GetWindowThreadProcessId(window, &process);
  return process;
}

std::vector<HWND> ChartMainWindows() {
  return ChartMainWindowsAmong(VisibleTopLevelWindows(), TitleOf,
                               [](HWND window) { return IsChartProgramFile(ProgramOf(window)); });
}

bool IsOfChartProgram(HWND window) {
  const std::vector<HWND> main = ChartMainWindows();
  return std::any_of(main.begin(), main.end(),
                     [&](HWND main_window) { return ProcessOf(main_window) == ProcessOf(window); });
}

bool TakesChartKeys(HWND window) {
  const std::string title = TitleOf(window);
  return (title == kChartFileDialog || title.starts_with(kChartTitle)) && IsOfChartProgram(window);
}

}  // namespace velumar
