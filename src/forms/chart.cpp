#include "forms/chart.h"

#include <algorithm>
#include <stdexcept>

namespace velumar {

void Chart::Reset() {
  Control::Reset();
  content_ = {};
  endings.clear();
  save = nullptr;
}

float Chart::Covered() const { return std::max(0.F, Top() + Height() - strip_top_); }

void Chart::SetRows(ChartRows rows) {
  content_.rows = std::make_shared<const ChartRows>(std::move(rows));
  content_.span.reset();
  Changed();
}

void Chart::ToDefaults() {
  ChartContent plain;
  plain.rows = content_.rows;
  plain.series = content_.series;
  content_ = std::move(plain);
  Changed();
}

void Chart::SaveTo(const std::string& file) const {
  if (!save) throw std::runtime_error(file + ": no window shows the chart");
  save(file);
}

void Plot::Reset() {
  Control::Reset();
  picture_.reset();
  endings.clear();
  save = nullptr;
}

void Plot::SaveTo(const std::string& file) const {
  if (!save) throw std::runtime_error(file + ": no window shows the picture");
  save(file);
}

void ChartPicture::Reset() {
  Control::Reset();
  content_ = {};
  print = nullptr;
}

void ChartPicture::SetContent(ChartContent content) {
  content_ = std::move(content);
  Changed();
}

void ChartPicture::PrintPages(const PrintJob& job) const {
  if (!print) throw std::runtime_error("No window shows the page.");
  print(job);
}

}  // namespace velumar
