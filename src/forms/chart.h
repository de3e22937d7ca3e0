#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "forms/control.h"

namespace velumar {

// A value for each date, in the order in which they are drawn.
struct ChartRows {
  std::vector<std::string> labels;
  std::vector<double> values;
  std::string hint;  // shown instead when there are no values
  bool operator==(const ChartRows&) const = default;
};

// The numbers of the types that a chart is drawn as.
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
  std::optional<std::pair<double, double>> span;  // the places in sight; all of them without

  bool operator==(const ChartContent&) const = default;
};

class Chart : public Control {
 public:
  // Something lies over all that is below `strip_top`, in twips of the container.
  Chart(Form& form, const ControlSpec& spec, float strip_top)
      : Control(form, ControlKind::kChart, spec), strip_top_(strip_top) {}
  void Reset() override;

  // The part of the chart's height that is covered, in twips.
  float Covered() const;

  const ChartContent& Content() const { return content_; }
  void SetRows(ChartRows rows);
  void SetType(int type) { Assign(content_.type, type); }
  void SetSeriesColour(int red, int green, int blue);
  void SetShadow(bool shadow) { Assign(content_.shadow, shadow); }
  void SetWallWhite() { Assign(content_.white_wall, true); }
  // A flat line without shadow on a plain wall, all of it in sight. Rows and colour stay.
  void ToDefaults();
  // The hand on the wheel or dragging; who draws the chart shows it already.
  void UserSpan(std::optional<std::pair<double, double>> span) { content_.span = span; }

  // Saves the chart as it is shown. Throws std::runtime_error that names the file; an older file
  // of that name is then untouched.
  void SaveTo(const std::string& file) const;

  // Bound by who draws the chart: the endings that files can have, and the saving.
  std::vector<std::string> endings;
  std::function<void(const std::string& file)> save;

 private:
  float strip_top_;
  ChartContent content_;
};

// A page to be printed: the picture at its own place and size.
struct PrintJob {
  int orientation = 1;  // 2 is across
  int quality = -3;     // -2 low to -4 high
  int copies = 1;
  std::string pdf_file;  // in place of the printer, where it isn't empty
};

// The picture of a chart at the control's size.
class ChartPicture : public Control {
 public:
  ChartPicture(Form& form, const ControlSpec& spec)
      : Control(form, ControlKind::kChartPicture, spec) {}
  void Reset() override;

  const ChartContent& Content() const { return content_; }
  void SetContent(ChartContent content);
  // Throws std::runtime_error with the printer's reason.
  void PrintPages(const PrintJob& job) const;

  // The mouse in twips within the picture.
  void UserMouseDown(float x, float y);
  void UserMouseMove(float x, float y);
  void UserMouseUp(float x, float y);
  std::function<void(float x, float y)> on_mouse_down;
  std::function<void(float x, float y)> on_mouse_move;
  std::function<void(float x, float y)> on_mouse_up;

  // Bound by who draws the picture.
  std::function<void(const PrintJob& job)> print;

 private:
  ChartContent content_;
};

}  // namespace velumar
