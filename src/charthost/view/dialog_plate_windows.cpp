#include <windows.h>

#include "charthost/view/dialog_plate.h"
#include "platform/chart_program.h"

namespace velumar {

struct DialogPlate::Plate {
  struct Destroy {
    using pointer = HWND;
    void operator()(HWND window) const { ::DestroyWindow(window); }
  };

  // Hidden, so that nobody can give it the focus.
  std::unique_ptr<HWND, Destroy> window{::CreateWindowExA(
      WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, kChartFileDialogClass.data(), kChartFileDialog.data(),
      WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, ::GetModuleHandleA(nullptr), nullptr)};
};

DialogPlate::DialogPlate() = default;

DialogPlate::~DialogPlate() = default;

void DialogPlate::PutUp() {
  if (!plate_) plate_ = std::make_unique<Plate>();
}

void DialogPlate::TakeDown() { plate_.reset(); }

}  // namespace velumar
