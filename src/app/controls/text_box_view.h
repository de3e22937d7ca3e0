#pragma once

#include <set>

#include "app/controls/control_view.h"
#include "app/controls/fitting_line_edit.h"

namespace velumar {

// A line to type into; the tooltip tells a text that is too long for it.
class TextBoxView : public FittingLineEdit, public ControlView {
 public:
  TextBoxView(FormCanvas& canvas, QWidget& window, TextBox& box);
  QWidget& Widget() override { return *this; }
  void Update() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  FormCanvas& canvas_;
  TextBox& box_;
  std::set<int> pressed_;  // keys that went down here
};

}  // namespace velumar
