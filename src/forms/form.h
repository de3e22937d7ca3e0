#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "forms/control.h"

namespace velumar {

inline constexpr float kTwipsPerPixel = 15;

// Draws the windows. One listener serves all windows of a desktop.
class FormListener {
 public:
  virtual ~FormListener() = default;
  virtual void FormLoaded(Form& form) = 0;
  virtual void FormUnloaded(Form& form) = 0;
  // After a change of place, size, opacity, corners, caption or visibility.
  virtual void FormChanged(Form& form) = 0;
  virtual void ControlChanged(Form& form, Control& control) = 0;
  // The window is shown already and must come to the front.
  virtual void FormRaised(Form& form) = 0;
  // The window must follow the mouse until its button is released.
  virtual void DragStarted(Form& form) = 0;
};

// A window's row of its control table. docs/controls.md lists where windows depart from their
// tables, and why.
struct FormSpec {
  std::string_view name;
  std::string_view caption;
  float width = 0;   // twips
  float height = 0;  // twips
  // With the border and close button of a tool window; the size excludes them.
  bool bordered = false;
};

// A window without its view. Unloading resets it at the next load but keeps the object, so a
// handler that unloads its own window returns safely.
class Form {
 public:
  explicit Form(const FormSpec& spec);
  virtual ~Form() = default;
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  const std::string& Name() const { return name_; }
  const std::string& Caption() const { return state_.caption; }
  void SetCaption(std::string_view caption) { Assign(state_.caption, caption); }

  // Twips on the screen.
  float Left() const { return state_.left; }
  float Top() const { return state_.top; }
  float Width() const { return spec_.width; }
  float Height() const { return spec_.height; }
  void SetLeft(float left) { Assign(state_.left, left); }
  void SetTop(float top) { Assign(state_.top, top); }
  // A slide moves the window step by step while clicks run, until a newer slide begins. During the
  // slide RestTop is `rest_top`, so that no place on the way is saved.
  int BeginSlide(float rest_top);
  bool Slides(int slide) const { return slide == slide_; }
  void EndSlide(int slide);
  float RestTop() const { return state_.rest_top.value_or(Top()); }

  bool Bordered() const { return spec_.bordered; }
  bool Loaded() const { return loaded_; }
  bool Visible() const { return state_.visible; }
  // Brings a window that is shown already to the front.
  void Show();
  void Hide() { Assign(state_.visible, false); }

  bool Topmost() const { return state_.topmost; }
  void SetTopmost(bool topmost) { Assign(state_.topmost, topmost); }
  // 0 (invisible) to 255 (solid).
  int Opacity() const { return state_.opacity; }
  void SetOpacity(int opacity) { Assign(state_.opacity, opacity); }
  // Size of the corner ellipse in pixels; 0 by 0 is square.
  int CornerWidth() const { return state_.corner_width; }
  int CornerHeight() const { return state_.corner_height; }
  void SetCorners(int width, int height);
  void StartDrag();

  // True for a window to type in, where the keys of a run do nothing.
  bool KeepsKeys() const { return keeps_keys_; }
  void SetKeepsKeys(bool keeps_keys) { keeps_keys_ = keeps_keys; }

  // In the order of the table, back to front.
  const std::vector<Control*>& Controls() const { return controls_; }
  // Null if the window has no control of that name.
  Control* Find(std::string_view name) const;

  void UserPress();  // a mouse press on the window itself, whatever the button
  // Files dropped on the window; ignored unless it accepts them.
  void UserDrop(const std::vector<std::string>& files);

  std::function<void()> on_load;
  std::function<void()> on_unload;
  std::function<void()> on_press;
  std::function<void(const std::vector<std::string>& files)> on_drop;
  // The window is closed from outside, as by Alt+F4.
  std::function<void()> on_close;
  // The Esc and Enter keys, if no control uses them.
  std::function<void()> on_escape;
  std::function<void()> on_enter;

  // For the window's own controls and its desktop.
  void Register(Control& control) { controls_.push_back(&control); }
  void ControlChanged(Control& control);
  void SetListener(FormListener* listener) { listener_ = listener; }
  void Load();
  void Unload();

 private:
  // What a load resets.
  struct State {
    std::string caption;
    float left = 0;
    float top = 0;
    std::optional<float> rest_top = {};
    bool visible = false;
    bool topmost = false;
    int opacity = 255;
    int corner_width = 0;
    int corner_height = 0;
  };

  // Notifies unless the field has that value.
  template <typename Field, typename Value>
  void Assign(Field& field, const Value& value) {
    if (field == value) return;
    field = value;
    Changed();
  }
  void Changed();

  std::string name_;
  FormSpec spec_;
  State state_;
  int slide_ = 0;
  bool loaded_ = false;
  bool keeps_keys_ = false;
  std::vector<Control*> controls_;
  FormListener* listener_ = nullptr;
};

}  // namespace velumar
