#include "forms/form.h"

namespace velumar {

Form::Form(const FormSpec& spec)
    : name_(spec.name), spec_(spec), state_{.caption = std::string(spec.caption)} {}

int Form::BeginSlide(float rest_top) {
  state_.rest_top = rest_top;
  return ++slide_;
}

void Form::EndSlide(int slide) {
  if (Slides(slide)) state_.rest_top.reset();
}

void Form::Show() {
  if (Visible()) {
    if (listener_ != nullptr) listener_->FormRaised(*this);
    return;
  }
  state_.visible = true;
  Changed();
}

void Form::SetCorners(int width, int height) {
  state_.corner_width = width;
  state_.corner_height = height;
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
  if (!Visible()) return;
  if (const auto drop = on_drop) drop(files);
}

void Form::UserPress() {
  if (Visible() && on_press) on_press();
}

void Form::ControlChanged(Control& control) {
  if (listener_ != nullptr && loaded_) listener_->ControlChanged(*this, control);
}

void Form::Load() {
  state_ = {.caption = std::string(spec_.caption)};
  ++slide_;
  for (Control* control : controls_) control->Reset();
  loaded_ = true;
  if (listener_ != nullptr) listener_->FormLoaded(*this);
  if (on_load) on_load();
}

void Form::Unload() {
  if (on_unload) on_unload();
  state_.visible = false;
  loaded_ = false;
  if (listener_ != nullptr) listener_->FormUnloaded(*this);
}

void Form::Changed() {
  if (listener_ != nullptr && loaded_) listener_->FormChanged(*this);
}

}  // namespace velumar
