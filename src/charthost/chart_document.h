#pragma once

#include <optional>
#include <string>

#include "charthost/chart_model.h"
#include "charthost/series_source.h"
#include "charthost/state_line.h"

namespace velumar {

// One open chart: the series it was asked for, the bars last read of it, and what went wrong.
class ChartDocument {
 public:
  // Reads the series for the first time.
  ChartDocument(const SeriesSource& source, SeriesRequest request);

  // Reads the series again. If that fails, the chart shows no bars, since the old ones may lie
  // after the simulated moment, and Error says why.
  void Refresh();

  ChartModel& Model() { return model_; }
  const ChartModel& Model() const { return model_; }
  const std::string& Symbol() const;
  const std::string& Name() const { return security_.name; }
  const std::string& Folder() const { return request_.folder; }
  int Interval() const { return security_.interval; }
  // A sentence for the user, empty when all is well.
  const std::string& Error() const { return error_; }
  ChartState State() const;

 private:
  const SeriesSource& source_;
  SeriesRequest request_;
  ChartModel model_;
  SecurityInfo security_;
  std::optional<int> shown_file_;
  std::string error_;
};

}  // namespace velumar
