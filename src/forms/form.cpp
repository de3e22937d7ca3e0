#include "forms/form.h"

namespace velumar {

Form::Form(const FormSpec& spec)
    : name_(spec.name),
      spec_(spec),
      caption_(spec.caption),
      width_(spec.width),
      height_(spec.height) {}

int Form::BeginSlide(float rest_top) {
  rest_top_ = rest_top;
  return ++slide_;
}

void Form::EndSlide(int slide) {
  if (Slides(slide)) rest_top_.reset();
}

void Form::Show() {
  if (visible_) {
    if (listener_ != nullptr) listener_->FormRaised(*this);
    return;
  }
  visible_ = true;
  Changed();
}

void Form::SetCorners(int width, int height) {
  corner_width_ = width;
  corner_height_ = height;
  Changed();
}

void Form::StartDrag() {
  if (listener_ != nullptr) listener_->DragStarted(*this);
}

Control* Form::Find(std::string_view name) const {
  for (Control* control : controls_) {
    if (control->Name() == name) return control;
  }
  return nullptr;
}

void Form::UserDrop(const std::vector<std::string>& files) {
  if (!visible_) return;
  if (const auto drop = on_drop) drop(files);
}

void Form::UserPress() {
  if (visible_ && on_press) on_press();
}

void Form::ControlChanged(Control& control) {
  if (listener_ != nullptr && loaded_) listener_->ControlChanged(*this, control);
}

void Form::BeLoaded() {
  Reset();
  loaded_ = true;
  if (listener_ != nullptr) listener_->FormLoaded(*this);
  if (on_load) on_load();
}

void Form::BeUnloaded() {
  if (on_unload) on_unload();
  visible_ = false;
  loaded_ = false;
  if (listener_ != nullptr) listener_->FormUnloaded(*this);
}

void Form::Changed() {
  if (listener_ != nullptr && loaded_) listener_->FormChanged(*this);
}

void Form::Reset() {
  caption_ = spec_.caption;
  left_ = 0;
  top_ = 0;
  ++slide_;
  rest_top_.reset();
  width_ = spec_.width;
  height_ = spec_.height;
  visible_ = false;
  topmost_ = false;
  opacity_ = 255;
  corner_width_ = 0;
  corner_height_ = 0;
  for (Control* control : controls_) control->Reset();
}

}  // namespace velumar
