#include <windows.h>

#include <QWidget>

#include "charthost/view/chart_desktop.h"
#include "platform/chart_program.h"

namespace velumar {

void ChooseChartDisplay() {}

// A window shown without the focus would not be maximised.
void ShowMaximisedForTrader(QWidget& window) { window.showMaximized(); }

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
