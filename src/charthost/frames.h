#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "charthost/bar_series.h"

namespace velumar {

// The time that one bar of a chart covers: that of the stored bars, or a longer one.
struct Frame {
  enum class Unit : std::uint8_t { kStored, kMinutes, kDay, kWeek, kMonth, kQuarter };

  Unit unit = Unit::kStored;
  int minutes = 0;  // of kMinutes

  bool operator==(const Frame&) const = default;
};

// The stored bars first, then every longer frame that can be built from bars of that interval
// (minutes, -1 for daily bars, 0 for unknown minutes), the shorter ones first.
std::vector<Frame> FramesOf(int interval);

// "5 minutes", "2 hours", "Daily", "Weekly", "Monthly", "Quarterly".
std::string FrameTitle(Frame frame, int interval);

// In the settings: "stored", "60", "day", "week", "month", "quarter". An unknown name is the stored
// bars.
std::string FrameName(Frame frame);
Frame FrameFromName(const std::string& name);

// The bars of one frame, built from the stored ones alone. A bar belongs to the frame in which its
// own date and time lie: frames of minutes begin at midnight, so hours begin on the full hour; days
// change with the date, weeks on Monday. A frame has the date and time of its first bar. One more
// stored bar costs one step.
class FrameBars {
 public:
  FrameBars(Frame frame, int interval) : frame_(frame), interval_(interval) {}

  // Takes over the stored bars.
  void Follow(BarSeries stored);
  const BarSeries& Bars() const { return bars_; }
  const BarSeries& Stored() const { return stored_; }

 private:
  bool NewestIsUnfinished() const;
  std::int64_t NumberAt(std::int32_t date, std::int32_t time) const;
  void GoBackTo(int stored);
  void Begin(int stored);
  void Merge(int stored);

  Frame frame_;
  int interval_;
  BarSeries stored_;
  BarSeries bars_;
};

}  // namespace velumar
