#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "charthost/chart_model.h"
#include "charthost/series_source.h"

namespace velumar {

// The chart windows, for a program that watches this one.
struct HostState {
  int charts = 0;
  int active = -1;  // index of the active chart, -1 without charts
  std::string title;
};

// One open chart: the series it was asked for, the bars last read, and what went wrong.
class ChartDocument {
 public:
  // Reads the series for the first time. `frames` are the frames to show, by interval; stored bars
  // for every other interval.
  ChartDocument(const SeriesSource& source, SeriesRequest request,
                std::map<int, Frame> frames = {});

  // Reads the series again. If that fails, the chart shows no bars, since the old ones may be later
  // than the simulated moment, and Error says why.
  void Refresh();

  // Shows the series in another frame from now on, and reads it again.
  void ShowFrame(Frame frame);
  Frame ShownFrame() const;
  // The frames to show, by interval, with that of the interval shown now.
  std::map<int, Frame> Frames() const;

  // True if this is the chart that the request asks for.
  bool Shows(const SeriesRequest& request) const;

  ChartModel& Model() { return model_; }
  const ChartModel& Model() const { return model_; }
  // The bars of which those of the model are built: the same ones, unless in a longer frame.
  const BarSeries& Stored() const;
  const std::string& Symbol() const;
  const SeriesRequest& Request() const { return request_; }
  const std::string& Name() const { return security_.name; }
  const std::string& Folder() const { return request_.folder; }
  // Of the data file; nothing if the series was never read.
  std::optional<int> FileNumber() const { return shown_file_; }
  int Interval() const { return security_.interval; }
  // A sentence to show; empty if the series was read.
  const std::string& Error() const { return error_; }

 private:
  // What the model shows of the stored bars.
  BarSeries InFrame(BarSeries stored);

  const SeriesSource& source_;
  SeriesRequest request_;
  ChartModel model_;
  SecurityInfo security_;
  std::optional<int> shown_file_;
  std::map<int, Frame> frames_;
  std::optional<FrameBars> frame_bars_;
  bool other_frame_ = false;  // since the last reading
  std::string error_;
};

// One line of JSON without its line end: the event ("ready", "opened", "closed", "refreshed",
// "activated" or "interval") and the state after it. `chart` is null without charts, "last" without
// bars. "shown" are the first and last bar in view, both included; the first is after the last if
// none is.
std::string StateLine(std::string_view event, const HostState& host, const ChartDocument* chart);

}  // namespace velumar
