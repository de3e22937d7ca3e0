#include "charthost/view_window.h"

#include <algorithm>
#include <cmath>

namespace velumar {
namespace {

// A bar counts as shown if hardly anything of it is cut off.
constexpr double kHalfBar = 0.45;

}  // namespace

bool ViewWindow::Shows(int bar) const {
  return bar >= 0 && bar < bars_ && bar - kHalfBar >= first_ && bar + kHalfBar <= last_;
}

int ViewWindow::FirstBar() const { return std::max(0, static_cast<int>(std::ceil(first_ - 0.5))); }

int ViewWindow::LastBar() const {
  return std::min(bars_ - 1, static_cast<int>(std::floor(last_ + 0.5)));
}

double ViewWindow::Room() const { return std::max(1.5, Span() * 0.05); }

double ViewWindow::LargestSpan() const { return std::max(kUsualSpan, bars_ * 1.1 + 2); }

void ViewWindow::Reset(int bars) {
  bars_ = bars;
  first_ = -1;
  last_ = kUsualSpan - 1;
  ShowNewest();
}

void ViewWindow::SetBars(int bars) {
  if (bars_ == 0) {
    bars_ = bars;
    ShowNewest();
    return;
  }
  const bool newest_shown = Shows(bars_ - 1);
  bars_ = bars;
  if (bars == 0) return;
  const bool any_left = FirstBar() <= LastBar();
  if ((newest_shown && !Shows(bars - 1)) || !any_left) ShowNewest();
}

void ViewWindow::ShowNewest() {
  const double span = Span();
  last_ = std::max(span - 1, bars_ - 1 + Room());
  first_ = last_ - span;
}

void ViewWindow::ShowOldest() {
  const double span = Span();
  first_ = -1;
  last_ = span - 1;
  Clamp();
}

void ViewWindow::ShowAll() {
  first_ = -1;
  last_ = std::max(kSmallestSpan, static_cast<double>(bars_));
  last_ += std::max(1.0, Span() * 0.02);
}

void ViewWindow::ShowBetween(double one, double other) {
  first_ = std::min(one, other);
  last_ = std::max(one, other);
  Clamp();
}

void ViewWindow::Zoom(double factor) {
  const bool newest_shown = Shows(bars_ - 1);
  const double anchor = newest_shown ? bars_ - 1 : (first_ + last_) / 2;
  const double old_span = Span();
  const double span = std::clamp(old_span * factor, kSmallestSpan, LargestSpan());
  first_ = anchor - (anchor - first_) / old_span * span;
  last_ = first_ + span;
  Clamp();
  if (newest_shown && !Shows(bars_ - 1)) ShowNewest();
}

void ViewWindow::Pan(double bars) {
  first_ += bars;
  last_ += bars;
  Clamp();
}

void ViewWindow::Clamp() {
  const double span = std::clamp(Span(), kSmallestSpan, LargestSpan());
  const double middle = (first_ + last_) / 2;
  first_ = middle - span / 2;
  const double rightmost = std::max(-1.0, bars_ - 2.5);
  const double leftmost = std::min(-1.0, 1.5 - span);
  first_ = std::clamp(first_, leftmost, rightmost);
  last_ = first_ + span;
}

}  // namespace velumar
