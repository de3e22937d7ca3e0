#include "shell/run_keys.h"

#include <utility>

namespace velumar {

bool RunKeys::InRun() const { return desktop_.Untouched().form2.Visible(); }

PictureButton* RunKeys::ButtonOf(const RunKeyPress& press) const {
  Desktop::Windows& windows = desktop_.Untouched();
  Form2& navigator = windows.form2;
  Form3& panel = windows.form3;
  switch (press.code) {
    case run_key::kSpace:
      return navigator.Image4.Reachable() ? &navigator.Image4 : &navigator.Image3;
    case run_key::kLeft:
      return &navigator.Image2;
    case run_key::kRight:
      return &navigator.Image1;
    case run_key::kPageUp:
      return &navigator.Image6;
    case run_key::kPageDown:
      return &navigator.Image7;
    case run_key::kLong:
      return press.shift ? &panel.imgOffsetLong : &panel.imgLong;
    default:
      return press.shift ? &panel.ImgOffsetShort : &panel.ImgShort;
  }
}

bool RunKeys::Press(const RunKeyPress& press) {
  if (!IsRunKey(press) || !InRun()) return false;
  if (!trader_.AtRun()) return true;
  // A key held down repeats steps, no faster than the chart follows, but never orders.
  if (press.repeated && (!IsStepKey(press.code) || stepping_)) return true;
  if (const auto command = commands_.find(press.code); command != commands_.end()) {
    command->second();
    return true;
  }
  // Space neither pauses nor restarts a run that is being prepared.
  if (press.code == run_key::kSpace && session_.Preparing) return true;
  const bool before = std::exchange(stepping_, stepping_ || IsStepKey(press.code));
  ButtonOf(press)->UserClick();
  stepping_ = before;
  return true;
}

bool RunKeys::PressFromChart(const RunKeyPress& press) { return !chart_opening_() && Press(press); }

}  // namespace velumar
