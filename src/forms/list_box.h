#pragma once

#include <string>
#include <utility>
#include <vector>

#include "forms/control.h"

namespace velumar {

// A list of lines, read only.
class ListBox : public Control {
 public:
  ListBox(Form& form, const ControlSpec& spec) : Control(form, ControlKind::kListBox, spec) {}
  void Reset() override {
    Control::Reset();
    lines_.clear();
  }
  const std::vector<std::string>& Lines() const { return lines_; }
  void SetLines(std::vector<std::string> lines) {
    lines_ = std::move(lines);
    Changed();
  }

 private:
  std::vector<std::string> lines_;
};

}  // namespace velumar
