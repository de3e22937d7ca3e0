#include "charthost/frames.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/dates.h"
#include "charthost/bar_text.h"
#include "charthost/indicators/indicator_run.h"

namespace velumar {
namespace {

using FrameUnit = Frame::Unit;

constexpr int kDayMinutes = 24 * 60;
constexpr std::array kMinutes = {5, 10, 15, 30, 60, 120, 240};
constexpr std::array<std::pair<FrameUnit, const char*>, 5> kNames = {
    {{FrameUnit::kStored, "stored"},
     {FrameUnit::kDay, "day"},
     {FrameUnit::kWeek, "week"},
     {FrameUnit::kMonth, "month"},
     {FrameUnit::kQuarter, "quarter"}}};

}  // namespace

std::vector<Frame> FramesOf(int interval) {
  std::vector<Frame> frames = {{}};
  for (const int minutes : kMinutes) {
    if (interval > 0 && minutes > interval && minutes % interval == 0) {
      frames.push_back({FrameUnit::kMinutes, minutes});
    }
  }
  if (interval >= 0) frames.push_back({FrameUnit::kDay});
  frames.push_back({FrameUnit::kWeek});
  frames.push_back({FrameUnit::kMonth});
  if (interval < 0) frames.push_back({FrameUnit::kQuarter});
  return frames;
}

std::string FrameTitle(Frame frame, int interval) {
  switch (frame.unit) {
    case FrameUnit::kStored:
      break;
    case FrameUnit::kMinutes:
      return frame.minutes > 60 ? std::to_string(frame.minutes / 60) + " hours"
                                : IntervalTitle(frame.minutes);
    case FrameUnit::kDay:
      return "Daily";
    case FrameUnit::kWeek:
      return "Weekly";
    case FrameUnit::kMonth:
      return "Monthly";
    case FrameUnit::kQuarter:
      return "Quarterly";
  }
  return IntervalTitle(interval);
}

std::string FrameName(Frame frame) {
  const auto found =
      std::ranges::find(kNames, frame.unit, [](const auto& one) { return one.first; });
  return found == kNames.end() ? std::to_string(frame.minutes) : found->second;
}

Frame FrameFromName(const std::string& name) {
  for (const auto& [unit, text] : kNames) {
    if (name == text) return {unit};
  }
  for (const int minutes : kMinutes) {
    if (name == std::to_string(minutes)) return {FrameUnit::kMinutes, minutes};
  }
  return {};
}

// Two bars are in the same frame if their numbers are equal. A date that isn't real is a week of
// its own.
std::int64_t FrameBars::NumberAt(std::int32_t date, std::int32_t time) const {
  const int month = date / 10000 * 12 + date / 100 % 100 - 1;
  switch (frame_.unit) {
    case FrameUnit::kStored:
      return TimestampKey(date, time);
    case FrameUnit::kMinutes:
      return std::int64_t{date} * kDayMinutes + MinuteOfDay(time) / frame_.minutes;
    case FrameUnit::kDay:
      return date;
    case FrameUnit::kWeek: {
      constexpr int kThursday = 3;  // 1 January 1970, from Monday on
      constexpr std::int64_t kPast = 7'000'000;
      return IsRealDate(date) ? (DayNumber(date) + kThursday + kPast) / 7 : -std::int64_t{date};
    }
    case FrameUnit::kMonth:
      return month;
    case FrameUnit::kQuarter:
      return month / 3;
  }
  return 0;
}

void FrameBars::GoBackTo(int stored) {
  while (!bars_.starts.empty() && bars_.starts.back() >= stored) bars_.starts.pop_back();
  TruncateBars(bars_, bars_.starts.size());
}

void FrameBars::Begin(int stored) {
  bars_.starts.push_back(stored);
  bars_.dates.push_back(stored_.dates[stored]);
  bars_.times.push_back(frame_.unit == FrameUnit::kMinutes ? stored_.times[stored] : 0);
  for (const auto field : {&BarArrays::opens, &BarArrays::highs, &BarArrays::lows,
                           &BarArrays::closes, &BarArrays::volumes}) {
    (bars_.*field).push_back((stored_.*field)[stored]);
  }
}

void FrameBars::Merge(int stored) {
  bars_.highs.back() = std::max(bars_.highs.back(), stored_.highs[stored]);
  bars_.lows.back() = std::min(bars_.lows.back(), stored_.lows[stored]);
  bars_.closes.back() = stored_.closes[stored];
  bars_.volumes.back() += stored_.volumes[stored];
}

// If stored bars have gone or changed, the last bar of the frame that is left is built again.
void FrameBars::Follow(BarSeries stored) {
  const int same = SameBars(stored_, stored);
  const bool shorter = same < stored_.size();
  stored_ = std::move(stored);
  int next = same;
  if (shorter) {
    GoBackTo(same);
    next = bars_.starts.empty() ? 0 : bars_.starts.back();
    GoBackTo(next);
  }
  for (; next < stored_.size(); ++next) {
    const bool same_frame =
        !bars_.starts.empty() && NumberAt(stored_.dates[next], stored_.times[next]) ==
                                     NumberAt(stored_.dates[next - 1], stored_.times[next - 1]);
    if (same_frame) {
      Merge(next);
    } else {
      Begin(next);
    }
  }
  bars_.has_opens = stored_.has_opens;
  bars_.has_volumes = stored_.has_volumes;
  bars_.has_times = stored_.has_times && frame_.unit == FrameUnit::kMinutes;
  bars_.decimals = stored_.decimals;
  bars_.stored_bars = stored_.size();
  bars_.newest_unfinished = NewestIsUnfinished();
}

// True if a later stored bar may still belong to the newest bar: it comes one interval later at the
// earliest.
bool FrameBars::NewestIsUnfinished() const {
  if (frame_.unit == FrameUnit::kStored || stored_.size() == 0) return false;
  std::int32_t date = stored_.dates.back();
  std::int32_t time = stored_.times.back();
  const int minute = interval_ < 0 ? kDayMinutes : MinuteOfDay(time) + std::max(interval_, 1);
  if (minute < kDayMinutes) {
    time = minute / 60 * 10000 + minute % 60 * 100;
  } else if (IsRealDate(date)) {
    date = DaysLater(date, 1);
    time = 0;
  }
  return NumberAt(date, time) == NumberAt(stored_.dates.back(), stored_.times.back());
}

}  // namespace velumar
