#pragma once

namespace velumar {

// Which bars a chart shows. Bar i takes the places from i - 0.5 to i + 0.5, so the window is a
// stretch of places that may reach beyond both ends of the series.
class ViewWindow {
 public:
  static constexpr double kUsualSpan = 160;
  static constexpr double kSmallestSpan = 8;

  double First() const { return first_; }
  double Last() const { return last_; }
  double Span() const { return last_ - first_; }
  bool Shows(int bar) const;
  // The bars inside, both included; the first lies behind the last when there is none.
  int FirstBar() const;
  int LastBar() const;

  // A series of that many bars, in the usual zoom at its newest bar.
  void Reset(int bars);
  // The same series has that many bars now. Zoom and place stay, unless the newest bar was in view
  // and no longer would be, or there was or would be nothing in view: then the window scrolls to
  // the newest bar, with a little room to its right.
  void SetBars(int bars);

  void ShowAll();
  void ShowNewest();
  void ShowOldest();
  // The two places may come in any order.
  void ShowBetween(double one, double other);
  // Factors below 1 zoom in; `anchor` keeps its place on the screen.
  void Zoom(double factor, double anchor);
  // Keeps the newest bar in its place where it is in view, else the middle.
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
