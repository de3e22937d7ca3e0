#pragma once

#include <QCheckBox>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>

#include "app/controls/control_view.h"

namespace velumar {

class ButtonView : public QPushButton, public ControlView {
 public:
  ButtonView(FormCanvas& canvas, QWidget& window, Button& button);
  QWidget& Widget() override { return *this; }
  void Update() override;

 protected:
  // Enter clicks it, as it clicks a picture.
  void keyPressEvent(QKeyEvent* event) override;

 private:
  FormCanvas& canvas_;
  Button& button_;
};

class SliderView : public QSlider, public ControlView {
 public:
  SliderView(FormCanvas& canvas, QWidget& window, Slider& slider);
  QWidget& Widget() override { return *this; }
  void Update() override;

 private:
  FormCanvas& canvas_;
  Slider& slider_;
};

// A press on it goes through to the window.
class ProgressLineView : public QProgressBar, public ControlView {
 public:
  ProgressLineView(FormCanvas& canvas, QWidget& window, ProgressLine& line);
  QWidget& Widget() override { return *this; }
  void Update() override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  FormCanvas& canvas_;
  ProgressLine& line_;
};

class CheckBoxView : public QCheckBox, public ControlView {
 public:
  CheckBoxView(FormCanvas& canvas, QWidget& window, CheckBox& box);
  QWidget& Widget() override { return *this; }
  void Update() override;

 private:
  FormCanvas& canvas_;
  CheckBox& box_;
};

}  // namespace velumar
