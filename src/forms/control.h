#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velumar {

class Form;

// As on_key_up reports them.
inline constexpr int kEnterKey = 13;
inline constexpr int kDeleteKey = 46;

// Colours are 32-bit values in blue-green-red order.
using Colour = std::uint32_t;
inline constexpr Colour kRed = 255;
inline constexpr Colour kGreen = 65280;
inline constexpr Colour kBlue = 16711680;
inline constexpr Colour kDarkGreen = 32768;
inline constexpr Colour kDarkBlue = 8388608;
inline constexpr Colour kLightRed = 8421631;
inline constexpr Colour kOrange = 33023;
inline constexpr Colour kWhite = 16777215;

enum class FontFace : std::uint8_t { kPlain, kVerdana, kImpact };
enum class Alignment : std::uint8_t { kLeft, kCentre };
enum class Backdrop : std::uint8_t { kNone, kWhitePaper, kGreenPaper, kBluePaper, kYellowPaper };

// How a control is drawn.
struct Look {
  Colour colour = 0;
  FontFace face = FontFace::kPlain;
  int points = 8;
  bool bold = false;
  bool italic = false;
  Alignment alignment = Alignment::kLeft;
  Backdrop backdrop = Backdrop::kNone;
};

// A row of a window's control table: place in twips, start text (the name of its artwork for a
// picture), tooltip, and what a screen reader says if neither of them names the control.
struct ControlSpec {
  std::string_view name;
  float left = 0;
  float top = 0;
  float width = 0;
  float height = 0;
  std::string_view text = {};
  std::string_view tooltip = {};
  Look look = {};
  std::string_view spoken = {};
};

enum class ControlKind : std::uint8_t {
  kPicture,
  kPictureButton,
  kLabel,
  kTextBox,
  kButton,
  kComboBox,
  kDatePicker,
  kSlider,
  kCheckBox,
  kProgressLine,
  kFrame,
  kListBox,
  kToolbar,
  kTabBar,
  kSwatch,
  kTable,
  kChart,
  kChartPicture,
  kPlot,
  kScrollBar,
  kMenu,
  kLine,
  kSheet,
  kLink,
  kNoteBox,
  kPictureFile
};

// A control without its view. Setting a property fires the same events as a change by the trader,
// and notifies the window's listener. Functions that begin with User are what the trader does; they
// do nothing if the control is hidden or disabled, or its window isn't shown.
class Control {
 public:
  Control(Form& form, ControlKind kind, const ControlSpec& spec);
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  // Resets to the table, as at each load of the window. Handlers are kept; no events fire.
  virtual void Reset();

  ControlKind Kind() const { return kind_; }
  const std::string& Name() const { return name_; }
  Form& Owner() const { return form_; }
  const Look& DesignLook() const { return spec_.look; }
  // The control that contains and clips it; null if that is the window.
  const Control* Container() const { return container_; }
  void PlaceIn(const Control& container) { container_ = &container; }

  const std::string& Text() const { return state_.text; }
  virtual void SetText(std::string_view text) { Assign(state_.text, text); }
  // The text after the next load.
  void SetStartText(std::string_view text) { start_text_ = text; }

  // The name for a screen reader, one line.
  std::string SpokenName() const;
  const std::string& ToolTip() const { return state_.tooltip; }
  void SetToolTip(std::string_view text) { Assign(state_.tooltip, text); }
  bool Visible() const { return state_.visible; }
  void SetVisible(bool visible) { Assign(state_.visible, visible); }
  bool Enabled() const { return state_.enabled; }
  void SetEnabled(bool enabled) { Assign(state_.enabled, enabled); }
  Colour ForeColour() const { return state_.colour; }
  void SetForeColour(Colour colour) { Assign(state_.colour, colour); }

  // Twips, relative to the window or the container.
  float Left() const { return state_.left; }
  float Top() const { return state_.top; }
  float Width() const { return state_.width; }
  float Height() const { return state_.height; }
  void SetPlace(float left, float top);
  void SetSize(float width, float height);

