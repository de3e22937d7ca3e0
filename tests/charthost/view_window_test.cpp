#include "charthost/view_window.h"

#include <functional>
#include <random>

namespace velumar {
namespace {

ViewWindow Opened(int bars) {
  ViewWindow window;
  window.Reset(bars);
  return window;
}

double RoomAfter(const ViewWindow& window, int bars) { return window.Last() - (bars - 1); }

TEST(ViewWindow, OpensAtTheNewestBar) {
  for (const int bars : {1, 5, 159, 160, 161, 32767}) {
    ViewWindow window = Opened(bars + 1);
    window.SetBars(0);
    EXPECT_GT(window.FirstBar(), window.LastBar()) << bars;
    window.SetBars(bars);
    EXPECT_TRUE(window.Shows(bars - 1)) << bars;
    EXPECT_DOUBLE_EQ(window.Span(), ViewWindow::kUsualSpan) << bars;
    EXPECT_GE(RoomAfter(window, bars), 1.5) << bars;
  }
}

TEST(ViewWindow, StaysWhileTheNewestBarIsInViewAndScrollsWhenItWouldLeave) {
  ViewWindow window = Opened(500);
  int moves = 0;
  for (int bars = 501; bars <= 600; ++bars) {
    const double before = window.First();
    window.SetBars(bars);
    ASSERT_TRUE(window.Shows(bars - 1));
    ASSERT_DOUBLE_EQ(window.Span(), ViewWindow::kUsualSpan);
    if (window.First() != before) {
      ++moves;
      EXPECT_GE(RoomAfter(window, bars), 1.5);
    }
  }
  EXPECT_GT(moves, 5);
  EXPECT_LT(moves, 25);
}

TEST(ViewWindow, KeepsItsPlaceInThePast) {
  ViewWindow window = Opened(1000);
  window.Pan(-400);
  const double place = window.First();
  for (const int bars : {1001, 1030, 1000, 700}) {
    window.SetBars(bars);
    EXPECT_DOUBLE_EQ(window.First(), place) << bars;
  }
  // Now everything that it shows is taken away.
  window.SetBars(300);
  EXPECT_TRUE(window.Shows(299));
}

TEST(ViewWindow, ZoomsAroundTheNewestBarOrTheMiddle) {
  ViewWindow window = Opened(1000);
  window.Pan(-400);
  const double middle = (window.First() + window.Last()) / 2;
  window.Zoom(0.5);
  EXPECT_DOUBLE_EQ(window.Span(), ViewWindow::kUsualSpan / 2);
  EXPECT_NEAR((window.First() + window.Last()) / 2, middle, 1e-9);
  window.Reset(1000);
  window.Zoom(1e-6);
  EXPECT_TRUE(window.Shows(999));
}

TEST(ViewWindow, AlwaysShowsBarsWithinTheBoundsOfItsSpan) {
  std::mt19937 random(7);
  const auto between = [&](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  ViewWindow window = Opened(300);
  const std::function<void()> kActs[] = {
      [&] { window.Pan(between(-500, 500)); },
      [&] { window.Zoom(between(0.2, 5)); },
      [&] { window.ShowBetween(between(-300, 900), between(-300, 900)); },
      [&] { window.SetBars(1 + static_cast<int>(random() % 600)); },
      [&] { window.ShowOldest(); },
      [&] { window.ShowNewest(); },
      [&] { window.ShowAll(); }};
  for (int i = 0; i < 20000; ++i) {
    kActs[random() % std::size(kActs)]();
    ASSERT_LE(window.FirstBar(), window.LastBar()) << i;
    ASSERT_GE(window.Span(), ViewWindow::kSmallestSpan - 1e-9) << i;
    ASSERT_LE(window.Span(), 1000) << i;
  }
}

}  // namespace
}  // namespace velumar
