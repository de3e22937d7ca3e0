#pragma once

#include <QAbstractButton>
#include <QWidget>

#include "app/controls/control_view.h"

namespace velumar {

// A backdrop, cut to the outline of its window. Any mouse button on it counts as a press.
class PictureView : public QWidget, public ControlView {
 public:
  PictureView(FormCanvas& canvas, QWidget& window, Picture& picture);
  QWidget& Widget() override { return *this; }
  void Update() override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  FormCanvas& canvas_;
  Picture& picture_;
};

// A picture that is pressed, released and clicked without taking the keyboard focus.
class PictureButtonView : public QAbstractButton, public ControlView {
 public:
  PictureButtonView(FormCanvas& canvas, QWidget& window, PictureButton& button);
  QWidget& Widget() override { return *this; }
  void Update() override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void PaintFocus(QPainter& painter) const;

  FormCanvas& canvas_;
  PictureButton& button_;
};

}  // namespace velumar
