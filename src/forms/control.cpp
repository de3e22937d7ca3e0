#include "forms/control.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "forms/form.h"

namespace velumar {

Control::Control(Form& form, ControlKind kind, const ControlSpec& spec)
    : form_(form), kind_(kind), name_(spec.name), spec_(spec), start_text_(spec.text) {
  Control::Reset();
  form.Register(*this);
}

void Control::Reset() {
  state_ = {.text = start_text_,
            .tooltip = std::string(spec_.tooltip),
            .colour = spec_.look.colour,
            .left = spec_.left,
            .top = spec_.top,
            .width = spec_.width,
            .height = spec_.height};
}

std::string Control::SpokenName() const {
  if (!spec_.spoken.empty()) return std::string(spec_.spoken);
  if (kind_ == ControlKind::kLabel) return Text();
  if (!ToolTip().empty()) return ToolTip().substr(0, ToolTip().find('\n'));
  if (kind_ != ControlKind::kButton && kind_ != ControlKind::kFrame) return "";
  std::string name = Text();
  std::erase(name, '&');
  return name;
}

void Control::SetPlace(float left, float top) {
  state_.left = left;
  state_.top = top;
  Changed();
}

void Control::SetSize(float width, float height) {
  state_.width = width;
  state_.height = height;
  Changed();
}

bool Control::Reachable() const { return form_.Visible() && Visible() && Enabled(); }

void Control::UserLeave() {
  if (form_.Loaded()) Fire(on_leave);
}

void Control::Changed() { form_.ControlChanged(*this); }

void TextBox::SetText(std::string_view text) {
  if (text == Text()) return;
  Control::SetText(text);
  Fire(on_change);
}

void TextBox::UserType(std::string_view text, int key_code) {
  if (!Reachable()) return;
  SetText(text);
  UserKeyUp(key_code);
}

ComboBox::ComboBox(Form& form, const ControlSpec& spec, std::vector<std::string> items, bool sorted)
    : Control(form, ControlKind::kComboBox, spec), start_items_(std::move(items)), sorted_(sorted) {
  ComboBox::Reset();
}

void ComboBox::Reset() {
  Control::Reset();
  rows_.clear();
  for (const std::string& item : start_items_) rows_.push_back({item, 0});
  index_ = -1;
}

void ComboBox::Clear() {
  rows_.clear();
  index_ = -1;
  AssignText("");
  Changed();
}

void ComboBox::SetRows(std::vector<Row> rows) {
  rows_ = std::move(rows);
  if (sorted_) {
    std::stable_sort(rows_.begin(), rows_.end(),
                     [](const Row& a, const Row& b) { return a.text < b.text; });
  }
  index_ = -1;
  Changed();
}

void ComboBox::SetIndex(int index) {
  const std::string text = rows_.at(static_cast<std::size_t>(index)).text;
  index_ = index;
  AssignText(text);
  Changed();
  Fire(on_click);
}

void ComboBox::SetText(std::string_view text) {
  if (text == Text()) return;
  AssignText(text);
  index_ = -1;
  Changed();
}

void ComboBox::UserChoose(int index) {
  if (Reachable() && index >= 0 && index < static_cast<int>(rows_.size())) SetIndex(index);
}

void ComboBox::UserType(std::string_view text, int key_code) {
  if (!Reachable()) return;
  SetText(text);
  UserKeyUp(key_code);
}

void Slider::SetValue(int value) {
  if (value < range_.low || value > range_.high) {
    throw std::out_of_range(Name() + ": " + std::to_string(value) +
                            " is outside the range of the slider");
  }
  ValueControl::SetValue(value, on_change);
}

void Slider::UserMove(int value) {
  if (Reachable()) SetValue(std::clamp(value, range_.low, range_.high));
}

}  // namespace velumar