  // True if the trader can use it now.
  bool Reachable() const;
  void UserClick() { UserFire(on_click); }
  void UserDoubleClick() { UserFire(on_double_click); }
  void UserPress() { UserFire(on_press); }
  // A release follows its press even if the press has hidden the control.
  void UserRelease() { Fire(on_release); }
  void UserKeyUp(int key_code) { UserFire(on_key_up, key_code); }
  void UserLeave();

  std::function<void()> on_click;
  std::function<void()> on_double_click;
  std::function<void()> on_change;
  std::function<void()> on_press;
  std::function<void()> on_release;
  std::function<void(int key_code)> on_key_up;
  std::function<void()> on_leave;

 protected:
  void Changed();
  // Returns false, without notifying, if the field has that value.
  template <typename Field, typename Value>
  bool Assign(Field& field, const Value& value) {
    if (field == value) return false;
    field = value;
    Changed();
    return true;
  }
  void AssignText(std::string_view text) { state_.text = text; }
  // A handler may unload its window or bind other handlers, so it runs from a copy.
  template <typename Handler, typename... Arguments>
  static void Fire(const Handler& handler, Arguments... arguments) {
    if (const Handler held = handler) held(arguments...);
  }
  template <typename Handler, typename... Arguments>
  void UserFire(const Handler& handler, Arguments... arguments) const {
    if (Reachable()) Fire(handler, arguments...);
  }

 private:
  // What a load resets.
  struct State {
    std::string text;
    std::string tooltip;
    Colour colour = 0;
    float left = 0;
    float top = 0;
    float width = 0;
    float height = 0;
    bool visible = true;
    bool enabled = true;
  };

  Form& form_;
  ControlKind kind_;
  std::string name_;
  ControlSpec spec_;
  const Control* container_ = nullptr;
  std::string start_text_;
  State state_;
};

// A control with nothing but the common properties.
template <ControlKind kKind>
class PlainControl : public Control {
 public:
  PlainControl(Form& form, const ControlSpec& spec) : Control(form, kKind, spec) {}
};

// A backdrop; its Text names the artwork.
using Picture = PlainControl<ControlKind::kPicture>;
// Clicking a picture leaves the keyboard focus where the trader types; the Tab key reaches it.
using PictureButton = PlainControl<ControlKind::kPictureButton>;
using Label = PlainControl<ControlKind::kLabel>;
using Button = PlainControl<ControlKind::kButton>;
// White paper with a line around it and its Text in that line; other controls lie on it.
using Frame = PlainControl<ControlKind::kFrame>;
// A sheet of paper, white in every theme; other controls lie on it.
using Sheet = PlainControl<ControlKind::kSheet>;
// A text that opens another window.
using Link = PlainControl<ControlKind::kLink>;
// A straight line along the top of its place.
using Line = PlainControl<ControlKind::kLine>;
// The picture in the file that its Text names, as large as it fits; without one it says so. Enter
// and a double click fire on_double_click.
using PictureFile = PlainControl<ControlKind::kPictureFile>;
// A patch of its ForeColour that can be clicked.
using Swatch = PlainControl<ControlKind::kSwatch>;

class TextBox : public Control {
 public:
  TextBox(Form& form, const ControlSpec& spec) : Control(form, ControlKind::kTextBox, spec) {}
  // Fires on_change when the text differs from what the box holds.
  void SetText(std::string_view text) override;
  // Sets the text and fires on_change, then on_key_up of the last key.
  void UserType(std::string_view text, int key_code = 0);
};

// A box for several lines of text. The Tab key leaves it.
class NoteBox : public Control {
 public:
  NoteBox(Form& form, const ControlSpec& spec) : Control(form, ControlKind::kNoteBox, spec) {}
  void UserType(std::string_view text) {
    if (Reachable()) SetText(text);
  }
};

// A list with a text box that can be typed into.
class ComboBox : public Control {
 public:
  struct Row {
    std::string text;
    int data = 0;        // for the window's own use
    std::string note{};  // shown next to the text in the list
  };

  ComboBox(Form& form, const ControlSpec& spec, std::vector<std::string> items = {},
           bool sorted = false);
  void Reset() override;

