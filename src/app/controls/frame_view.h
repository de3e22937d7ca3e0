#pragma once

#include <QWidget>

#include "app/controls/control_view.h"
#include "forms/frame.h"

namespace velumar {

class FrameView : public QWidget, public ControlView {
 public:
  FrameView(FormCanvas& canvas, QWidget& window, Frame& frame);
  QWidget& Widget() override { return *this; }
  void Update() override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  FormCanvas& canvas_;
  Frame& frame_;
};

}  // namespace velumar
