#include "forms/control.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "forms/form.h"

namespace velumar {

namespace {

// A handler may unload its window or bind other handlers, so it runs from a copy.
template <typename Handler, typename... Arguments>
void Fire(const Handler& handler, Arguments... arguments) {
  if (const Handler held = handler) held(arguments...);
}

}  // namespace

Control::Control(Form& form, ControlKind kind, const ControlSpec& spec)
    : form_(form),
      kind_(kind),
      name_(spec.name),
      spec_(spec),
      start_text_(spec.text),
      text_(spec.text),
      tooltip_(spec.tooltip),
      colour_(spec.look.colour),
      left_(spec.left),
      top_(spec.top),
      width_(spec.width),
      height_(spec.height) {
  form.Register(*this);
}

void Control::Reset() {
  text_ = start_text_;
  tooltip_ = spec_.tooltip;
  visible_ = true;
  enabled_ = true;
  colour_ = spec_.look.colour;
  left_ = spec_.left;
  top_ = spec_.top;
  width_ = spec_.width;
  height_ = spec_.height;
}

std::string Control::SpokenName() const {
  if (!spec_.spoken.empty()) return std::string(spec_.spoken);
  if (kind_ == ControlKind::kLabel) return text_;
  if (!tooltip_.empty()) return tooltip_.substr(0, tooltip_.find('\n'));
  const bool caption = kind_ == ControlKind::kButton || kind_ == ControlKind::kFrame;
  std::string name = caption ? text_ : std::string();
  name.erase(std::remove(name.begin(), name.end(), '&'), name.end());
  return name;
}

void Control::SetPlace(float left, float top) {
  left_ = left;
  top_ = top;
  Changed();
}

void Control::SetSize(float width, float height) {
  width_ = width;
  height_ = height;
  Changed();
}

bool Control::Reachable() const { return form_.Visible() && visible_ && enabled_; }

void Control::UserClick() {
  if (Reachable()) Fire(on_click);
}

void Control::UserDoubleClick() {
  if (Reachable()) Fire(on_double_click);
}

void Control::UserPress() {
  if (Reachable()) Fire(on_press);
}

// A release follows its press even if the press has hidden the control.
void Control::UserRelease() { Fire(on_release); }

void Control::UserKeyUp(int key_code) {
  if (Reachable()) Fire(on_key_up, key_code);
}

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

DatePicker::DatePicker(Form& form, const ControlSpec& spec, std::int32_t start_value)
    : Control(form, ControlKind::kDatePicker, spec),
      start_value_(start_value),
      value_(start_value) {}

void DatePicker::Reset() {
  Control::Reset();
  value_ = start_value_;
}

void DatePicker::SetValue(std::int32_t date) {
  if (Assign(value_, date)) Fire(on_change);
}

void DatePicker::UserPick(std::int32_t date) {
  if (Reachable()) SetValue(date);
}

void DatePicker::UserChoose(DayChoice choice) {
  if (!Reachable()) return;
  if (const auto chosen = on_choice) chosen(choice);
}

Slider::Slider(Form& form, const ControlSpec& spec, Range range, int start_value, ControlKind kind)
    : Control(form, kind, spec), range_(range), start_value_(start_value), value_(start_value) {}

void Slider::Reset() {
  Control::Reset();
  value_ = start_value_;
}

void Slider::SetValue(int value) {
  if (value < range_.low || value > range_.high) {
    throw std::out_of_range(Name() + ": " + std::to_string(value) +
                            " is outside the range of the slider");
  }
  if (Assign(value_, value)) Fire(on_change);
}

void Slider::UserMove(int value) {
  if (Reachable()) SetValue(std::clamp(value, range_.low, range_.high));
}

void ProgressLine::Reset() {
  fraction_ = 0;
  Control::Reset();
}

void CheckBox::Reset() {
  Control::Reset();
  checked_ = false;
}

void CheckBox::SetChecked(bool checked) {
  if (Assign(checked_, checked)) Fire(on_click);
}

void CheckBox::UserToggle() {
  if (Reachable()) SetChecked(!checked_);
}

}  // namespace velumar
