#include <windows.h>

#include "charthost/view/dialog_plate.h"

namespace velumar {

struct DialogPlate::Plate {
  struct Destroy {
    using pointer = HWND;
    void operator()(HWND window) const { ::DestroyWindow(window); }
  };

  // Hidden, so that nobody can give it the focus.
  std::unique_ptr<HWND, Destroy> window{
      ::CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, L"#32770", L"Open", WS_POPUP, 0, 0, 0,
                        0, nullptr, nullptr, ::GetModuleHandleW(nullptr), nullptr)};
};

DialogPlate::DialogPlate() = default;

DialogPlate::~DialogPlate() = default;

void DialogPlate::PutUp() {
  if (!plate_) plate_ = std::make_unique<Plate>();
}

void DialogPlate::TakeDown() { plate_.reset(); }

}  // namespace velumar
