#include "platform/windows/chart_desktop.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

#include "platform/chart_program.h"
#include "platform/windows/chart_program.h"
#include "platform/windows/foreground.h"

namespace velumar {

namespace {

using std::chrono_literals::operator""ms;

constexpr auto kActivationTimeout = 500ms;
constexpr UINT kWherever = SWP_NOMOVE | SWP_NOSIZE;

HWND Native(WindowId window) { return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(window)); }

// Some desktops draw the window that gets the focus above those that stay on top. This raises ours
// again, the lowest first to keep their order. The window should have processed the focus before:
// it answers a message only then.
void RaiseOwnOnTop(HWND focused, std::chrono::milliseconds patience) {
  Answers(focused, patience);
  std::vector<HWND> windows = VisibleTopLevelWindows();
  std::erase_if(windows, [](HWND window) {
    return (::GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOPMOST) == 0 ||
           ProcessOf(window) != ::GetCurrentProcessId();
  });
  std::reverse(windows.begin(), windows.end());
  for (const HWND window : windows) {
    ::SetWindowPos(window, HWND_TOPMOST, 0, 0, 0, 0, kWherever | SWP_NOACTIVATE);
  }
}

// The search ends early if the last window found is closed.
std::vector<HWND> FileDialogs() {
  constexpr std::size_t kMost = 1000;
  std::vector<HWND> found;
  HWND window = nullptr;
  do {
    window =
        ::FindWindowExA(nullptr, window, kChartFileDialogClass.data(), kChartFileDialog.data());
    if (window != nullptr) found.push_back(window);
  } while (window != nullptr && found.size() < kMost);
  return found;
}

class WindowsChartWindows : public ChartWindows {
 public:
  std::vector<WindowId> TopLevelWindows() override {
    std::vector<WindowId> windows;
    for (const HWND window : AllTopLevelWindows()) {
      windows.push_back(reinterpret_cast<std::uintptr_t>(window));
    }
    return windows;
  }

  std::string WindowTitle(WindowId window) override { return TitleOf(Native(window)); }

  bool IsWindowVisible(WindowId window) override {
    return ::IsWindowVisible(Native(window)) != 0 && ::IsIconic(Native(window)) == 0;
  }

  bool HasOwner(WindowId window) override {
    return ::GetWindow(Native(window), GW_OWNER) != nullptr;
  }

  void Maximize(WindowId window) override {
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    bool placed = ::GetWindowPlacement(Native(window), &placement) != 0;
    placement.showCmd = SW_SHOWMAXIMIZED;
    placement.flags |= WPF_ASYNCWINDOWPLACEMENT;
    placed = placed && ::SetWindowPlacement(Native(window), &placement) != 0;
    // A program that may not place another's windows may still ask for it.
    if (!placed) ::ShowWindowAsync(Native(window), SW_SHOWMAXIMIZED);
  }

  bool BringToFront(std::string_view title) override {
    const std::optional<HWND> window = Titled(title);
    if (!window) return false;
    // Asynchronous, so that a program that hangs doesn't block this one.
    if (::IsIconic(*window) != 0) ::ShowWindowAsync(*window, SW_RESTORE);
    // If the window has a dialog open, only the dialog can have the focus.
    const HWND target = ::IsWindowEnabled(*window) != 0 ? *window : ::GetLastActivePopup(*window);
    if (!IsInFront(target)) TakeFocus(target);
    WaitUntil(kActivationTimeout, [&] { return IsInFront(target) && ::IsIconic(*window) == 0; });
    RaiseOwnOnTop(target, kActivationTimeout);
    focused_ = target;
    return true;
  }

  std::uint32_t ProcessOf(std::string_view title) override {
    const std::optional<HWND> window = Titled(title);
    return window ? velumar::ProcessOf(*window) : 0;
  }

  // Asked often, so this also notices when the trader has clicked another window.
  WindowId FocusedWindow() override {
    constexpr std::chrono::milliseconds kNoTime{50};
    const HWND focused = ::GetForegroundWindow();
    const bool others = std::exchange(focused_, focused) != focused && focused != nullptr &&
                        velumar::ProcessOf(focused) != ::GetCurrentProcessId();
    if (others) RaiseOwnOnTop(focused, kNoTime);
    return reinterpret_cast<std::uintptr_t>(focused);
  }

  WindowOwner OwnerOf(WindowId window) override {
    if (velumar::ProcessOf(Native(window)) == ::GetCurrentProcessId()) return WindowOwner::kOwn;
    return IsOfChartProgram(Native(window)) ? WindowOwner::kChartProgram : WindowOwner::kOther;
  }

  bool GiveFocus(WindowId window) override {
    const HWND target = Native(window);
    if (::IsWindowVisible(target) == 0 || ::IsIconic(target) != 0) return false;
    if (!IsInFront(target)) TakeFocus(target);
    WaitUntil(kActivationTimeout, [target] { return IsInFront(target); });
    RaiseOwnOnTop(target, kActivationTimeout);
    focused_ = target;
    return true;
  }

  bool FileDialogExists() override {
    const std::vector<HWND> found = FileDialogs();
    const auto of_chart_program = std::find_if(found.begin(), found.end(), IsOfChartProgram);
    if (of_chart_program == found.end()) return false;
    // The dialog that the user sees may be a window of another class.
    for (const HWND window : VisibleTopLevelWindows()) {
      const bool dialog = TitleOf(window) == kChartFileDialog &&
                          velumar::ProcessOf(window) == velumar::ProcessOf(*of_chart_program);
      if (dialog && !IsInFront(window)) TakeFocus(window);
      if (dialog) break;
    }
    return true;
  }

 private:
  static std::optional<HWND> Titled(std::string_view title) {
    if (title != kChartTitle) return WindowWithTitle(VisibleTopLevelWindows(), title, TitleOf);
    const std::vector<HWND> main = ChartMainWindows();
    return main.empty() ? std::nullopt : std::optional(main.front());
  }

  HWND focused_ = nullptr;  // when last asked
};

}  // namespace

std::unique_ptr<ChartWindows> MakeWindowsChartWindows() {
  return std::make_unique<WindowsChartWindows>();
}

}  // namespace velumar