  const std::vector<Row>& Rows() const { return rows_; }
  // A sorted list is searched: it offers the lines that match a typed text, and takes one only if
  // the trader chooses it, never by itself.
  bool Sorted() const { return sorted_; }
  // Offers the matching lines of a list that isn't sorted, too.
  bool Searched() const { return sorted_ || searched_; }
  void SetSearched(bool searched) { searched_ = searched; }
  // -1: the text was typed, or nothing is chosen.
  int Index() const { return index_; }
  void Clear();
  // A sorted list sorts them; equal lines keep their order.
  void SetRows(std::vector<Row> rows);
  // Sets the text of the line and fires on_click. Throws std::out_of_range.
  void SetIndex(int index);
  void SetText(std::string_view text) override;
  void UserChoose(int index);
  void UserType(std::string_view text, int key_code = 0);
  // If false, only lines of the list can be chosen.
  bool Typable() const { return typable_; }
  void SetTypable(bool typable) { typable_ = typable; }

 private:
  std::vector<std::string> start_items_;
  bool sorted_;
  bool searched_ = false;
  bool typable_ = true;
  std::vector<Row> rows_;
  int index_ = -1;
};

// A control with a value, which each load sets to its start value.
template <typename Held>
class ValueControl : public Control {
 public:
  void Reset() override {
    Control::Reset();
    value_ = start_value_;
  }

 protected:
  ValueControl(Form& form, ControlKind kind, const ControlSpec& spec, Held start_value = {})
      : Control(form, kind, spec), start_value_(start_value), value_(start_value) {}
  const Held& Value() const { return value_; }
  // Fires the handler if the value changes.
  void SetValue(const Held& value, const std::function<void()>& handler) {
    if (Assign(value_, value)) Fire(handler);
  }

 private:
  Held start_value_;
  Held value_;
};

enum class DayChoice : std::uint8_t { kFirst, kLast, kRandom };

// A date, as yyyymmdd. Fires on_change.
class DatePicker : public ValueControl<std::int32_t> {
 public:
  DatePicker(Form& form, const ControlSpec& spec, std::int32_t start_value)
      : ValueControl(form, ControlKind::kDatePicker, spec, start_value) {}
  using ValueControl::Value;
  void SetValue(std::int32_t date) { ValueControl::SetValue(date, on_change); }
  void UserPick(std::int32_t date) {
    if (Reachable()) SetValue(date);
  }
  void UserChoose(DayChoice choice) { UserFire(on_choice, choice); }

  // Handles one of the choices that the calendar offers.
  std::function<void(DayChoice choice)> on_choice;
  // Returns the days to mark; called when the calendar opens.
  std::function<std::vector<std::int32_t>()> covered_days;
};

// Fires on_change at each change of the value, during a drag as well.
class Slider : public ValueControl<int> {
 public:
  struct Range {
    int low = 0;
    int high = 0;
    int step = 1;
    int large_step = 0;  // 0: the same as step
  };

  Slider(Form& form, const ControlSpec& spec, Range range, int start_value,
         ControlKind kind = ControlKind::kSlider)
      : ValueControl(form, kind, spec, start_value), range_(range) {}
  const Range& Limits() const { return range_; }
  using ValueControl::Value;
  // Throws std::out_of_range.
  void SetValue(int value);
  void UserMove(int value);

 private:
  Range range_;
};

// A thin line that shows progress from left to right.
class ProgressLine : public ValueControl<float> {
 public:
  ProgressLine(Form& form, const ControlSpec& spec)
      : ValueControl(form, ControlKind::kProgressLine, spec) {}
  // 0 to 1.
  float Fraction() const { return Value(); }
  void SetFraction(float fraction) { SetValue(fraction, nullptr); }
};

// Fires on_click when it changes.
class CheckBox : public ValueControl<bool> {
 public:
  CheckBox(Form& form, const ControlSpec& spec)
      : ValueControl(form, ControlKind::kCheckBox, spec) {}
  bool Checked() const { return Value(); }
  void SetChecked(bool checked) { SetValue(checked, on_click); }
  void UserToggle() {
    if (Reachable()) SetChecked(!Checked());
  }
};

}  // namespace velumar
