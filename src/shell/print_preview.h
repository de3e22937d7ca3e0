#pragma once

#include <cstdint>

namespace velumar {

struct TwipsPoint {
  double x = 0;
  double y = 0;

  bool operator==(const TwipsPoint&) const = default;
};

struct TwipsSize {
  double width = 0;
  double height = 0;

  bool operator==(const TwipsSize&) const = default;
};

// The chart that a preview resizes: its size as it is shown, and at 100 percent.
struct PreviewChart {
  TwipsSize shown;
  std::int32_t whole_width = 0;
  std::int32_t whole_height = 0;
};

enum class PictureSide : std::uint8_t { kHeight, kWidth };

// The arithmetic of the print preview: an A4 sheet with the chart on it, shown at a zoom. All
// lengths are twips; percentages are limited to kLeastPercent to kMostPercent.
class PrintPreview {
 public:
  static constexpr int kLeastPercent = 25;
  static constexpr int kMostPercent = 100;
  static constexpr int kStartZoom = 50;
  static constexpr int kMostCopies = 10;

  // The chart is at the corner of the sheet; portrait, medium quality, one copy. Call Show next.
  PrintPreview() = default;

  int ZoomPercent() const { return zoom_percent_; }
  // Sizes sheet and chart for the zoom.
  void Show(PreviewChart& chart);
  // Does nothing if that is the zoom already.
  void SetZoom(int percent, PreviewChart& chart);
  // 25 means the size after the last zoom, 100 four times that.
  void SetChartPercent(PictureSide side, int percent, PreviewChart& chart);

  // Drags the chart; positions are within its picture. It may leave the sheet.
  void Press(TwipsPoint mouse);
  void Move(TwipsPoint mouse);
  void Release(TwipsPoint mouse);

  // Scrolls the view by the values of the scroll bars; the printed page does not change.
  void ScrollSheet(int across, int down);
  void ToggleOrientation();
  void SetQuality(int index);  // 0 low, 1 medium, 2 high
  void SetCopies(int copies);  // 1 to kMostCopies

  TwipsPoint SheetPlace() const { return sheet_place_; }
  TwipsSize Sheet() const { return sheet_; }
  TwipsPoint ChartPlace() const { return chart_place_; }
  bool Portrait() const { return portrait_; }
  int PrintOrientation() const { return portrait_ ? 1 : 2; }
  int PrintQualityCode() const { return -2 - quality_; }
  int NoOfCopies() const { return copies_; }

 private:
  double Zoom() const { return zoom_percent_ / 100.0; }

  int zoom_percent_ = kStartZoom;
  double zoom_at_drop_ = 0.25;
  TwipsSize base_;  // of the chart, after the last zoom
  TwipsSize sheet_;
  TwipsPoint sheet_place_;
  TwipsPoint chart_place_;
  TwipsPoint chart_at_drop_;
  TwipsPoint drag_start_;
  bool dragging_ = false;
  bool portrait_ = true;
  int quality_ = 1;
  int copies_ = 1;
};

}  // namespace velumar
