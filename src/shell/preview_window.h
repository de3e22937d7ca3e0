#pragma once

#include <cstddef>

#include "forms/desktop.h"
#include "platform/platform.h"

namespace velumar {

// What the controls of the print preview do: it shows an A4 sheet with the result window's chart on
// it, at a zoom, and resizes that chart. A result window that was closed opens hidden. Lengths are
// twips.
class PreviewWindow {
 public:
  PreviewWindow(Desktop& desktop, Platform& platform);

 private:
  struct Point {
    double x = 0;
    double y = 0;
  };
  // As it is when the preview opens.
  struct Page {
    Point chart_size;  // after the last zoom
    Point chart_at_drop;
    double zoom_at_drop = 0.25;
    Point drag_start;
    bool dragging = false;
    bool portrait = true;
    int quality = 1;  // 0 low, 1 medium, 2 high
    int copies = 1;
  };

  void Load();
  void Close();
  double Zoom() { return Window().HScroll2.Value() / 100.0; }
  // Sizes sheet and chart for the zoom.
  void ApplyZoom();
  // One side of the chart: 25 percent is its size after the last zoom, 100 four times that.
  void SetChartHeight(int percent);
  void SetChartWidth(int percent);
  // Takes the chart's picture for the sheet. The picture stays as it is until the next change of
  // size: by then the result window may be closed or show another run.
  void TakePicture();
  // Drags the chart; it may leave the sheet.
  void MoveChart(float x, float y);
  void DropChart(float x, float y);
  void ChooseEntry(std::size_t list, std::size_t entry);
  void Print();
  Graph2& Window() { return desktop_.graph2(); }

  Desktop& desktop_;
  Platform& platform_;
  Page page_;
};

}  // namespace velumar
