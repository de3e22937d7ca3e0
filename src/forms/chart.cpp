#include "forms/chart.h"

#include <algorithm>
#include <stdexcept>

namespace velumar {

void SavableControl::Reset() {
  Control::Reset();
  endings.clear();
  save = nullptr;
}

void SavableControl::SaveTo(const std::string& file) const {
  if (!save) throw std::runtime_error(file + ": no window shows the picture");
  save(file);
}

void Chart::Reset() {
  SavableControl::Reset();
  content_ = {};
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

void Plot::Reset() {
  SavableControl::Reset();
  picture_.reset();
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
