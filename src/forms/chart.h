#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "forms/control.h"

namespace velumar {

// The values of a chart with their labels, in the order in which they are drawn.
struct ChartRows {
  std::vector<std::string> labels;
  std::vector<double> values;
  std::string hint;  // shown instead when there are no values
  bool operator==(const ChartRows&) const = default;
};

// The chart types.
inline constexpr int kChart3DBar = 0;
inline constexpr int kChart2DBar = 1;
inline constexpr int kChart3DLine = 2;
inline constexpr int kChart2DLine = 3;
inline constexpr int kChart2DArea = 5;
inline constexpr int kChart3DStep = 6;

// All that a chart shows. Copies share the rows.
struct ChartContent {
  std::shared_ptr<const ChartRows> rows = std::make_shared<ChartRows>();
  int type = kChart2DLine;
  Colour series = 49152;  // a green
  bool shadow = false;
  bool white_wall = false;
  std::optional<std::pair<double, double>> span;  // the visible rows; without, all of them

  bool operator==(const ChartContent&) const = default;
};

// A control that can be saved as a picture.
class SavableControl : public Control {
 public:
  using Control::Control;
  void Reset() override;

  // Saves the picture as it is shown. Throws std::runtime_error that names the file; an existing
  // file is then unchanged.
  void SaveTo(const std::string& file) const;

  // Set by the view: the file types, and how to save one.
  std::vector<std::string> endings;
  std::function<void(const std::string& file)> save;
};

class Chart : public SavableControl {
 public:
  // What is below `strip_top`, in twips of the container, is covered by other controls.
  Chart(Form& form, const ControlSpec& spec, float strip_top)
      : SavableControl(form, ControlKind::kChart, spec), strip_top_(strip_top) {}
  void Reset() override;

  // The covered part of the chart's height, in twips.
  float Covered() const;

  const ChartContent& Content() const { return content_; }
  void SetRows(ChartRows rows);
  void SetType(int type) { Assign(content_.type, type); }
  void SetSeriesColour(Colour colour) { Assign(content_.series, colour); }
  void SetShadow(bool shadow) { Assign(content_.shadow, shadow); }
  void SetWallWhite() { Assign(content_.white_wall, true); }
  // A 2D line without shadow on a plain wall, showing all rows. Rows and colour don't change.
  void ToDefaults();
  // After a zoom or drag by the trader. The view shows it already.
  void UserSpan(std::optional<std::pair<double, double>> span) { content_.span = span; }

 private:
  float strip_top_;
  ChartContent content_;
};

struct NumberPicture;  // progress/number_picture.h

// A picture of numbers, such as an equity curve.
class Plot : public SavableControl {
 public:
  Plot(Form& form, const ControlSpec& spec) : SavableControl(form, ControlKind::kPlot, spec) {}
  void Reset() override;

  // Null: an empty picture.
  const std::shared_ptr<const NumberPicture>& Picture() const { return picture_; }
  void SetPicture(const std::shared_ptr<const NumberPicture>& picture) {
    Assign(picture_, picture);
  }

 private:
  std::shared_ptr<const NumberPicture> picture_;
};

// How the page of a preview is printed.
struct PrintJob {
  int orientation = 1;  // 2 is landscape
  int quality = -3;     // -2 low to -4 high
  int copies = 1;
  std::string pdf_file;  // used instead of the printer unless empty
};

// A picture of a chart as it was when the content was set, as ink on white in every theme, since
// that is what is printed.
class ChartPicture : public Control {
 public:
  ChartPicture(Form& form, const ControlSpec& spec)
      : Control(form, ControlKind::kChartPicture, spec) {}
  void Reset() override;

  const ChartContent& Content() const { return content_; }
  void SetContent(ChartContent content);
  // Throws std::runtime_error with the printer's reason.
  void PrintPages(const PrintJob& job) const;

  // Mouse positions are in twips within the picture.
  void UserMouseDown(float x, float y) { UserFire(on_mouse_down, x, y); }
  void UserMouseMove(float x, float y) { UserFire(on_mouse_move, x, y); }
  void UserMouseUp(float x, float y) { UserFire(on_mouse_up, x, y); }
  std::function<void(float x, float y)> on_mouse_down;
  std::function<void(float x, float y)> on_mouse_move;
  std::function<void(float x, float y)> on_mouse_up;

  // Set by the view.
  std::function<void(const PrintJob& job)> print;

 private:
  ChartContent content_;
};

}  // namespace velumar
