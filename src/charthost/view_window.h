#pragma once

namespace velumar {

// The bars that a chart shows. Bar i reaches from i - 0.5 to i + 0.5; the window may extend beyond
// both ends of the series, but always shows at least two bars.
class ViewWindow {
 public:
  static constexpr double kUsualSpan = 160;
  static constexpr double kSmallestSpan = 8;

  double First() const { return first_; }
  double Last() const { return last_; }
  double Span() const { return last_ - first_; }
  bool Shows(int bar) const;
  // The bars inside, both included; FirstBar is above LastBar if there is none.
  int FirstBar() const;
  int LastBar() const;

  // Shows the newest bar of another series at the usual zoom.
  void Reset(int bars);
  // The series now has that many bars. The window keeps its zoom and place, except when the newest
  // bar would leave the view or the view was or would be empty: then it scrolls to the newest bar,
  // with some room to its right.
  void SetBars(int bars);

  void ShowAll();
  void ShowNewest();
  void ShowOldest();
  // In either order.
  void ShowBetween(double one, double other);
  // A factor below 1 zooms in. The newest bar keeps its place if it is in view, otherwise the
  // middle.
  void Zoom(double factor);
  void Pan(double bars);

 private:
  double Room() const;
  double LargestSpan() const;
  void Clamp();

  int bars_ = 0;
  double first_ = -1;
  double last_ = kUsualSpan - 1;
};

}  // namespace velumar
