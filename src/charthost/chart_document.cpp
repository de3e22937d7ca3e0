#include "charthost/chart_document.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <exception>
#include <nlohmann/json.hpp>
#include <utility>

namespace velumar {
namespace {

using Json = nlohmann::ordered_json;

// The double with the shortest text of the float: 55.51, not 55.5099983.
double ShortestDouble(float value) {
  std::array<char, 32> text;
  const auto end = std::to_chars(text.begin(), text.end(), value).ptr;
  double shortest = 0;
  std::from_chars(text.begin(), end, shortest);
  return shortest;
}

Json LastBar(const BarSeries& bars) {
  if (bars.size() == 0) return nullptr;
  return {{"date", bars.dates.back()},
          {"time", bars.times.back()},
          {"close", ShortestDouble(bars.closes.back())}};
}

Json ChartObject(const ChartDocument& chart) {
  const BarSeries& bars = chart.Model().Series();
  const ViewWindow& window = chart.Model().Window();
  return {{"symbol", chart.Symbol()},
          {"name", chart.Name()},
          {"folder", chart.Folder()},
          {"interval", chart.Interval()},
          {"bars", bars.size()},
          {"last", LastBar(bars)},
          {"shown", {window.FirstBar(), window.LastBar()}},
          {"error", chart.Error().empty() ? Json(nullptr) : Json(chart.Error())}};
}

}  // namespace

ChartDocument::ChartDocument(const SeriesSource& source, SeriesRequest request,
                             std::map<int, Frame> frames)
    : source_(source), request_(std::move(request)), frames_(std::move(frames)) {
  Refresh();
}

bool ChartDocument::Shows(const SeriesRequest& request) const {
  return request.folder == request_.folder && request.symbol == Symbol() &&
         (!request.file_number || request.file_number == shown_file_);
}

void ChartDocument::Refresh() {
  try {
    LoadedSeries loaded = source_.Load(request_, shown_file_);
    const bool other_series = loaded.security.file_number != shown_file_;
    security_ = std::move(loaded.security);
    if (other_series || other_frame_) frame_bars_.reset();
    BarSeries bars = InFrame(std::move(loaded.bars));
    if (other_series) {
      model_.ShowSeries(std::move(bars));
    } else if (other_frame_) {
      model_.ShowFrame(std::move(bars));
    } else {
      model_.UpdateSeries(std::move(bars));
    }
    other_frame_ = false;
    shown_file_ = security_.file_number;
    error_.clear();
  } catch (const std::exception& failure) {
    model_.UpdateSeries({});
    error_ = failure.what();
  }
}

BarSeries ChartDocument::InFrame(BarSeries stored) {
  const Frame frame = ShownFrame();
  if (frame == Frame()) return stored;
  if (!frame_bars_) frame_bars_.emplace(frame, security_.interval);
  frame_bars_->Follow(std::move(stored));
  return frame_bars_->Bars();
}

void ChartDocument::ShowFrame(Frame frame) {
  if (frame == ShownFrame()) return;
  frames_[security_.interval] = frame;
  other_frame_ = true;
  Refresh();
}

// A frame that can't be built from the interval counts as the stored bars.
Frame ChartDocument::ShownFrame() const {
  const auto wanted = frames_.find(security_.interval);
  if (wanted == frames_.end()) return {};
  const std::vector<Frame> frames = FramesOf(security_.interval);
  return std::ranges::find(frames, wanted->second) == frames.end() ? Frame() : wanted->second;
}

std::map<int, Frame> ChartDocument::Frames() const {
  std::map<int, Frame> frames = frames_;
  frames[security_.interval] = ShownFrame();
  return frames;
}

// After a failed reading there are none.
const BarSeries& ChartDocument::Stored() const {
  const BarSeries& shown = model_.Series();
  return shown.starts.empty() || !frame_bars_ ? shown : frame_bars_->Stored();
}

const std::string& ChartDocument::Symbol() const {
  return shown_file_ ? security_.symbol : request_.symbol;
}

std::string StateLine(std::string_view event, const HostState& host, const ChartDocument* chart) {
  const Json line = {{"event", event},
                     {"charts", host.charts},
                     {"active", host.active},
                     {"title", host.title},
                     {"chart", chart == nullptr ? Json(nullptr) : ChartObject(*chart)}};
  return line.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace velumar
