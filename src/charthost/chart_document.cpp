#include "charthost/chart_document.h"

#include <exception>
#include <utility>

namespace velumar {

ChartDocument::ChartDocument(const SeriesSource& source, SeriesRequest request)
    : source_(source), request_(std::move(request)) {
  Refresh();
}

void ChartDocument::Refresh() {
  try {
    LoadedSeries loaded = source_.Load(request_, shown_file_);
    if (loaded.security.file_number == shown_file_) {
      model_.UpdateSeries(std::move(loaded.bars));
    } else {
      model_.ShowSeries(std::move(loaded.bars));
    }
    security_ = std::move(loaded.security);
    shown_file_ = security_.file_number;
    error_.clear();
  } catch (const std::exception& failure) {
    model_.UpdateSeries({});
    error_ = failure.what();
  }
}

const std::string& ChartDocument::Symbol() const {
  return shown_file_ ? security_.symbol : request_.symbol;
}

ChartState ChartDocument::State() const {
  const BarSeries& bars = model_.Series();
  ChartState state;
  state.symbol = Symbol();
  state.name = Name();
  state.folder = Folder();
  state.interval = Interval();
  state.bars = bars.size();
  if (bars.size() > 0) {
    state.last_date = bars.dates.back();
    state.last_time = bars.times.back();
    state.last_close = bars.closes.back();
  }
  state.first_shown = model_.Window().FirstBar();
  state.last_shown = model_.Window().LastBar();
  state.error = error_;
  return state;
}

}  // namespace velumar
