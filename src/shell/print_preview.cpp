#include "shell/print_preview.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velumar {

namespace {

constexpr TwipsSize kPortraitSheet = {12000, 17000};
constexpr double kChartUnit = 0.25;  // the start value of the size bars counts as 1
constexpr double kScrollAcross = 400;
constexpr double kScrollDown = 900;

int Held(int percent) {
  return std::clamp(percent, PrintPreview::kLeastPercent, PrintPreview::kMostPercent);
}

}  // namespace

void PrintPreview::SetZoom(int percent, PreviewChart& chart) {
  percent = Held(percent);
  if (percent == zoom_percent_) return;
  zoom_percent_ = percent;
  Show(chart);
}

void PrintPreview::Show(PreviewChart& chart) {
  const double z = Zoom();
  sheet_ = {z * kPortraitSheet.width, z * kPortraitSheet.height};
  if (!portrait_) std::swap(sheet_.width, sheet_.height);
  chart.shown = {z * chart.whole_width, z * chart.whole_height};
  base_ = chart.shown;
  chart_place_ = {z * chart_at_drop_.x / zoom_at_drop_, z * chart_at_drop_.y / zoom_at_drop_};
}

void PrintPreview::SetChartPercent(PictureSide side, int percent, PreviewChart& chart) {
  const double factor = Held(percent) / 100.0 / kChartUnit;
  const auto whole = [this](double length) {
    return static_cast<std::int32_t>(std::lround(length / Zoom()));
  };
  if (side == PictureSide::kHeight) {
    chart.shown.height = factor * base_.height;
    chart.whole_height = whole(chart.shown.height);
  } else {
    chart.shown.width = factor * base_.width;
    chart.whole_width = whole(chart.shown.width);
  }
}

void PrintPreview::Press(TwipsPoint mouse) {
  dragging_ = true;
  drag_start_ = mouse;
}

void PrintPreview::Move(TwipsPoint mouse) {
  if (!dragging_) return;
  chart_place_.x += mouse.x - drag_start_.x;
  chart_place_.y += mouse.y - drag_start_.y;
}

void PrintPreview::Release(TwipsPoint mouse) {
  if (!dragging_) return;
  Move(mouse);
  dragging_ = false;
  chart_at_drop_ = chart_place_;
  zoom_at_drop_ = Zoom();
}

void PrintPreview::ScrollSheet(int across, int down) {
  sheet_place_ = {-kScrollAcross * across, -kScrollDown * down};
}

void PrintPreview::ToggleOrientation() {
  portrait_ = !portrait_;
  std::swap(sheet_.width, sheet_.height);
}

void PrintPreview::SetQuality(int index) { quality_ = std::clamp(index, 0, 2); }

void PrintPreview::SetCopies(int copies) { copies_ = std::clamp(copies, 1, kMostCopies); }

}  // namespace velumar
