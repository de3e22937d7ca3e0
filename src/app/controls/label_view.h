#pragma once

#include <QLabel>

#include "app/controls/control_view.h"
#include "app/theme/text_fit.h"

namespace velumar {

// A text that is never cut: it shrinks, and a text too long even for that shows its ends, with the
// whole of it as the second line of the tooltip. A press on it goes through to the window.
class LabelView : public QLabel, public ControlView {
 public:
  LabelView(FormCanvas& canvas, QWidget& window, Label& label);
  QWidget& Widget() override { return *this; }
  void Update() override;

  const FittedText& Fitted() const { return fitted_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor Ground() const;

  FormCanvas& canvas_;
  Label& label_;
  FittedText fitted_;
};

}  // namespace velumar
