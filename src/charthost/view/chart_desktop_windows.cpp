#include <windows.h>

#include "charthost/view/chart_desktop.h"
#include "platform/chart_program.h"

namespace velumar {

void ChooseChartDisplay() {}

struct DialogMarker::Marker {
  struct Destroy {
    using pointer = HWND;
    void operator()(HWND window) const { ::DestroyWindow(window); }
  };

  // Hidden, so that it never gets the focus.
  std::unique_ptr<HWND, Destroy> window{::CreateWindowExA(
      WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, kChartFileDialogClass.data(), kChartFileDialog.data(),
      WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, ::GetModuleHandleA(nullptr), nullptr)};
};

DialogMarker::DialogMarker() = default;

DialogMarker::~DialogMarker() = default;

void DialogMarker::Show() {
  if (!marker_) marker_ = std::make_unique<Marker>();
}

void DialogMarker::Hide() { marker_.reset(); }

}  // namespace velumar
