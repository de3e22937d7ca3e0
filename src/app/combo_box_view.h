#pragma once

#include <QComboBox>
#include <QStringListModel>
#include <vector>

#include "app/control_view.h"
#include "app/fitting_line_edit.h"

namespace velumar {

// A list with a line to type into. What is chosen in the list or by the arrow keys is a choice of
// the model's row; what is typed is a text, even when a row reads the same.
class ComboBoxView : public QComboBox, public ControlView {
 public:
  ComboBoxView(FormCanvas& canvas, QWidget& window, ComboBox& box);
  QWidget& Widget() override { return *this; }
  void Update() override;
  void showPopup() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void UpdateRows();
  void UpdateText();

  FormCanvas& canvas_;
  ComboBox& box_;
  FittingLineEdit& line_;
  QStringListModel rows_;
  std::vector<std::string> shown_rows_;
};

}  // namespace velumar
