#include "charthost/chart_document.h"

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

Json LastBar(const ChartState& chart) {
  if (chart.bars == 0) return nullptr;
  return {{"date", chart.last_date},
          {"time", chart.last_time},
          {"close", ShortestDouble(chart.last_close)}};
}

Json ChartObject(const ChartState& chart) {
  return {{"symbol", chart.symbol},
          {"name", chart.name},
          {"folder", chart.folder},
          {"interval", chart.interval},
          {"bars", chart.bars},
          {"last", LastBar(chart)},
          {"shown", {chart.first_shown, chart.last_shown}},
          {"error", chart.error.empty() ? Json(nullptr) : Json(chart.error)}};
}

}  // namespace

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

std::string StateLine(std::string_view event, const HostState& host, const ChartState* chart) {
  const Json line = {{"event", event},
                     {"charts", host.charts},
                     {"active", host.active},
                     {"title", host.title},
                     {"chart", chart == nullptr ? Json(nullptr) : ChartObject(*chart)}};
  return line.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace velumar
