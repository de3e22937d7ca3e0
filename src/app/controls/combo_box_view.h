#pragma once

#include <QComboBox>
#include <QCompleter>

#include "app/controls/combo_rows.h"
#include "app/controls/control_view.h"
#include "app/controls/fitting_line_edit.h"

namespace velumar {

// A list with a line to type into, which offers the lines that a typed text may mean. What is
// chosen in the list or by the arrow keys is a choice of the model's row; what is typed is a text,
// even when a row reads the same.
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
  void BindLine();
  void OfferMatches();
  void Offer(const QString& typed);
  void Choose(int row);
  void UpdateRows();
  void UpdateText();

  FormCanvas& canvas_;
  ComboBox& box_;
  FittingLineEdit& line_;
  ComboRows rows_;
  ComboRows matches_;
  QCompleter* offer_ = nullptr;  // where the box offers matches
};

}  // namespace velumar
