#include "import/row_findings.h"

#include <cmath>

namespace velumar {

void AdjustedCloses::Add(const PriceRow& row) {
  // Less than any dividend, and more than the rounding of either column.
  constexpr float kSame = 5e-5F;
  ++rows;
  above += row.adjusted_close > row.bar.close ? 1 : 0;
  const float difference = std::abs(row.adjusted_close - row.bar.close);
  if (differing || difference <= kSame * std::abs(row.bar.close)) return;
  differing = row.bar;
  differing_adjusted = row.adjusted_close;
}

Bar Adjusted(const PriceRow& row) {
  Bar bar = row.bar;
  if (bar.close == 0) return bar;
  const double ratio = double{row.adjusted_close} / double{bar.close};
  for (float Bar::*price : {&Bar::open, &Bar::high, &Bar::low}) {
    bar.*price = static_cast<float>(double{bar.*price} * ratio);
  }
  bar.close = row.adjusted_close;
  return bar;
}

void PriceSteps::Add(const Bar& bar) {
  ++rows_;
  const double hundredths = double{bar.close} * 100;
  const double noise = std::max(1e-3, std::abs(hundredths) * 2e-7);
  finer_ += std::abs(hundredths - std::nearbyint(hundredths)) > noise ? 1 : 0;
  range_ += double{bar.high} - double{bar.low};
  highest_ = std::max(highest_, double{bar.high});
  lowest_ = std::min(lowest_, double{bar.low});
}

int PriceSteps::SuggestedScale(int decimals) const {
  constexpr double kSmallRange = 0.05;
  constexpr double kTooHigh = 1e6;
  const auto rows = static_cast<double>(rows_);
  if (finer_ * 4 < rows_ || range_ >= kSmallRange * rows) return 1;
  int scale = 100;
  for (int left = decimals - 4; left > 0 && scale < 1'000'000; left -= 2) scale *= 100;
  while (scale > 1 && highest_ * scale >= kTooHigh) scale /= 100;
  return scale;
}

}  // namespace velumar
