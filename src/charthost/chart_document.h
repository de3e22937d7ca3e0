#pragma once

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
  // Reads the series for the first time.
  ChartDocument(const SeriesSource& source, SeriesRequest request);

  // Reads the series again. If that fails, the chart shows no bars, since the old ones may be later
  // than the simulated moment, and Error says why.
  void Refresh();

  // True if this is the chart that the request asks for.
  bool Shows(const SeriesRequest& request) const;

  ChartModel& Model() { return model_; }
  const ChartModel& Model() const { return model_; }
  const std::string& Symbol() const;
  const std::string& Name() const { return security_.name; }
  const std::string& Folder() const { return request_.folder; }
  int Interval() const { return security_.interval; }
  // A sentence to show; empty if the series was read.
  const std::string& Error() const { return error_; }

 private:
  const SeriesSource& source_;
  SeriesRequest request_;
  ChartModel model_;
  SecurityInfo security_;
  std::optional<int> shown_file_;
  std::string error_;
};

// One line of JSON without its line end: the event ("ready", "opened", "closed", "refreshed" or
// "activated") and the state after it. `chart` is null without charts, "last" without bars. "shown"
// are the first and last bar in view, both included; the first is after the last if none is.
std::string StateLine(std::string_view event, const HostState& host, const ChartDocument* chart);

}  // namespace velumar
