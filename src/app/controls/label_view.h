#pragma once

#include <QLabel>

#include "app/controls/control_view.h"

namespace velumar {

// A text that is never cut off: its font shrinks, and if that isn't enough, its middle is elided
// and the tooltip has the full text. A press on it goes through to the window.
class LabelView : public View<QLabel, Label> {
 public:
  explicit LabelView(const Parts& parts) : View(parts) { setTextFormat(Qt::PlainText); }
  void Update() override;

  const FittedText& Fitted() const { return fitted_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor Background() const;

  FittedText fitted_;
};

// The baseline of a label's text, in logical pixels of the window. Captions are level with the box
// or button next to them, display type has a line of its own, and no text leaves its label.
double Baseline(const Control& label, const QFont& font, const QString& text);

}  // namespace velumar
